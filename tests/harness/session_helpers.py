"""Small helpers for the tests that run inside a desktop session."""

import json
import os
import signal
import subprocess
import time

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

from norvanebar_app import wait_until

HARNESS = os.path.dirname(os.path.abspath(__file__))

dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)


def bus():
    """The session's bus (shared connection, dispatching through GLib)."""
    return dbus.SessionBus()


def name_has_owner(name):
    return bool(bus().name_has_owner(name))


def start_bus_service(arguments, log_path, bus_name, what):
    """Starts a D-Bus service of the harness, its output to `log_path`; its process, once it owns
    `bus_name`. Raises when it ends first."""
    with open(log_path, "ab") as log:
        process = subprocess.Popen(arguments, stdout=log, stderr=log)
    wait_until(lambda: name_has_owner(bus_name) or process.poll() is not None, what=what)
    if process.poll() is not None:
        raise RuntimeError(f"{what} ended at its start; see {log_path}")
    return process


def read_json_lines(path):
    with open(path, encoding="utf-8") as lines:
        return [json.loads(line) for line in lines if line.strip()]


def selection_owner(selection):
    """The window id owning an X selection on $DISPLAY, or None."""
    result = subprocess.run(["/usr/bin/python3", os.path.join(HARNESS, "x_selection_owner.py"), selection],
                            capture_output=True, text=True, timeout=10)
    if result.returncode == 2:
        raise RuntimeError("cannot open the display: " + result.stderr)
    return result.stdout.strip() if result.returncode == 0 else None


def plain(value):
    if isinstance(value, dbus.Boolean):
        return bool(value)
    if isinstance(value, (int,)):
        return int(value)
    if isinstance(value, str):
        return str(value)
    if isinstance(value, (list, tuple)):
        return [plain(v) for v in value]
    return value


class SignalCatcher:
    """Records the named signals of one interface from the moment it is created."""

    def __init__(self, interface, members):
        self.signals = []
        self._matches = []
        for member in members:
            self._matches.append(bus().add_signal_receiver(
                lambda *args, member=member: self.signals.append((member, tuple(plain(a) for a in args))),
                signal_name=member, dbus_interface=interface))

    def wait_for(self, count, keep=lambda member, args: True, timeout=5.0, settle=0.05):
        """Returns the kept signals once `count` arrived (plus any in the next `settle` seconds)."""
        context = GLib.MainContext.default()
        deadline = time.monotonic() + timeout
        kept = lambda: [s for s in self.signals if keep(*s)]  # noqa: E731
        while len(kept()) < count and time.monotonic() < deadline:
            context.iteration(False) or time.sleep(0.005)
        settle_until = time.monotonic() + settle
        while time.monotonic() < settle_until:
            context.iteration(False) or time.sleep(0.005)
        for match in self._matches:
            match.remove()
        return kept()


def serve(bus_name, make_service):
    """Runs a D-Bus service on the session bus until SIGTERM, SIGINT or the bus goes.

    make_service(bus) builds its objects; the name is owned last, so that its owner appearing is
    the readiness signal.
    """
    connection = bus()
    loop = GLib.MainLoop()
    service = make_service(connection)
    name = dbus.service.BusName(bus_name, connection, do_not_queue=True)
    connection.call_on_disconnection(lambda _connection: loop.quit())
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGTERM, loop.quit)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGINT, loop.quit)
    loop.run()
    del name, service
