#!/usr/bin/python3
"""A freedesktop notification server for the test session bus.

Owns org.freedesktop.Notifications on /org/freedesktop/Notifications and records every call as one
JSON line in EVENTS_FILE, each with "time" (CLOCK_MONOTONIC seconds) and "event":
  "notify"  id, app_name, replaces_id, app_icon, summary, body, actions, hints, expire_timeout, sender
            (byte arrays in hints, such as image-data's pixels, are written as base64 text)
  "close"   id, reason  (CloseNotification, Dismiss, Expire, and the close after an action)
  "action"  id, action_key
  "leave"   (the server gave up its bus name)

Tests drive the user's side through org.norvanebar.Test.Notifications on the same object:
  InvokeAction(u id, s action_key)  emits ActionInvoked, then NotificationClosed (reason 2,
                                    dismissed) unless the notification has the "resident" hint,
                                    as desktop servers do after a click
  Dismiss(u id)                     emits NotificationClosed with reason 2
  Expire(u id)                      emits NotificationClosed with reason 1
  Notifications() -> s              JSON array of the "notify" records still open
  SetCapabilities(as capabilities)  what GetCapabilities answers from now on (without "actions" the
                                    server shows no buttons, as some servers do); an empty array
                                    restores the default set
  Leave()                           gives up the bus name, as a server that quits: from then on
                                    the bus has no notification server
Unknown ids and action keys the notification does not offer are errors.

Usage: notification_server.py EVENTS_FILE
"""

import base64
import json
import signal
import sys
import time

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

BUS_NAME = "org.freedesktop.Notifications"
OBJECT_PATH = "/org/freedesktop/Notifications"
INTERFACE = "org.freedesktop.Notifications"
TEST_INTERFACE = "org.norvanebar.Test.Notifications"

CAPABILITIES = ["actions", "body", "body-markup", "icon-static", "persistence"]

REASON_EXPIRED = 1
REASON_DISMISSED = 2
REASON_CLOSED = 3


def to_json(value):
    """Converts a D-Bus value into plain JSON-able Python values."""
    if isinstance(value, (dbus.ByteArray, bytes)):
        return base64.b64encode(bytes(value)).decode("ascii")
    if isinstance(value, dbus.Array) and value.signature == "y":
        return base64.b64encode(bytes(int(b) for b in value)).decode("ascii")
    if isinstance(value, dbus.Boolean):
        return bool(value)
    if isinstance(value, (dbus.Byte, dbus.Int16, dbus.UInt16, dbus.Int32, dbus.UInt32, dbus.Int64, dbus.UInt64)):
        return int(value)
    if isinstance(value, dbus.Double):
        return float(value)
    if isinstance(value, (dbus.String, dbus.ObjectPath, dbus.Signature)):
        return str(value)
    if isinstance(value, dict):
        return {str(to_json(k)): to_json(v) for k, v in value.items()}
    if isinstance(value, (list, tuple)):
        return [to_json(v) for v in value]
    return value


def failure(message):
    return dbus.exceptions.DBusException(message, name="org.freedesktop.DBus.Error.InvalidArgs")


