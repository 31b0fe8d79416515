#!/usr/bin/python3
"""The Screenshot portal of xdg-desktop-portal, for the test session bus.

Owns org.freedesktop.portal.Desktop on /org/freedesktop/portal/desktop and offers
org.freedesktop.portal.Screenshot:
  Screenshot(s parent_window, a{sv} options) -> o handle
      makes the request object /org/freedesktop/portal/desktop/request/SENDER/TOKEN (TOKEN the
      option handle_token), returns its path, then sends the request's
      org.freedesktop.portal.Request.Response(u response, a{sv} results) as the user's choice:
      0 with results {"uri": file URI of --picture}, or 1 (cancelled) with --cancel; with --silent
      it never answers, as a portal whose dialog is still open.

Tests read what the portal was asked through org.norvanebar.Test.Screenshot on the same object:
  Requests() -> aa{sv}   the options of each Screenshot call, in order

Usage: screenshot_portal.py (--picture PATH | --cancel | --silent)
"""

import argparse

import dbus
import dbus.service
from gi.repository import GLib

from portal_request import BUS_NAME, OBJECT_PATH, new_request
from session_helpers import serve

INTERFACE = "org.freedesktop.portal.Screenshot"
TEST_INTERFACE = "org.norvanebar.Test.Screenshot"


class ScreenshotPortal(dbus.service.Object):
    def __init__(self, bus, answer):
        super().__init__(bus, OBJECT_PATH)
        self._bus = bus
        self._answer = answer  # (response, results), or None for never
        self._requests = []
        self._handles = []

    @dbus.service.method(INTERFACE, in_signature="sa{sv}", out_signature="o", sender_keyword="sender")
    def Screenshot(self, parent_window, options, sender):
        self._requests.append(dbus.Dictionary(options, signature="sv"))
        request = new_request(self._bus, sender, options, "t%d" % len(self._requests))
        self._handles.append(request)
        if self._answer is not None:
            # After the reply that hands out the request, as a portal answers once the user chose.
            GLib.idle_add(self._respond, request)
        return dbus.ObjectPath(request.path)

    def _respond(self, request):
        response, results = self._answer
        request.Response(dbus.UInt32(response), dbus.Dictionary(results, signature="sv"))
        return False

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="aa{sv}")
    def Requests(self):
        return dbus.Array(self._requests, signature="a{sv}")


def main():
    parser = argparse.ArgumentParser(description="The Screenshot portal for the test session bus.")
    choice = parser.add_mutually_exclusive_group(required=True)
    choice.add_argument("--picture")
    choice.add_argument("--cancel", action="store_true")
    choice.add_argument("--silent", action="store_true")
    arguments = parser.parse_args()
    if arguments.picture:
        answer = (0, {"uri": GLib.filename_to_uri(arguments.picture, None)})
    elif arguments.cancel:
        answer = (1, {})
    else:
        answer = None

    serve(BUS_NAME, lambda connection: ScreenshotPortal(connection, answer))

if __name__ == "__main__":
    main()
