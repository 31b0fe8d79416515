"""The shortcuts of the settings, pressed with xdotool on the session's X server: the compose one opens
and closes the popover of the whole NorvaneBar, the screenshot one closes it and opens it again with
the region dragged in the selector (maim with slop). Run inside a desktop session; NORVANEBAR_BINARY
names the app."""

import glob
import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

HARNESS = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness")
sys.path.insert(0, HARNESS)
from norvanebar_app import NorvaneBar, popover_window_id, wait_until, window_geometry, xembed_icon_window  # noqa: E402


def press(keys):
    subprocess.run(["xdotool", "key", keys], check=True)


class HotKeysTest(unittest.TestCase):
    def start(self, settings=None):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        # Screenshots and the pictures staged from them land in the test's own folder.
        os.environ["TMPDIR"] = self.folder = log_dir.name
        folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "NorvaneBar")
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, "settings.json")
        if settings is None:
            if os.path.exists(path):
                os.remove(path)
        else:
            with open(path, "w", encoding="utf-8") as f:
                json.dump(settings, f)
        app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], log_dir.name).start()
        self.addCleanup(app.stop)
        app.wait_published()
        return app

    def test_the_default_compose_shortcut_toggles_the_popover(self):
        app = self.start()
        press("alt+shift+space")
        app.wait_popover(True)
        press("alt+shift+space")
        app.wait_popover(False)
        press("alt+shift+space")
        app.wait_popover(True)

    def test_the_compose_shortcut_opens_the_popover_below_the_tray_icon(self):
        app = self.start()
        icon = wait_until(xembed_icon_window, what="the XEmbed tray icon")
        _, icon_y, _, icon_height = window_geometry(icon)
        # Moved away first: the popover hangs from the icon, not from the pointer.
        subprocess.run(["xdotool", "mousemove", "200", "500"], check=True)
        press("alt+shift+space")
        app.wait_popover(True)
        _, y, _, _ = window_geometry(wait_until(popover_window_id, what="the popover window"))
        self.assertGreater(y, icon_y + icon_height - 1)
        self.assertLess(y, 200)

    def pictures(self, pattern):
        return glob.glob(os.path.join(self.folder, pattern))

    def screenshot_shortcut_with(self, user):
        """Opens the popover, starts the selector's user with `user`'s arguments and presses the
        screenshot shortcut; returns once the popover closed and the user is done."""
        app = self.start({"screenshotHotKeyPreset": "controlShiftSpace"})
        app.toggle()
        app.wait_popover(True)
        selector_user = subprocess.Popen(["/usr/bin/python3", os.path.join(HARNESS, "region_drag.py"), *user])
        press("ctrl+shift+space")
        app.wait_popover(False)
        self.assertEqual(selector_user.wait(30), 0)
        return app

    def test_the_screenshot_shortcut_closes_the_popover_and_opens_it_with_the_region_taken(self):
        app = self.screenshot_shortcut_with(["100", "100", "400", "300"])
        app.wait_popover(True)
        self.assertEqual(len(self.pictures("norvanebar-*-Pasted image*.png")), 1)
        wait_until(lambda: not self.pictures("norvanebar-shot-*"), what="the shot file to be removed")

    def test_escape_in_the_selector_leaves_the_popover_closed_and_nothing_attached(self):
        app = self.screenshot_shortcut_with(["--cancel"])
        # The selector has let go: nothing is to happen now, and 1.5 s is long enough to see it if
        # it did (maim ends and the app answers within milliseconds).
        deadline = time.monotonic() + 1.5
        while time.monotonic() < deadline:
            self.assertFalse(app.popover_visible())
            time.sleep(0.05)
        self.assertEqual(self.pictures("norvanebar-*"), [])

    def test_the_preset_of_the_settings_is_the_one_bound(self):
        app = self.start({"hotKeyPreset": "optionShiftN"})
        # The default combination is not NorvaneBar's now: were it bound, the two presses would toggle
        # twice and leave the popover closed.
        press("alt+shift+space")
        press("alt+shift+n")
        app.wait_popover(True)
        press("alt+shift+n")
        app.wait_popover(False)


if __name__ == "__main__":
    unittest.main()