class NotificationServer(dbus.service.Object):
    def __init__(self, bus, events_path):
        super().__init__(bus, OBJECT_PATH)
        self._bus = bus
        self._events = open(events_path, "a", encoding="utf-8")
        self._last_id = 0
        self._open = {}  # id -> the "notify" record
        self._capabilities = list(CAPABILITIES)

    def _log(self, event, **fields):
        record = {"time": time.monotonic(), "event": event}
        record.update(fields)
        self._events.write(json.dumps(record) + "\n")
        self._events.flush()
        return record

    def _close(self, notification_id, reason):
        if notification_id in self._open:
            del self._open[notification_id]
            self._log("close", id=int(notification_id), reason=reason)
            self.NotificationClosed(dbus.UInt32(notification_id), dbus.UInt32(reason))
            return True
        return False

    def _require(self, notification_id):
        if notification_id not in self._open:
            raise failure("No open notification with id %d" % notification_id)
        return self._open[notification_id]

    # org.freedesktop.Notifications

    @dbus.service.method(INTERFACE, in_signature="", out_signature="as")
    def GetCapabilities(self):
        return dbus.Array(self._capabilities, signature="s")

    @dbus.service.method(INTERFACE, in_signature="susssasa{sv}i", out_signature="u",
                         sender_keyword="sender", byte_arrays=True)
    def Notify(self, app_name, replaces_id, app_icon, summary, body, actions, hints, expire_timeout,
               sender=None):
        if replaces_id and replaces_id in self._open:
            notification_id = int(replaces_id)
        else:
            self._last_id += 1
            notification_id = self._last_id
        record = self._log(
            "notify",
            id=notification_id,
            app_name=str(app_name),
            replaces_id=int(replaces_id),
            app_icon=str(app_icon),
            summary=str(summary),
            body=str(body),
            actions=[str(a) for a in actions],
            hints=to_json(hints),
            expire_timeout=int(expire_timeout),
            sender=str(sender),
        )
        self._open[notification_id] = record
        return dbus.UInt32(notification_id)

    @dbus.service.method(INTERFACE, in_signature="u", out_signature="")
    def CloseNotification(self, notification_id):
        self._close(int(notification_id), REASON_CLOSED)

    @dbus.service.method(INTERFACE, in_signature="", out_signature="ssss")
    def GetServerInformation(self):
        return ("norvanebar-test-notifications", "NorvaneBar", "1.0", "1.2")

    @dbus.service.signal(INTERFACE, signature="uu")
    def NotificationClosed(self, notification_id, reason):
        pass

    @dbus.service.signal(INTERFACE, signature="us")
    def ActionInvoked(self, notification_id, action_key):
        pass

    # org.norvanebar.Test.Notifications: what a person would do with the bubble.

    @dbus.service.method(TEST_INTERFACE, in_signature="us", out_signature="")
    def InvokeAction(self, notification_id, action_key):
        notification_id = int(notification_id)
        record = self._require(notification_id)
        keys = record["actions"][0::2]
        if str(action_key) not in keys:
            raise failure("Notification %d has no action %r (it has %r)" % (notification_id, str(action_key), keys))
        self._log("action", id=notification_id, action_key=str(action_key))
        self.ActionInvoked(dbus.UInt32(notification_id), action_key)
        if not record["hints"].get("resident", False):
            self._close(notification_id, REASON_DISMISSED)

    @dbus.service.method(TEST_INTERFACE, in_signature="u", out_signature="")
    def Dismiss(self, notification_id):
        self._require(int(notification_id))
        self._close(int(notification_id), REASON_DISMISSED)

    @dbus.service.method(TEST_INTERFACE, in_signature="u", out_signature="")
    def Expire(self, notification_id):
        self._require(int(notification_id))
        self._close(int(notification_id), REASON_EXPIRED)

    @dbus.service.method(TEST_INTERFACE, in_signature="as", out_signature="")
    def SetCapabilities(self, capabilities):
        self._capabilities = [str(c) for c in capabilities] or list(CAPABILITIES)

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="")
    def Leave(self):
        self._log("leave")
        self._bus.release_name(BUS_NAME)

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="s")
    def Notifications(self):
        return json.dumps([self._open[k] for k in sorted(self._open)])


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: notification_server.py EVENTS_FILE")
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    loop = GLib.MainLoop()
    server = NotificationServer(bus, sys.argv[1])
    # Own the name last: its owner appearing is the readiness signal.
    name = dbus.service.BusName(BUS_NAME, bus, do_not_queue=True)
    bus.call_on_disconnection(lambda _connection: loop.quit())
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGTERM, loop.quit)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGINT, loop.quit)
    loop.run()
    del name, server


if __name__ == "__main__":
    main()
