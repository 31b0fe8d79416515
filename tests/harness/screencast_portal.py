#!/usr/bin/python3
"""The ScreenCast portal of xdg-desktop-portal, for the test session bus, with the fake screen of
pipewire_screen.py as the one thing to share.

Owns org.freedesktop.portal.Desktop on /org/freedesktop/portal/desktop and offers
org.freedesktop.portal.ScreenCast as xdg-desktop-portal documents the interface:
  CreateSession(a{sv} options) -> o handle        Response: {"session_handle": s}
  SelectSources(o session, a{sv} options) -> o handle
  Start(o session, s parent_window, a{sv} options) -> o handle
      Response: {"streams": a(ua{sv}) [(NODE, {"size": (1280, 720), "source_type": 1})],
                 "restore_token": s} — or 1 (cancelled by the user) with --cancel, or 2 (another
                 end) with --fail
  OpenPipeWireRemote(o session, a{sv} options) -> h   a new connection to the PipeWire of
      $XDG_RUNTIME_DIR/pipewire-0
  properties AvailableSourceTypes (u, monitor and window), AvailableCursorModes (u, hidden,
  embedded and metadata), version (u, 4)
Each request object answers as org.freedesktop.portal.Request does; each session object offers
org.freedesktop.portal.Session.Close().

Tests read what the portal was asked through org.norvanebar.Test.ScreenCast on the same object:
  Calls() -> a(sa{sv})   each method called and its options, in order
  ClosedSessions() -> as  the sessions closed, in order

Usage: screencast_portal.py --node NODE [--cancel | --fail]
"""

import argparse
import os
import socket

import dbus
import dbus.service
from gi.repository import GLib

from portal_request import BUS_NAME, OBJECT_PATH, new_request
from session_helpers import serve

INTERFACE = "org.freedesktop.portal.ScreenCast"
SESSION_INTERFACE = "org.freedesktop.portal.Session"
TEST_INTERFACE = "org.norvanebar.Test.ScreenCast"
PROPERTIES = "org.freedesktop.DBus.Properties"
MONITOR, WINDOW = 1, 2
HIDDEN, EMBEDDED, METADATA = 1, 2, 4


class Session(dbus.service.Object):
    def __init__(self, bus, path, closed):
        super().__init__(bus, path)
        self.path = path
        self._closed = closed

    @dbus.service.method(SESSION_INTERFACE, in_signature="", out_signature="")
    def Close(self):
        self._closed.append(self.path)
        self.remove_from_connection()


class ScreenCastPortal(dbus.service.Object):
    def __init__(self, bus, node, start_answer):
        super().__init__(bus, OBJECT_PATH)
        self._bus = bus
        self._node = node
        self._start_answer = start_answer
        self._calls = []
        self._closed = []
        self._objects = []
        self._tokens = 0

    def _answer_later(self, sender, options, response, results):
        request = new_request(self._bus, sender, options, "t%d" % len(self._calls))
        self._objects.append(request)

        def respond():
            request.Response(dbus.UInt32(response), dbus.Dictionary(results, signature="sv"))
            return False

        # After the reply that hands out the request, as a portal answers once the user chose.
        GLib.idle_add(respond)
        return dbus.ObjectPath(request.path)

    def _note(self, method, options):
        self._calls.append(dbus.Struct((method, dbus.Dictionary(options, signature="sv")), signature="sa{sv}"))

    @dbus.service.method(INTERFACE, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
    def CreateSession(self, options, sender):
        self._note("CreateSession", options)
        path = "%s/session/%s/%s" % (OBJECT_PATH, sender[1:].replace(".", "_"),
                                     options.get("session_handle_token", "s%d" % len(self._calls)))
        self._objects.append(Session(self._bus, path, self._closed))
        return self._answer_later(sender, options, 0, {"session_handle": dbus.String(path)})

    @dbus.service.method(INTERFACE, in_signature="oa{sv}", out_signature="o", sender_keyword="sender")
    def SelectSources(self, session, options, sender):
        self._note("SelectSources", options)
        return self._answer_later(sender, options, 0, {})

    @dbus.service.method(INTERFACE, in_signature="osa{sv}", out_signature="o", sender_keyword="sender")
    def Start(self, session, parent_window, options, sender):
        self._note("Start", options)
        if self._start_answer is not None:
            return self._answer_later(sender, options, self._start_answer, {})
        self._tokens += 1
        stream = dbus.Struct((dbus.UInt32(self._node), dbus.Dictionary({
            "size": dbus.Struct((dbus.Int32(1280), dbus.Int32(720)), signature="ii"),
            "source_type": dbus.UInt32(MONITOR),
        }, signature="sv")), signature="ua{sv}")
        return self._answer_later(sender, options, 0, {
            "streams": dbus.Array([stream], signature="(ua{sv})"),
            "restore_token": dbus.String("restore-%d" % self._tokens),
        })

    @dbus.service.method(INTERFACE, in_signature="oa{sv}", out_signature="h")
    def OpenPipeWireRemote(self, session, options):
        self._note("OpenPipeWireRemote", options)
        remote = socket.socket(socket.AF_UNIX, socket.SOCK_STREAM)
        remote.connect(os.path.join(os.environ["XDG_RUNTIME_DIR"], "pipewire-0"))
        descriptor = dbus.types.UnixFd(remote.fileno())
        remote.close()
        return descriptor

    @dbus.service.method(PROPERTIES, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        values = {
            "AvailableSourceTypes": dbus.UInt32(MONITOR | WINDOW),
            "AvailableCursorModes": dbus.UInt32(HIDDEN | EMBEDDED | METADATA),
            "version": dbus.UInt32(4),
        }
        if interface != INTERFACE or name not in values:
            raise dbus.exceptions.DBusException("No such property", name="org.freedesktop.DBus.Error.InvalidArgs")
        return values[name]

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="a(sa{sv})")
    def Calls(self):
        return dbus.Array(self._calls, signature="(sa{sv})")

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="as")
    def ClosedSessions(self):
        return dbus.Array(self._closed, signature="s")


def main():
    parser = argparse.ArgumentParser(description="The ScreenCast portal for the test session bus.")
    parser.add_argument("--node", type=int, required=True)
    answer = parser.add_mutually_exclusive_group()
    answer.add_argument("--cancel", action="store_true")
    answer.add_argument("--fail", action="store_true")
    arguments = parser.parse_args()
    start_answer = 1 if arguments.cancel else 2 if arguments.fail else None
    serve(BUS_NAME, lambda connection: ScreenCastPortal(connection, arguments.node, start_answer))


if __name__ == "__main__":
    main()
