"""The whole NorvaneBar under a hermetic desktop: the tray icon opens the popover, a second launch
and the D-Bus method toggle it, the menu opens a new task, the quick links and the settings window and
quits, and without a tray host it still runs.

Run inside a desktop session: NORVANEBAR_BINARY names the app, NORVANEBAR_TRAY the session's tray
host (sni, xembed or none)."""

import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from norvanebar_app import (NorvaneBar, click, other_window, popover_window_id, wait_until,  # noqa: E402
                            window_geometry, xembed_icon_window)

TRAY = os.environ.get("NORVANEBAR_TRAY", "sni")
SETTINGS_FILE = os.path.join(os.environ.get("XDG_CONFIG_HOME", os.path.expanduser("~/.config")), "NorvaneBar",
                             "settings.json")
# The libraries of Qt Quick and of NorvaneBar's windows; those of a recording's devices.
QUICK = ("libQt6Quick", "libQt6Qml", "libnorvanebar_windows")
RECORDING_DEVICES = ("libgstreamer", "libpulse", "libnorvanebar_recording_devices")
# Qt Quick's dialogs, which the first save to disk loads.
DIALOGS = ("libQt6QuickDialogs2",)


def settings_windows():
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^NorvaneBar Settings$"],
                           capture_output=True, text=True)
    return found.stdout.split()


