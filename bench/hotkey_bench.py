"""Global hot keys and the region screenshot: NorvaneBar under X11 key grabs beside the bare Qt Quick
tray program built in the same tree (run inside `desktop-session run --tray xembed`).

  key -> frame, warm        the compose shortcut (Alt+Shift+Space, the default) pressed through XTEST
                            until the popover reports its first frame drawn; closed between opens
  toggle -> frame, warm     the same opening by D-Bus TogglePopover, so that the key path's own cost
                            shows apart; the bare tray's toggle is the baseline of both
  region tool exit -> frame the screenshot shortcut (Ctrl+Shift+Space) of a signed-in profile runs
                            `maim -s`, a region is dragged in slop, and from maim's exit (a wrapper on
                            PATH logs it) until the popover's first frame with the screenshot attached
  CPU, wake-ups, idle       with the compose, screenshot and screen recording shortcuts all bound,
                            beside the bare tray's idle figures

usage: hotkey_bench.py NORVANEBAR BASELINE SANDBOX [--launches N] [--opens N] [--shots N]
                       [--idle-runs N] [--idle-seconds S]"""

import argparse
import ctypes
import json
import os
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "harness"))
from composer_bench import INBOX, NORTHWIND  # noqa: E402
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import wait_until  # noqa: E402
from tray_bench import BUS, Subject, measure_idle, measure_start_and_toggles, ratio, sign_in, summary  # noqa: E402

HARNESS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "harness")
COMPOSE_KEYS = ("Alt_L", "Shift_L", "space")
SCREENSHOT_KEYS = ("Control_L", "Shift_L", "space")
RECORDING_KEYS = ("Alt_L", "Shift_L", "n")
THREE_SHORTCUTS = {"hotKeyPreset": "optionShiftSpace", "screenshotHotKeyPreset": "controlShiftSpace",
                   "screenRecordingHotKeyPreset": "optionShiftN"}
REGION = ("100", "50", "300", "150")
# Of the X protocol: the modifier masks, an error code and a grab mode.
SHIFT, CONTROL, MOD1 = 1, 4, 8
BAD_ACCESS = 10
GRAB_MODE_ASYNC = 1


class XErrorEvent(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("display", ctypes.c_void_p), ("resourceid", ctypes.c_ulong),
                ("serial", ctypes.c_ulong), ("error_code", ctypes.c_ubyte), ("request_code", ctypes.c_ubyte),
                ("minor_code", ctypes.c_ubyte)]


class Keyboard:
    """Keys pressed through the XTEST extension, as xdotool presses them, but from this process: the
    time of a press is taken right before it is sent, with no tool's start-up in it."""

    def __init__(self):
        self.xlib = ctypes.CDLL("libX11.so.6")
        self.xtst = ctypes.CDLL("libXtst.so.6")
        self.xlib.XOpenDisplay.restype = ctypes.c_void_p
        self.xlib.XStringToKeysym.restype = ctypes.c_ulong
        self.xlib.XKeysymToKeycode.argtypes = [ctypes.c_void_p, ctypes.c_ulong]
        self.xlib.XKeysymToKeycode.restype = ctypes.c_ubyte
        self.xlib.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
        self.xlib.XDefaultRootWindow.restype = ctypes.c_ulong
        self.xlib.XGrabKey.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int,
                                       ctypes.c_int, ctypes.c_int]
        self.xlib.XUngrabKey.argtypes = [ctypes.c_void_p, ctypes.c_int, ctypes.c_uint, ctypes.c_ulong]
        self.xlib.XSync.argtypes = [ctypes.c_void_p, ctypes.c_int]
        self.xlib.XFlush.argtypes = [ctypes.c_void_p]
        self.xtst.XTestFakeKeyEvent.argtypes = [ctypes.c_void_p, ctypes.c_uint, ctypes.c_int, ctypes.c_ulong]
        self.display = self.xlib.XOpenDisplay(None)
        if not self.display:
            raise RuntimeError("no X display")
        self.errors = []
        handler_type = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.c_void_p, ctypes.POINTER(XErrorEvent))
        self.handler = handler_type(lambda display, event: self.errors.append(event.contents.error_code) or 0)
        self.xlib.XSetErrorHandler(self.handler)

    def keycodes(self, keys):
        return [self.xlib.XKeysymToKeycode(self.display, self.xlib.XStringToKeysym(key.encode())) for key in keys]

    def press(self, keys):
        """Holds the modifiers, then presses the last key and lets all go; the time.monotonic() of the
        last key's press."""
        codes = self.keycodes(keys)
        for code in codes[:-1]:
            self.xtst.XTestFakeKeyEvent(self.display, code, True, 0)
        self.xlib.XSync(self.display, 0)
        pressed = time.monotonic()
        self.xtst.XTestFakeKeyEvent(self.display, codes[-1], True, 0)
        self.xlib.XFlush(self.display)
        for code in reversed(codes):
            self.xtst.XTestFakeKeyEvent(self.display, code, False, 0)
        self.xlib.XFlush(self.display)
        return pressed

    def grabbed_by_another(self, keys, modifiers):
        """Whether another client holds the key grab of the combination (the server refuses ours)."""
        code = self.keycodes(keys[-1:])[0]
        root = self.xlib.XDefaultRootWindow(self.display)
        self.errors.clear()
        self.xlib.XGrabKey(self.display, code, modifiers, root, 0, GRAB_MODE_ASYNC, GRAB_MODE_ASYNC)
        self.xlib.XSync(self.display, 0)
        refused = BAD_ACCESS in self.errors
        if not refused:
            self.xlib.XUngrabKey(self.display, code, modifiers, root)
            self.xlib.XSync(self.display, 0)
        return refused


