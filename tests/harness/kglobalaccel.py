#!/usr/bin/python3
"""KDE's kglobalaccel daemon, for the test session bus.

Owns org.kde.kglobalaccel and offers org.kde.KGlobalAccel on /kglobalaccel as the daemon does:
  doRegister(as actionId)                        actionId: component, action, and their friendly names
  setShortcut(as actionId, ai keys, u flags) -> ai   sets the keys no other action holds and answers
                                                 with the keys the action has now
  unregister(s component, s action) -> b
  getComponent(s component) -> o                 /component/<component>
and on each component's object org.kde.kglobalaccel.Component with the signal
  globalShortcutPressed(s componentUnique, s actionUnique, x timestamp)

Tests play the person and the other programs through org.norvanebar.Test.KGlobalAccel on
/kglobalaccel:
  Press(i key) -> b         globalShortcutPressed for the action that holds the key; false when none
  Keys() -> a{si}           "component/action" -> key, as held now
  Take(i key)               another program's action holds the key from now on

Keys are Qt's key codes with their modifiers, as the daemon numbers them.

Usage: kglobalaccel.py
"""

import os
import sys

import dbus
import dbus.service
from gi.repository import GLib

sys.path.insert(0, os.path.dirname(os.path.abspath(__file__)))
from session_helpers import serve  # noqa: E402

BUS_NAME = "org.kde.kglobalaccel"
INTERFACE = "org.kde.KGlobalAccel"
COMPONENT_INTERFACE = "org.kde.kglobalaccel.Component"
TEST_INTERFACE = "org.norvanebar.Test.KGlobalAccel"


class Component(dbus.service.Object):
    @dbus.service.signal(COMPONENT_INTERFACE, signature="ssx")
    def globalShortcutPressed(self, component, action, timestamp):
        pass


class KGlobalAccel(dbus.service.Object):
    def __init__(self, bus):
        super().__init__(bus, "/kglobalaccel")
        self._bus = bus
        self._registered = set()
        self._keys = {}  # (component, action) -> key
        self._components = {}

    def _component(self, name):
        if name not in self._components:
            self._components[name] = Component(self._bus, "/component/" + name)
        return self._components[name]

    @dbus.service.method(INTERFACE, in_signature="as", out_signature="")
    def doRegister(self, action_id):
        self._registered.add((str(action_id[0]), str(action_id[1])))
        self._component(str(action_id[0]))

    @dbus.service.method(INTERFACE, in_signature="asaiu", out_signature="ai")
    def setShortcut(self, action_id, keys, flags):
        action = (str(action_id[0]), str(action_id[1]))
        held_by_others = {k for a, k in self._keys.items() if a != action}
        free = [int(k) for k in keys if int(k) != 0 and int(k) not in held_by_others]
        if free:
            self._keys[action] = free[0]
        else:
            self._keys.pop(action, None)
        return dbus.Array(free[:1], signature="i")

    @dbus.service.method(INTERFACE, in_signature="ss", out_signature="b")
    def unregister(self, component, action):
        self._registered.discard((str(component), str(action)))
        return self._keys.pop((str(component), str(action)), None) is not None

    @dbus.service.method(INTERFACE, in_signature="s", out_signature="o")
    def getComponent(self, component):
        return dbus.ObjectPath(self._component(str(component)).__dbus_object_path__)

    # org.norvanebar.Test.KGlobalAccel

    @dbus.service.method(TEST_INTERFACE, in_signature="i", out_signature="b")
    def Press(self, key):
        for (component, action), held in self._keys.items():
            if held == int(key):
                stamp = dbus.Int64(GLib.get_monotonic_time() // 1000)
                self._component(component).globalShortcutPressed(component, action, stamp)
                return True
        return False

    @dbus.service.method(TEST_INTERFACE, in_signature="", out_signature="a{si}")
    def Keys(self):
        return dbus.Dictionary({"%s/%s" % a: dbus.Int32(k) for a, k in self._keys.items()}, signature="si")

    @dbus.service.method(TEST_INTERFACE, in_signature="i", out_signature="")
    def Take(self, key):
        self._keys[("other", "action%d" % int(key))] = int(key)


if __name__ == "__main__":
    serve(BUS_NAME, KGlobalAccel)
