#!/usr/bin/python3
"""A StatusNotifierWatcher for the test session bus.

Owns org.kde.StatusNotifierWatcher on /StatusNotifierWatcher and reports a registered host, so Qt
uses StatusNotifierItem tray icons. It serves its own introspection XML: Qt 6.4 reads
IsStatusNotifierHostRegistered through QDBusInterface, which only sees properties that introspection
lists.

Every registration call is appended to EVENTS_FILE as one JSON line:
  {"time": <CLOCK_MONOTONIC seconds>, "event": "registered", "item": ..., "sender": ...}
Other events ("unregistered", "host-registered") use the same shape.

Usage: status_notifier_watcher.py EVENTS_FILE
"""

import json
import signal
import sys
import time

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

BUS_NAME = "org.kde.StatusNotifierWatcher"
OBJECT_PATH = "/StatusNotifierWatcher"
INTERFACE = "org.kde.StatusNotifierWatcher"
ITEM_PATH = "/StatusNotifierItem"

INTROSPECTION = """<!DOCTYPE node PUBLIC "-//freedesktop//DTD D-BUS Object Introspection 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/introspect.dtd">
<node>
  <interface name="org.freedesktop.DBus.Introspectable">
    <method name="Introspect">
      <arg name="xml_data" type="s" direction="out"/>
    </method>
  </interface>
  <interface name="org.freedesktop.DBus.Peer">
    <method name="Ping"/>
    <method name="GetMachineId">
      <arg name="machine_uuid" type="s" direction="out"/>
    </method>
  </interface>
  <interface name="org.freedesktop.DBus.Properties">
    <method name="Get">
      <arg name="interface_name" type="s" direction="in"/>
      <arg name="property_name" type="s" direction="in"/>
      <arg name="value" type="v" direction="out"/>
    </method>
    <method name="GetAll">
      <arg name="interface_name" type="s" direction="in"/>
      <arg name="properties" type="a{sv}" direction="out"/>
    </method>
    <method name="Set">
      <arg name="interface_name" type="s" direction="in"/>
      <arg name="property_name" type="s" direction="in"/>
      <arg name="value" type="v" direction="in"/>
    </method>
    <signal name="PropertiesChanged">
      <arg name="interface_name" type="s"/>
      <arg name="changed_properties" type="a{sv}"/>
      <arg name="invalidated_properties" type="as"/>
    </signal>
  </interface>
  <interface name="org.kde.StatusNotifierWatcher">
    <method name="RegisterStatusNotifierItem">
      <arg name="service" type="s" direction="in"/>
    </method>
    <method name="RegisterStatusNotifierHost">
      <arg name="service" type="s" direction="in"/>
    </method>
    <property name="RegisteredStatusNotifierItems" type="as" access="read">
      <annotation name="org.qtproject.QtDBus.QtTypeName.Out0" value="QStringList"/>
    </property>
    <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
    <property name="ProtocolVersion" type="i" access="read"/>
    <signal name="StatusNotifierItemRegistered">
      <arg name="service" type="s"/>
    </signal>
    <signal name="StatusNotifierItemUnregistered">
      <arg name="service" type="s"/>
    </signal>
    <signal name="StatusNotifierHostRegistered"/>
    <signal name="StatusNotifierHostUnregistered"/>
  </interface>
</node>
"""