class TrayAppTest(unittest.TestCase):
    def setUp(self):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        self.app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], log_dir.name).start()
        self.addCleanup(self.app.stop)
        self.app.wait_published()

    def assert_popover_mapped(self):
        window = wait_until(popover_window_id, what="a mapped popover window")
        state = subprocess.run(["xwininfo", "-id", window], capture_output=True, text=True).stdout
        self.assertIn("Map State: IsViewable", state)
        return window

    def assert_popover_unmapped(self):
        wait_until(lambda: popover_window_id() is None, what="the popover to unmap")

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_activating_the_tray_item_opens_the_popover(self):
        self.app.activate()
        self.app.wait_popover(True)
        self.assert_popover_mapped()
        self.app.activate()
        self.app.wait_popover(False)
        self.assert_popover_unmapped()

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_quit_from_the_tray_menu_ends_with_status_zero(self):
        self.assertIn("Quit NorvaneBar", self.app.menu_labels())
        self.app.click_menu("Quit NorvaneBar")
        self.assertEqual(self.app.wait_exit(), 0)

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_the_tray_menu_offers_a_new_task_the_settings_and_quit(self):
        self.assertEqual([label for label in self.app.menu_labels() if label],
                         ["New Task", "Record Screen…", "Settings…", "Quit NorvaneBar"])

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_new_task_from_the_tray_menu_opens_the_popover(self):
        self.app.click_menu("New Task")
        self.app.wait_popover(True)
        self.assert_popover_mapped()

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_settings_from_the_tray_menu_opens_one_settings_window(self):
        self.app.click_menu("Settings…")
        wait_until(settings_windows, what="the settings window")
        self.app.click_menu("Settings…")
        time.sleep(0.5)
        self.assertEqual(len(settings_windows()), 1)

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_the_quick_links_of_the_settings_are_listed_in_the_tray_menu(self):
        self.app.stop()
        os.makedirs(os.path.dirname(SETTINGS_FILE), exist_ok=True)
        with open(SETTINGS_FILE, "w", encoding="utf-8") as f:
            json.dump({"bookmarks": [
                {"id": "0e4d1f6c-52f5-4a8e-9c61-3b1a2f7c9d10", "name": "Sprint board",
                 "urlString": "https://example.com/board"},
                {"id": "5c0e2a77-8d3b-4f61-b2a9-7e14c6d0f852", "name": "Docs", "urlString": "https://example.com/docs"},
            ]}, f)
        self.addCleanup(os.remove, SETTINGS_FILE)
        self.app.start()
        self.app.wait_published()
        self.assertEqual([label for label in self.app.menu_labels() if label],
                         ["New Task", "Record Screen…", "Quick Links", "Sprint board", "Docs", "Settings…", "Quit NorvaneBar"])

    @unittest.skipUnless(TRAY == "sni", "needs a StatusNotifierItem host")
    def test_a_menu_visit_leaves_left_clicks_working(self):
        self.app.menu_labels()
        self.app.activate()
        self.app.wait_popover(True)

    @unittest.skipUnless(TRAY == "xembed", "needs an XEmbed tray")
    def test_clicking_the_xembed_icon_opens_the_popover_below_it(self):
        icon = wait_until(xembed_icon_window, what="the XEmbed tray icon")
        click(icon, 1)
        self.app.wait_popover(True)
        popover = self.assert_popover_mapped()
        icon_x, icon_y, icon_width, icon_height = window_geometry(icon)
        x, y, width, _ = window_geometry(popover)
        self.assertGreater(y, icon_y + icon_height - 1, "the popover hangs below the icon")
        self.assertLessEqual(x, icon_x + icon_width)
        self.assertLessEqual(x + width, 1280)
        click(icon, 1)
        self.app.wait_popover(False)

    @unittest.skipUnless(TRAY == "xembed", "needs an XEmbed tray")
    def test_a_right_click_menu_leaves_left_clicks_working_and_quits(self):
        icon = wait_until(xembed_icon_window, what="the XEmbed tray icon")
        click(icon, 3)
        menu = wait_until(lambda: other_window(icon), what="the context menu")
        subprocess.run(["xdotool", "key", "Escape"], check=True)
        wait_until(lambda: other_window(icon) is None, what="the menu to close")
        click(icon, 1)
        self.app.wait_popover(True)
        click(icon, 1)
        self.app.wait_popover(False)

        click(icon, 3)
        menu = wait_until(lambda: other_window(icon), what="the context menu")
        # "Quit NorvaneBar" is the last entry.
        x, y, width, height = window_geometry(menu)
        subprocess.run(["xdotool", "mousemove", str(x + width // 2), str(y + height - 10), "click", "1"], check=True)
        self.assertEqual(self.app.wait_exit(), 0)

    @unittest.skipUnless(TRAY == "xembed", "needs an XEmbed tray")
    def test_a_left_click_on_the_icon_while_its_menu_is_open_opens_the_popover(self):
        icon = wait_until(xembed_icon_window, what="the XEmbed tray icon")
        click(icon, 3)
        wait_until(lambda: other_window(icon), what="the context menu")
        click(icon, 1)
        self.app.wait_popover(True)
        wait_until(lambda: other_window(icon) is None, what="the menu to close")
        click(icon, 1)
        self.app.wait_popover(False)

    @unittest.skipUnless(TRAY == "xembed", "needs an XEmbed tray")
    def test_a_right_click_while_the_popover_is_open_opens_the_menu(self):
        icon = wait_until(xembed_icon_window, what="the XEmbed tray icon")
        click(icon, 1)
        self.app.wait_popover(True)
        click(icon, 3)
        menu = wait_until(lambda: other_window(icon), what="the context menu")
        self.app.wait_popover(False)
        # Qt closes an app's popups when none of its windows has the keyboard focus back within
        # 400 ms; the menu stays.
        time.sleep(1.0)
        self.assertEqual(other_window(icon), menu)
        subprocess.run(["xdotool", "key", "Escape"], check=True)
        wait_until(lambda: other_window(icon) is None, what="the menu to close")

    def test_a_second_launch_toggles_the_popover(self):
        self.assertEqual(self.app.launch_again(), 0)
        self.app.wait_popover(True)
        self.assert_popover_mapped()
        self.assertEqual(self.app.launch_again(), 0)
        self.app.wait_popover(False)
        self.assert_popover_unmapped()
        self.assertIsNone(self.app.process.poll(), "the first instance keeps running")

    def test_the_dbus_method_toggles_the_popover(self):
        self.app.toggle()
        self.app.wait_popover(True)
        self.assert_popover_mapped()
        self.app.toggle()
        self.app.wait_popover(False)

    def test_qt_quick_is_loaded_with_the_first_window_and_not_before(self):
        time.sleep(1)  # a program that loaded it at start would have done so by now
        self.assertEqual(self.mapped_libraries(QUICK), [])
        self.app.toggle()
        self.app.wait_popover(True)
        self.assertIn("libQt6Quick.so", self.mapped_libraries(QUICK))
        self.assertIn("libnorvanebar_windows.so", self.mapped_libraries(QUICK))

    def test_the_first_window_loads_no_device_of_a_recording_and_no_dialog(self):
        self.app.toggle()
        self.app.wait_popover(True)
        self.assertIn("libnorvanebar_windows.so", self.mapped_libraries(QUICK))
        self.assertEqual(self.mapped_libraries(RECORDING_DEVICES + DIALOGS), [])

    def mapped_libraries(self, prefixes):
        """The libraries whose names start with one of `prefixes` that the running program has mapped."""
        with open(f"/proc/{self.app.process.pid}/maps", encoding="utf-8") as maps:
            names = {os.path.basename(line.split()[-1]) for line in maps if ".so" in line}
        return sorted(name.split(".so")[0] + ".so" for name in names if name.startswith(prefixes))

    def test_escape_closes_the_popover(self):
        self.app.toggle()
        self.app.wait_popover(True)
        window = self.assert_popover_mapped()
        subprocess.run(["xdotool", "key", "--window", window, "Escape"], check=True)
        self.app.wait_popover(False)
        # The key went down through XTEST to the focused popover, and its release to a window that
        # had gone: without this the server holds Escape down and repeats it into the next test.
        subprocess.run(["xdotool", "keyup", "Escape"], check=True)

    @unittest.skipUnless(TRAY == "none", "needs a desktop without a tray host")
    def test_without_a_tray_host_it_says_so_once_and_keeps_running(self):
        wait_until(lambda: "no tray icons" in self.app.stderr(), what="the missing-tray message")
        self.app.toggle()
        self.app.wait_popover(True)
        self.assertEqual(self.app.stderr().count("no tray icons"), 1)
        self.assertIsNone(self.app.process.poll())


if __name__ == "__main__":
    unittest.main(verbosity=2)
