#!/usr/bin/python3
"""The Settings portal of xdg-desktop-portal, for the test session bus.

Owns org.freedesktop.portal.Desktop on /org/freedesktop/portal/desktop and offers
org.freedesktop.portal.Settings:
  Read(s namespace, s key) -> v      the value set for the key, as it was given (a value inside a
                                     second variant is answered so, as older portals answer), or the
                                     error org.freedesktop.portal.Error.NotFound for a key never set
  ReadAll(as namespaces) -> a{sa{sv}} every value of those namespaces (all of them for an empty list)
  SettingChanged(s namespace, s key, v value)   sent at each change

Tests and demos play the desktop's settings through org.norvanebar.Test.Settings on the same object:
  Change(s namespace, s key, v value)   sets the value, whatever its type, and sends SettingChanged
Values may be given on the command line, so that the first Read already finds them:
  --color-scheme N                      org.freedesktop.appearance color-scheme as uint32 N

Usage: settings_portal.py [--color-scheme N]
"""

import argparse

import dbus
import dbus.service

from portal_request import BUS_NAME, OBJECT_PATH
from session_helpers import serve

INTERFACE = "org.freedesktop.portal.Settings"
TEST_INTERFACE = "org.norvanebar.Test.Settings"
APPEARANCE = "org.freedesktop.appearance"


class SettingsPortal(dbus.service.Object):
    def __init__(self, bus, values):
        super().__init__(bus, OBJECT_PATH)
        self._values = values  # (namespace, key) -> the value as received, variant levels kept

    # org.freedesktop.portal.Settings

    @dbus.service.method(INTERFACE, in_signature="ss", out_signature="v")
    def Read(self, namespace, key):
        found = self._values.get((str(namespace), str(key)))
        if found is None:
            raise dbus.exceptions.DBusException("Requested setting not found",
                                                name="org.freedesktop.portal.Error.NotFound")
        return found

    @dbus.service.method(INTERFACE, in_signature="as", out_signature="a{sa{sv}}")
    def ReadAll(self, namespaces):
        wanted = {str(n) for n in namespaces}
        answer = {}
        for (namespace, key), value in self._values.items():
            if not wanted or namespace in wanted:
                answer.setdefault(namespace, dbus.Dictionary({}, signature="sv"))[key] = value
        return dbus.Dictionary(answer, signature="sa{sv}")

    @dbus.service.signal(INTERFACE, signature="ssv")
    def SettingChanged(self, namespace, key, value):
        pass

    # org.norvanebar.Test.Settings: what a person does in the desktop's settings.

    @dbus.service.method(TEST_INTERFACE, in_signature="ssv", out_signature="")
    def Change(self, namespace, key, value):
        self._values[(str(namespace), str(key))] = value
        self.SettingChanged(namespace, key, value)


def main():
    parser = argparse.ArgumentParser(description="The Settings portal for the test session bus.")
    parser.add_argument("--color-scheme", type=int, choices=(0, 1, 2))
    arguments = parser.parse_args()
    values = {}
    if arguments.color_scheme is not None:
        values[(APPEARANCE, "color-scheme")] = dbus.UInt32(arguments.color_scheme)

    serve(BUS_NAME, lambda connection: SettingsPortal(connection, values))

if __name__ == "__main__":
    main()
