"""Screen sharing as a Wayland desktop offers it, for tests that run inside a desktop session: the
fake screen of a private PipeWire (pipewire_screen.py) and the ScreenCast portal that hands it out
(screencast_portal.py), each a process of its own, with what the portal was asked."""

import os
import subprocess

import dbus

from norvanebar_app import wait_until
from portal_request import BUS_NAME, OBJECT_PATH
from session_helpers import start_bus_service

HARNESS = os.path.dirname(os.path.abspath(__file__))
TEST_INTERFACE = "org.norvanebar.Test.ScreenCast"


class FakeScreen:
    def __init__(self, log_dir):
        """Starts PipeWire, WirePlumber and the fake screen, its logs in `log_dir`; returns once
        the screen's node is there."""
        self.process = subprocess.Popen(["/usr/bin/python3", os.path.join(HARNESS, "pipewire_screen.py"), log_dir],
                                        stdout=subprocess.PIPE, text=True)
        line = self.process.stdout.readline().strip()
        if not line.isdigit():
            self.stop()
            raise RuntimeError(f"the fake screen did not come up; see {log_dir}")
        self.node = int(line)

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(15)


class ScreenCastPortal:
    def __init__(self, screen, log_path, answer=None):
        """Starts the portal sharing `screen`; `answer` "cancel" or "fail" makes it end every
        Start so, as a person's cancel or the desktop's failure."""
        self.bus = dbus.SessionBus()
        arguments = ["/usr/bin/python3", os.path.join(HARNESS, "screencast_portal.py"), "--node", str(screen.node)]
        arguments += [f"--{answer}"] if answer else []
        self.process = start_bus_service(arguments, log_path, BUS_NAME, "the ScreenCast portal")

    def options_of(self, method):
        """The options of each call of `method`, in order, as plain dictionaries."""
        portal = self.bus.get_object(BUS_NAME, OBJECT_PATH)
        calls = portal.Calls(dbus_interface=TEST_INTERFACE)
        return [{str(key): value for key, value in options.items()} for name, options in calls if name == method]

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(5)
        wait_until(lambda: not self.bus.name_has_owner(BUS_NAME), what="the ScreenCast portal gone")
