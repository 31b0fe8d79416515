#!/usr/bin/python3
"""Plays the user of an X11 region selector (slop, as maim -s uses it) under Xvfb.

Waits until another client holds the pointer grab, as a selector does once it is ready for the
user, then either drags a rectangle with xdotool (press, a few moves, release) or holds Escape until
the selector has let the pointer go (it reads the keyboard's state when it gets to it, so a short
press can pass unseen on a busy machine). Exits 0 once done, 1 when no grab appeared or went within
the time limit.

Usage: region_drag.py X1 Y1 X2 Y2 | region_drag.py --cancel
"""

import ctypes
import subprocess
import sys
import time

GRAB_MODE_ASYNC = 1
ALREADY_GRABBED = 1
GRAB_SUCCESS = 0
POINTER_EVENTS = (1 << 2) | (1 << 3)  # ButtonPress, ButtonRelease
WAIT_LIMIT_S = 20
POLL_S = 0.025
# A hand moves the pointer in steps, not in one jump; the selector follows each motion.
STEP_S = 0.05


def another_client_grabs_the_pointer(xlib, display):
    root = xlib.XDefaultRootWindow(display)
    status = xlib.XGrabPointer(display, root, 0, POINTER_EVENTS, GRAB_MODE_ASYNC, GRAB_MODE_ASYNC, 0, 0, 0)
    if status == GRAB_SUCCESS:
        xlib.XUngrabPointer(display, 0)
    xlib.XSync(display, 0)
    return status == ALREADY_GRABBED


def open_display():
    xlib = ctypes.CDLL("libX11.so.6")
    xlib.XOpenDisplay.restype = ctypes.c_void_p
    xlib.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
    xlib.XDefaultRootWindow.restype = ctypes.c_ulong
    xlib.XGrabPointer.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_uint, ctypes.c_int,
                                  ctypes.c_int, ctypes.c_ulong, ctypes.c_ulong, ctypes.c_ulong]
    xlib.XUngrabPointer.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
    xlib.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
    return xlib, xlib.XOpenDisplay(None)


def wait_for_grab(xlib, display, held):
    """Waits until another client holds the pointer (held) or no longer does (not held)."""
    deadline = time.monotonic() + WAIT_LIMIT_S
    while time.monotonic() < deadline:
        if another_client_grabs_the_pointer(xlib, display) == held:
            return True
        time.sleep(POLL_S)
    return False


def xdotool(*arguments):
    subprocess.run(["xdotool", *arguments], check=True)


def main():
    xlib, display = open_display()
    if not display or not wait_for_grab(xlib, display, True):
        return 1
    if sys.argv[1:] == ["--cancel"]:
        xdotool("keydown", "Escape")
        released = wait_for_grab(xlib, display, False)
        xdotool("keyup", "Escape")
        return 0 if released else 1
    x1, y1, x2, y2 = (int(value) for value in sys.argv[1:5])
    xdotool("mousemove", str(x1), str(y1), "mousedown", "1")
    steps = 5
    for step in range(1, steps + 1):
        time.sleep(STEP_S)
        xdotool("mousemove", str(x1 + (x2 - x1) * step // steps), str(y1 + (y2 - y1) * step // steps))
    time.sleep(STEP_S)
    xdotool("mouseup", "1")
    return 0


if __name__ == "__main__":
    sys.exit(main())
