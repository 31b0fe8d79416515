"""Runs a D-Bus service of the harness on the session bus until SIGTERM, SIGINT or the bus goes."""

import signal

import dbus
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib


def serve(bus_name, build):
    """build(bus) makes the service's objects; the name is owned last, as the readiness signal."""
    dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
    bus = dbus.SessionBus()
    loop = GLib.MainLoop()
    service = build(bus)
    name = dbus.service.BusName(bus_name, bus, do_not_queue=True)
    bus.call_on_disconnection(lambda _connection: loop.quit())
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGTERM, loop.quit)
    GLib.unix_signal_add(GLib.PRIORITY_DEFAULT, signal.SIGINT, loop.quit)
    loop.run()
    del name, service
