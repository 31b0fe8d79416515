#!/usr/bin/python3
"""Prints the window id that owns an X selection, waiting for one if asked.

Usage: x_selection_owner.py SELECTION [--wait SECONDS [--while-alive PID]]
Exit status 0 with the owner's id (hex) on stdout; 1 if nobody owns it (within the wait); 2 if the
display ($DISPLAY) cannot be opened; 3 if process PID, which should take the selection, ended first. Talks to libX11 through ctypes, so it needs no extra package.
"""

import ctypes
import ctypes.util
import sys
import time

POLL_SECONDS = 0.025


def alive(pid):
    try:
        with open("/proc/%d/stat" % pid, encoding="utf-8") as stat:
            return stat.read().rsplit(")", 1)[1].split()[0] not in ("Z", "X")
    except OSError:
        return False


def main():
    args = sys.argv[1:]
    usage = "usage: x_selection_owner.py SELECTION [--wait SECONDS [--while-alive PID]]"
    if len(args) not in (1, 3, 5) or args[1:2] not in ([], ["--wait"]) or args[3:4] not in ([], ["--while-alive"]):
        sys.exit(usage)
    selection = args[0].encode()
    deadline = time.monotonic() + (float(args[2]) if len(args) >= 3 else 0.0)
    pid = int(args[4]) if len(args) == 5 else None

    xlib = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    xlib.XOpenDisplay.argtypes = [ctypes.c_char_p]
    xlib.XInternAtom.restype = ctypes.c_ulong
    xlib.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    xlib.XGetSelectionOwner.restype = ctypes.c_ulong
    xlib.XGetSelectionOwner.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
    xlib.XCloseDisplay.argtypes = [ctypes.c_void_p]

    display = xlib.XOpenDisplay(None)
    if not display:
        print("x_selection_owner: cannot open the display", file=sys.stderr)
        sys.exit(2)
    try:
        atom = xlib.XInternAtom(display, selection, 0)
        while True:
            owner = xlib.XGetSelectionOwner(display, atom)
            if owner:
                print("0x%x" % owner)
                return 0
            if pid is not None and not alive(pid):
                return 3
            if time.monotonic() >= deadline:
                return 1
            time.sleep(POLL_SECONDS)
    finally:
        xlib.XCloseDisplay(display)


if __name__ == "__main__":
    sys.exit(main())