class X11Subject(Subject):
    """A program of the X11 session, where no StatusNotifierWatcher records tray items: ready when it
    owns its D-Bus name. Started with `environment` over the bench's own."""

    def __init__(self, name, binary, service, environment=None):
        super().__init__(name, binary, service)
        self.environment = dict(os.environ, **(environment or {}))

    def start(self):
        started = time.monotonic()
        self.process = subprocess.Popen([self.binary], env=self.environment, stdout=subprocess.DEVNULL,
                                        stderr=subprocess.DEVNULL)
        wait_until(lambda: self._is_mine(self.service), 20, f"{self.name} on the session bus")
        return time.monotonic() - started


def profile(folder, settings):
    os.makedirs(os.path.join(folder, "NorvaneBar"), exist_ok=True)
    with open(os.path.join(folder, "NorvaneBar", "settings.json"), "w", encoding="utf-8") as file:
        json.dump(settings, file)
    return {"XDG_CONFIG_HOME": folder}


def key_and_toggle(subject, keyboard, launches, opens):
    """Warm openings by the compose key and by D-Bus, interleaved, the popover closed between."""
    results = {"key": [], "toggle": []}
    for _ in range(launches):
        subject.start()
        time.sleep(1.0)  # the popover's content is created just after the icon
        subject.toggle_until(True)
        subject.toggle_until(False)
        for _ in range(opens):
            time.sleep(0.05)
            pressed, shown = subject.popover_after(lambda: keyboard.press(COMPOSE_KEYS), True)
            results["key"].append(shown - pressed)
            subject.toggle_until(False)
            time.sleep(0.05)
            results["toggle"].append(subject.toggle_until(True))
            subject.toggle_until(False)
        subject.stop()
    return results


def maim_wrapper(folder):
    """A `maim` first on PATH that runs the real one and then logs its exit time (time.time()'s
    clock) to maim-exits.log; its PATH, and the log."""
    tools = os.path.join(folder, "tools")
    os.makedirs(tools)
    log = os.path.join(folder, "maim-exits.log")
    with open(os.path.join(tools, "maim"), "w", encoding="utf-8") as file:
        file.write(f"#!/bin/bash\n/usr/bin/maim \"$@\"\nstatus=$?\necho \"$EPOCHREALTIME\" >>'{log}'\n"
                   "exit $status\n")
    os.chmod(os.path.join(tools, "maim"), 0o755)
    return f"{tools}:{os.environ['PATH']}", log


def maim_exits(log):
    if not os.path.exists(log):
        return []
    with open(log, encoding="utf-8") as file:
        return [float(line.replace(",", ".")) for line in file.read().split()]


def staged_shots(folder):
    """The screenshots staged as attachments: PNGs in the app's temporary folder, apart from the
    capture files."""
    return {name for name in os.listdir(folder)
            if name.startswith("norvanebar-") and name.endswith(".png") and not name.startswith("norvanebar-shot-")}


