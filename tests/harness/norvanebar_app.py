"""Drives a running NorvaneBar from outside, as a desktop would: through its tray item
(StatusNotifierItem and its dbusmenu), its D-Bus interface, X11 tools and second launches.
Used by the end-to-end tests and by `make run` on a machine without a display."""

import os
import subprocess
import time

import dbus

SERVICE = "com.norvanebar.NorvaneBar"
OBJECT_PATH = "/com/norvanebar/NorvaneBar"
INTERFACE = "com.norvanebar.NorvaneBar"
WATCHER = ("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher")


def wait_until(condition, timeout=10.0, what="condition", idle=lambda: time.sleep(0.025)):
    """Calls condition() until it gives a true value, and idle() between calls."""
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise TimeoutError(f"timed out waiting for {what}")
        idle()


class NorvaneBar:
    def __init__(self, binary, log_dir):
        self.binary = binary
        self.log_dir = log_dir
        self.bus = dbus.SessionBus()
        self.stderr_path = os.path.join(log_dir, "norvanebar.stderr")
        self.process = None

    def start(self):
        with open(self.stderr_path, "wb") as stderr:
            self.process = subprocess.Popen([self.binary], stdout=subprocess.DEVNULL, stderr=stderr)
        return self

    def launch_again(self, timeout=10):
        """A second launch; returns its exit status."""
        return subprocess.run([self.binary], timeout=timeout, capture_output=True).returncode

    def stderr(self):
        with open(self.stderr_path, encoding="utf-8", errors="replace") as f:
            return f.read()

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()

    def wait_exit(self, timeout=10):
        return self.process.wait(timeout)

    # The D-Bus interface.
    def control(self):
        return self.bus.get_object(SERVICE, OBJECT_PATH)

    def wait_published(self, timeout=10):
        wait_until(lambda: self.bus.name_has_owner(SERVICE), timeout, "the D-Bus interface")

    def toggle(self):
        self.control().TogglePopover(dbus_interface=INTERFACE)

    def popover_visible(self):
        try:
            return bool(self.control().Get(INTERFACE, "PopoverVisible", dbus_interface=dbus.PROPERTIES_IFACE))
        except dbus.DBusException:
            return False

    def wait_popover(self, visible, timeout=10):
        wait_until(lambda: self.popover_visible() == visible, timeout, f"popover visible={visible}")

    # The StatusNotifierItem.
    def tray_item(self):
        """(bus name, object path) of this process's registered item, or None."""
        try:
            watcher = self.bus.get_object(*WATCHER)
            items = watcher.Get(WATCHER[0], "RegisteredStatusNotifierItems", dbus_interface=dbus.PROPERTIES_IFACE)
        except dbus.DBusException:
            return None
        for item in items:
            name, _, path = str(item).partition("/")
            path = "/" + path if path else "/StatusNotifierItem"
            try:
                if self._process_of(name) == self.process.pid:
                    return name, path
            except dbus.DBusException:
                continue
        return None

    def _process_of(self, bus_name):
        bus = self.bus.get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
        return int(bus.GetConnectionUnixProcessID(bus_name, dbus_interface="org.freedesktop.DBus"))

    def wait_tray_item(self, timeout=10):
        return wait_until(self.tray_item, timeout, "the tray item")

    def activate(self, x=0, y=0):
        name, path = self.wait_tray_item()
        self.bus.get_object(name, path).Activate(x, y, dbus_interface="org.kde.StatusNotifierItem")

    def menu_labels(self):
        return [label for label, _ in self._menu_entries()]

    def click_menu(self, label):
        name, path = self.wait_tray_item()
        menu = self._menu()
        for entry_label, entry_id in self._menu_entries():
            if entry_label == label:
                menu.Event(entry_id, "clicked", dbus.Int32(0, variant_level=1), dbus.UInt32(0),
                           dbus_interface="com.canonical.dbusmenu")
                return
        raise KeyError(label)

    def _menu(self):
        name, path = self.wait_tray_item()
        menu_path = self.bus.get_object(name, path).Get("org.kde.StatusNotifierItem", "Menu",
                                                         dbus_interface=dbus.PROPERTIES_IFACE)
        return self.bus.get_object(name, menu_path)

    def _menu_entries(self):
        _, layout = self._menu().GetLayout(0, -1, [], dbus_interface="com.canonical.dbusmenu")
        entries = []

        def walk(node):
            entry_id, properties, children = node
            if "label" in properties:
                entries.append((str(properties["label"]).replace("&", ""), int(entry_id)))
            for child in children:
                walk(child)

        walk(layout)
        return entries


def popover_window_id():
    """The X window of the mapped popover, or None."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^NorvaneBar$"],
                           capture_output=True, text=True)
    ids = found.stdout.split()
    return ids[0] if ids else None


def window_geometry(window_id):
    """(x, y, width, height) of an X window."""
    out = subprocess.run(["xdotool", "getwindowgeometry", "--shell", window_id],
                         capture_output=True, text=True, check=True).stdout
    values = dict(line.split("=", 1) for line in out.split())
    return int(values["X"]), int(values["Y"]), int(values["WIDTH"]), int(values["HEIGHT"])


def screen_pixel(x, y):
    """(red, green, blue) of the screen at (x, y), read from a one-pixel BMP shot."""
    shot = subprocess.run(["maim", "--format=bmp", "--geometry", f"1x1+{x}+{y}"], capture_output=True,
                          check=True).stdout
    offset = int.from_bytes(shot[10:14], "little")
    blue, green, red = shot[offset:offset + 3]
    return red, green, blue


def visible_app_windows():
    return subprocess.run(["xdotool", "search", "--onlyvisible", "--classname", "norvanebar"],
                          capture_output=True, text=True).stdout.split()


def xembed_icon_window():
    """NorvaneBar's icon window inside the XEmbed tray, or None."""
    popover = popover_window_id()
    icons = [w for w in visible_app_windows() if w != popover]
    return icons[0] if icons else None


def other_window(icon):
    """A visible NorvaneBar window that is neither the icon nor the popover (the menu), or None."""
    popover = popover_window_id()
    others = [w for w in visible_app_windows() if w not in (icon, popover)]
    return others[0] if others else None


def click(window, button):
    # Clicks closer together than the double-click interval would make a double click.
    time.sleep(0.5)
    subprocess.run(["xdotool", "mousemove", "--window", window, "5", "5", "click", str(button)], check=True)
