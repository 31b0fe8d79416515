#!/usr/bin/python3
"""The GlobalShortcuts portal of xdg-desktop-portal, for the test session bus.

Owns org.freedesktop.portal.Desktop on /org/freedesktop/portal/desktop and offers
org.freedesktop.portal.GlobalShortcuts (property version = 1) as its documentation says:
  CreateSession(a{sv} options) -> o      a Request object at the documented path, on which
                                         Response(0, {"session_handle": s}) follows
  BindShortcuts(o session, a(sa{sv}) shortcuts, s parent_window, a{sv} options) -> o
                                         binds the shortcuts, each with its preferred_trigger as
                                         trigger, unless a test made that trigger another program's;
                                         Response(0, {"shortcuts": a(sa{sv})}) follows
  ListShortcuts(o session, a{sv} options) -> o   Response with the bound shortcuts
  Activated(o session, s shortcut_id, t timestamp, a{sv} options)
  Deactivated(o session, s shortcut_id, t timestamp, a{sv} options)

Tests play the person and the desktop through org.norvanebar.Test.GlobalShortcuts:
  Press(s trigger) -> b          Activated and Deactivated for the shortcut bound to the trigger;
                                 false when none is
  Bound() -> a{ss}               shortcut id -> trigger, as bound now
  Take(s trigger)                another program holds the trigger from now on
  Calls() -> as                  the methods called so far, in order

Usage: global_shortcuts_portal.py
"""

import os
import sys

import dbus
import dbus.service
from gi.repository import GLib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from portal_request import BUS_NAME, OBJECT_PATH, new_request  # noqa: E402
from session_helpers import serve  # noqa: E402

INTERFACE = "org.freedesktop.portal.GlobalShortcuts"
TEST_INTERFACE = "org.norvanebar.Test.GlobalShortcuts"


class GlobalShortcutsPortal(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, OBJECT_PATH)
        self._bus = bus
        self._sessions = {}  # session path -> {shortcut id: trigger}
        self._taken = set()
        self._calls = []
        self._requests = []

    def _request(self, sender, options, results):
        request = new_request(self._bus, sender, options, "t%d" % len(self._requests))
        self._requests.append(request)
        GLib.idle_add(lambda: request.Response(dbus.UInt32(0), dbus.Dictionary(results, signature="sv")) and False)
        return dbus.ObjectPath(request.path)

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        if interface == INTERFACE and name == "version":
            return dbus.UInt32(1)
        raise dbus.exceptions.DBusException("No such property", name="org.freedesktop.DBus.Error.UnknownProperty")

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        return dbus.Dictionary({"version": dbus.UInt32(1)} if interface == INTERFACE else {}, signature="sv")

    @dbus.service.method(INTERFACE, in_signature="a{sv}", out_signature="o", sender_keyword="sender")
    def CreateSession(self, options, sender=None):
        self._calls.append("CreateSession")
        token = str(options.get("session_handle_token", "s"))
        session = "/org/freedesktop/portal/desktop/session/%s/%s" % (sender[1:].replace(".", "_"), token)
        self._sessions[session] = {}
        return self._request(sender, options, {"session_handle": dbus.String(session)})

    def _answer(self, session):
        return dbus.Array([dbus.Struct((dbus.String(i), dbus.Dictionary(
            {"description": dbus.String(i), "trigger_description": dbus.String(t)}, signature="sv")))
            for i, t in self._sessions.get(session, {}).items()], signature="(sa{sv})")

    @dbus.service.method(INTERFACE, in_signature="oa(sa{sv})sa{sv}", out_signature="o", sender_keyword="sender")
    def BindShortcuts(self, session, shortcuts, parent_window, options, sender=None):
        session = str(session)
        self._calls.append("BindShortcuts " + " ".join(
            "%s=%s" % (i, p.get("preferred_trigger", "")) for i, p in shortcuts))
        bound = {}
        for shortcut_id, properties in shortcuts:
            trigger = str(properties.get("preferred_trigger", ""))
            if trigger and trigger not in self._taken:
                bound[str(shortcut_id)] = trigger
        self._sessions[session] = bound
        return self._request(sender, options, {"shortcuts": self._answer(session)})

    @dbus.service.method(INTERFACE, in_signature="oa{sv}", out_signature="o", sender_keyword="sender")
    def ListShortcuts(self, session, options, sender=None):
        return self._request(sender, options, {"shortcuts": self._answer(str(session))})

    @dbus.service.signal(INTERFACE, signature="osta{sv}")
    def Activated(self, session, shortcut_id, timestamp, options):
        pass

    @dbus.service.signal(INTERFACE, signature="osta{sv}")
    def Deactivated(self, session, shortcut_id, timestamp, options):
        pass

    # org.norvanebar.Test.GlobalShortcuts

    @dbus.service.method(TEST_INTERFACE, in_signature="s", out_signature="b")
    def Press(self, trigger):
        for session, bound in self._sessions.items():
            for shortcut_id, bound_trigger in bound.items():
                if bound_trigger == trigger:
                    stamp = dbus.UInt64(GLib.get_monotonic_time() // 1000)
                    options = dbus.Dictionary({}, signature="sv")
                    self.Activated(dbus.ObjectPath(session), shortcut_id, stamp, options)
                    self.Deactivated(dbus.ObjectPath(session), shortcut_id, stamp, options)
                    return True
        return False

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="a{ss}")
    def Bound(self):
        merged = {}
        for bound in self._sessions.values():
            merged.update(bound)
        return dbus.Dictionary(merged, signature="ss")

    @dbus.service.method(TEST_INTERFACE, in_signature="s", out_signature="")
    def Take(self, trigger):
        self._taken.add(str(trigger))

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="as")
    def Calls(self):
        return dbus.Array(self._calls, signature="s")


if __name__ == "__main__":
    serve(BUS_NAME, GlobalShortcutsPortal)
