"""The tray menu as a keyboard and a screen reader meet it, over the accessibility bus (AT-SPI), with
the whole NorvaneBar on an XEmbed tray, whose icon opens the menu for the mouse only.

Runs inside `desktop-session run --a11y --tray xembed`; NORVANEBAR_BINARY names the app. From the
open popover, Shift+F10 or the Menu key opens the tray menu; its entries are named on the bus, the
arrow keys move through them as the bus reports, Return and the bus's own action choose one."""

import os
import subprocess
import sys
import unittest

from gi.repository import GLib

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from accessibility import Atspi, application, pump_until, start_accessible  # noqa: E402
from norvanebar_app import click, popover_window_id, wait_until, xembed_icon_window  # noqa: E402

MENU_ENTRIES = ["New Task", "Record Screen…", "Quick Links", "Settings…", "", "Quit NorvaneBar"]
# A quick link named as hostile text: markup, an ampersand, right-to-left script, an emoji.
LINK_NAME = '<b>Board</b> & "links" \u05dc\u05d5\u05d7 🚀'



def keys(*names):
    subprocess.run(["xdotool", "key", *names], check=True)


def role_of(node):
    """The role of `node`, or None for one gone from the bus since its event: the popover's pages,
    built when it first opens, report items that live only a moment."""
    try:
        return node.get_role()
    except GLib.GError:
        return None


def children(node):
    return [node.get_child_at_index(index) for index in range(node.get_child_count())]


class TrayMenuAccessibilityTest(unittest.TestCase):
    def setUp(self):
        self.app = start_accessible(self, {"bookmarks": [{"id": "3f1d2c4b-5a6e-4f70-8192-a3b4c5d6e7f8",
                                                          "name": LINK_NAME, "urlString": "http://127.0.0.1:9/board"}]})
        pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")

        self.events = []
        self.listener = Atspi.EventListener.new(self.events.append)
        for event_type in ("object:state-changed:showing", "object:state-changed:focused"):
            self.listener.register(event_type)
            self.addCleanup(self.listener.deregister, event_type)

    def shown_menu(self):
        """The popup menu the bus last reported shown, once it has."""

        def menu():
            shown = [event.source for event in self.events if event.type == "object:state-changed:showing"
                     and event.detail1 and role_of(event.source) == Atspi.Role.POPUP_MENU]
            return shown[-1] if shown else None

        return pump_until(menu, what="the tray menu on the accessibility bus")

    def focused_entry(self, name):
        def focused():
            return any(event.type == "object:state-changed:focused" and event.detail1
                       and role_of(event.source) == Atspi.Role.MENU_ITEM and event.source.get_name() == name
                       for event in self.events)

        pump_until(focused, what=f'the focus on "{name}"')

    def open_popover(self):
        self.app.toggle()
        self.app.wait_popover(True)
        wait_until(popover_window_id, what="the popover window")

    def test_shift_f10_in_the_popover_opens_the_named_menu_in_place_of_the_popover(self):
        self.open_popover()
        keys("shift+F10")
        menu = self.shown_menu()
        self.assertEqual(menu.get_name(), "NorvaneBar")
        self.assertEqual([entry.get_name() for entry in children(menu)], MENU_ENTRIES)
        self.app.wait_popover(False)
        keys("Escape")

    def test_the_arrow_keys_move_through_the_entries_and_return_chooses_new_task(self):
        self.open_popover()
        keys("Menu")
        self.shown_menu()
        keys("Down")
        self.focused_entry("New Task")
        keys("Down")
        self.focused_entry("Record Screen…")
        keys("Down")
        self.focused_entry("Quick Links")
        keys("Right")
        self.focused_entry(LINK_NAME)
        keys("Left", "Up", "Up", "Return")
        self.app.wait_popover(True)

    def test_the_settings_entry_is_chosen_over_the_accessibility_bus(self):
        self.open_popover()
        keys("shift+F10")
        entry = next(entry for entry in children(self.shown_menu()) if entry.get_name() == "Settings…")
        self.assertTrue(entry.do_action(0))
        pump_until(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^NorvaneBar Settings$"],
                                          capture_output=True).returncode == 0, what="the settings window")

    def test_a_right_click_on_the_icon_opens_the_same_menu(self):
        click(wait_until(xembed_icon_window, what="the tray icon"), 3)
        self.assertEqual([entry.get_name() for entry in children(self.shown_menu())], MENU_ENTRIES)
        keys("Escape")


if __name__ == "__main__":
    unittest.main(verbosity=2)