def screenshots(binary, sandbox_binary, keyboard, shots):
    """Seconds from the region tool's exit to the popover's first frame, and how many of the shots
    showed the screenshot staged as the draft's attachment."""
    results = {"shot": [], "attached": 0}
    with tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as home:
        sandbox = Sandbox(sandbox_binary, os.path.join(home, "sandbox.log"))
        try:
            path, log = maim_wrapper(home)
            temporary = os.path.join(home, "tmp")
            os.makedirs(temporary)
            settings = write_profile(home, sandbox, screenshotHotKeyPreset="controlShiftSpace",
                                     lastLocation={"workspaceID": NORTHWIND, "listID": INBOX, "listName": "Inbox",
                                                   "pathDescription": "Product"})
            app = X11Subject("NorvaneBar", binary, "com.norvanebar.NorvaneBar",
                             {"XDG_CONFIG_HOME": home, "PATH": path, "TMPDIR": temporary})
            sign_in(app, sandbox, settings)
            for shot in range(shots):
                before = staged_shots(temporary)
                user = subprocess.Popen(["/usr/bin/python3", os.path.join(HARNESS, "region_drag.py"), *REGION])
                _, shown = app.popover_after(lambda: keyboard.press(SCREENSHOT_KEYS), True, clock=time.time,
                                             timeout=30)
                if user.wait(20) != 0:
                    raise RuntimeError("the region was not dragged")
                exits = maim_exits(log)
                if len(exits) != shot + 1:
                    raise RuntimeError("the screenshot was not taken by the maim first on PATH")
                results["shot"].append(shown - exits[-1])
                results["attached"] += bool(staged_shots(temporary) - before)
                app.toggle_until(False)
            app.stop()
        finally:
            sandbox.stop()
    return results


def check_three_shortcuts_grabbed(subject, keyboard):
    """Fails unless the subject, started, comes to hold the key grabs of its three shortcuts."""
    subject.start()
    try:
        for keys, modifiers in ((COMPOSE_KEYS, MOD1 | SHIFT), (SCREENSHOT_KEYS, CONTROL | SHIFT),
                                (RECORDING_KEYS, MOD1 | SHIFT)):
            wait_until(lambda: keyboard.grabbed_by_another(keys, modifiers), 10, f"{subject.name}'s grab of {keys}")
    finally:
        subject.stop()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("norvanebar")
    parser.add_argument("baseline")
    parser.add_argument("sandbox")
    parser.add_argument("--launches", type=int, default=3)
    parser.add_argument("--opens", type=int, default=10)
    parser.add_argument("--shots", type=int, default=7)
    parser.add_argument("--idle-runs", type=int, default=3)
    parser.add_argument("--idle-seconds", type=float, default=20)
    args = parser.parse_args()
    if BUS.name_has_owner("org.freedesktop.portal.Desktop"):
        raise RuntimeError("a Screenshot portal would take the screenshot in place of maim")
    keyboard = Keyboard()
    base = X11Subject("bare tray", args.baseline, "com.norvanebar.BareTrayBaseline")
    with tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as plain, \
            tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as three:
        app = X11Subject("NorvaneBar", args.norvanebar, "com.norvanebar.NorvaneBar", profile(plain, {}))
        mine = key_and_toggle(app, keyboard, args.launches, args.opens)
        bare = measure_start_and_toggles([base], args.launches, args.opens)["bare tray"]
        shots = screenshots(args.norvanebar, args.sandbox, keyboard, args.shots)
        bound = X11Subject("NorvaneBar", args.norvanebar, "com.norvanebar.NorvaneBar", profile(three, THREE_SHORTCUTS))
        check_three_shortcuts_grabbed(bound, keyboard)
        idle = measure_idle([bound, base], args.idle_runs, args.idle_seconds)

    print(f"hot key benchmarks: median [min – max]; {args.launches} launches × {args.opens} warm opens, "
          f"{args.shots} screenshots, idle over {args.idle_runs} × {args.idle_seconds:g} s")
    print(f"{'measure':34} {'NorvaneBar':32} {'bare tray baseline':32} ratio   target")
    rows = [
        ("key -> frame, warm", mine["key"], bare["warm"], "ms", 1000, "≤ 50 ms", 0.050),
        ("toggle -> frame, warm", mine["toggle"], bare["warm"], "ms", 1000, "", None),
        ("region tool exit -> frame", shots["shot"], bare["warm"], "ms", 1000, "≤ 150 ms", 0.150),
        ("CPU, idle, three shortcuts", idle["NorvaneBar"]["cpu"], idle["bare tray"]["cpu"], "%", 1, "≤ 0.01 %",
         0.01),
        ("wake-ups, idle, three shortcuts", idle["NorvaneBar"]["wakeups"], idle["bare tray"]["wakeups"], "/s", 1,
         "≤ 1 /s", 1),
    ]
    missed = False
    for label, values, baseline, unit, scale, target, limit in rows:
        miss = limit is not None and statistics.median(values) > limit
        missed |= miss
        print(f"{label:34} {summary(values, unit, scale):32} {summary(baseline, unit, scale):32} "
              f"{ratio(values, baseline)}  {target}{'  MISSED' if miss else ''}")
    print(f"screenshots shown attached to a new draft: {shots['attached']} of {len(shots['shot'])}")
    missed |= shots["attached"] != len(shots["shot"])
    return 1 if missed else 0


if __name__ == "__main__":
    sys.exit(main())
