"""The compose shortcut of the settings opens and closes the popover of the whole NorvaneBar, pressed
with xdotool on the session's X server. Run inside a desktop session; NORVANEBAR_BINARY names the
app."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from norvanebar_app import NorvaneBar, popover_window_id, wait_until, window_geometry, xembed_icon_window  # noqa: E402


def press(keys):
    subprocess.run(["xdotool", "key", keys], check=True)


class HotKeysTest(unittest.TestCase):
    def start(self, settings=None):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
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
