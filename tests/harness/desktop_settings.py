"""The desktop's settings as NorvaneBar reads them: tests/harness/settings_portal.py on the session
bus plays the Settings portal, and the desktop's colour scheme is changed through it, as a person
does in the desktop's settings. Run inside a desktop session."""

import os

import dbus

from session_helpers import start_bus_service

PORTAL = os.path.join(os.path.dirname(__file__), "settings_portal.py")
BUS_NAME = "org.freedesktop.portal.Desktop"
OBJECT_PATH = "/org/freedesktop/portal/desktop"
TEST_INTERFACE = "org.norvanebar.Test.Settings"

NO_PREFERENCE, DARK, LIGHT = 0, 1, 2


class SettingsPortal:
    def __init__(self, color_scheme=None, log_path=os.devnull):
        """Starts the portal, with `color_scheme` (NO_PREFERENCE, DARK or LIGHT) set or nothing."""
        self.bus = dbus.SessionBus()
        arguments = ["/usr/bin/python3", PORTAL]
        if color_scheme is not None:
            arguments += ["--color-scheme", str(color_scheme)]
        self.process = start_bus_service(arguments, log_path, BUS_NAME, "the settings portal")

    def set_color_scheme(self, scheme):
        """Changes the desktop's colour scheme; the portal tells its readers at once."""
        portal = self.bus.get_object(BUS_NAME, OBJECT_PATH)
        portal.Change("org.freedesktop.appearance", "color-scheme", dbus.UInt32(scheme),
                      dbus_interface=TEST_INTERFACE)

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(5)