class Watcher(dbus.service.Object):
    def __init__(self, bus, events_path):
        super().__init__(bus, OBJECT_PATH)
        self._bus = bus
        self._events = open(events_path, "a", encoding="utf-8")
        self._items = []  # full ids "SERVICE/PATH", in registration order
        self._item_service = {}  # full id -> bus name whose owner keeps it alive
        self._hosts = set()
        bus.add_signal_receiver(
            self._name_owner_changed,
            signal_name="NameOwnerChanged",
            dbus_interface="org.freedesktop.DBus",
            path="/org/freedesktop/DBus",
        )

    def _log(self, event, **fields):
        record = {"time": time.monotonic(), "event": event}
        record.update(fields)
        self._events.write(json.dumps(record) + "\n")
        self._events.flush()

    def _name_owner_changed(self, name, old_owner, new_owner):
        if new_owner:
            return
        for item in [i for i in self._items if self._item_service[i] == name]:
            self._items.remove(item)
            del self._item_service[item]
            self._log("unregistered", item=item, sender=old_owner)
            self.StatusNotifierItemUnregistered(item)
            self._items_changed()
        if name in self._hosts:
            self._hosts.discard(name)
            self.StatusNotifierHostUnregistered()

    def _items_changed(self):
        self.PropertiesChanged(
            INTERFACE, {"RegisteredStatusNotifierItems": dbus.Array(self._items, signature="s")}, [])

    # org.kde.StatusNotifierWatcher

    @dbus.service.method(INTERFACE, in_signature="s", out_signature="", sender_keyword="sender")
    def RegisterStatusNotifierItem(self, service, sender=None):
        # The common convention: an object path means "this path on the sender's connection",
        # anything else is a bus name serving /StatusNotifierItem.
        if service.startswith("/"):
            owner, path = sender, service
        else:
            owner, path = service, ITEM_PATH
        if not self._bus.name_has_owner(owner):
            raise dbus.exceptions.DBusException(
                "The name %s has no owner" % owner, name="org.freedesktop.DBus.Error.ServiceUnknown")
        item = owner + path
        self._log("registered", item=item, sender=sender)
        if item not in self._items:
            self._items.append(item)
            self._item_service[item] = owner
            self.StatusNotifierItemRegistered(item)
            self._items_changed()

    @dbus.service.method(INTERFACE, in_signature="s", out_signature="", sender_keyword="sender")
    def RegisterStatusNotifierHost(self, service, sender=None):
        owner = sender if service.startswith("/") else service
        self._log("host-registered", item=service, sender=sender)
        self._hosts.add(owner)
        self.StatusNotifierHostRegistered()

    @dbus.service.signal(INTERFACE, signature="s")
    def StatusNotifierItemRegistered(self, service):
        pass

    @dbus.service.signal(INTERFACE, signature="s")
    def StatusNotifierItemUnregistered(self, service):
        pass

    @dbus.service.signal(INTERFACE, signature="")
    def StatusNotifierHostRegistered(self):
        pass

    @dbus.service.signal(INTERFACE, signature="")
    def StatusNotifierHostUnregistered(self):
        pass

    # org.freedesktop.DBus.Properties

    def _properties(self):
        return {
            "RegisteredStatusNotifierItems": dbus.Array(self._items, signature="s"),
            # The watcher stands in for a tray host, so one is always registered.
            "IsStatusNotifierHostRegistered": dbus.Boolean(True),
            "ProtocolVersion": dbus.Int32(0),
        }

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ss", out_signature="v")
    def Get(self, interface, name):
        properties = self.GetAll(interface)
        if name not in properties:
            raise dbus.exceptions.DBusException(
                "No property %s on %s" % (name, interface), name="org.freedesktop.DBus.Error.UnknownProperty")
        return properties[name]

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="s", out_signature="a{sv}")
    def GetAll(self, interface):
        if interface not in (INTERFACE, ""):
            raise dbus.exceptions.DBusException(
                "No interface %s" % interface, name="org.freedesktop.DBus.Error.UnknownInterface")
        return dbus.Dictionary(self._properties(), signature="sv")

    @dbus.service.method(dbus.PROPERTIES_IFACE, in_signature="ssv", out_signature="")
    def Set(self, interface, name, value):
        raise dbus.exceptions.DBusException(
            "Property %s is read-only" % name, name="org.freedesktop.DBus.Error.PropertyReadOnly")

    @dbus.service.signal(dbus.PROPERTIES_IFACE, signature="sa{sv}as")
    def PropertiesChanged(self, interface, changed, invalidated):
        pass

    # org.freedesktop.DBus.Introspectable: our own XML, which lists the properties.

    @dbus.service.method(dbus.INTROSPECTABLE_IFACE, in_signature="", out_signature="s",
                         path_keyword="object_path", connection_keyword="connection")
    def Introspect(self, object_path, connection):
        return INTROSPECTION


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: status_notifier_watcher.py EVENTS_FILE")
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    loop = GLib.MainLoop()
    watcher = Watcher(bus, sys.argv[1])
    # Own the name last: its owner appearing is the readiness signal.
    name = dbus.service.BusName(BUS_NAME, bus, do_not_queue=True)
    bus.call_on_disconnection(lambda _connection: loop.quit())
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGTERM, loop.quit)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGINT, loop.quit)
    loop.run()
    del name, watcher


if __name__ == "__main__":
    main()
