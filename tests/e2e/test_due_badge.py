"""The tray icon counts the tasks due by today's end once the setting is on: drawn after the popover
opens while signed in, and at launch once signed in. Run inside a desktop session with a
StatusNotifierItem host; NORVANEBAR_BINARY names the app, NORVANE_SANDBOX the sandbox."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

import dbus

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import NorvaneBar, wait_until  # noqa: E402

ITEM_INTERFACE = "org.kde.StatusNotifierItem"


def icon_pixmaps(app):
    """The item's icon images, as (width, height, ARGB bytes)."""
    name, path = app.tray_item()
    item = app.bus.get_object(name, path)
    pixmaps = item.Get(ITEM_INTERFACE, "IconPixmap", dbus_interface=dbus.PROPERTIES_IFACE)
    return [(int(width), int(height), bytes(data)) for width, height, data in pixmaps]


class DueBadgeTest(unittest.TestCase):
    def setUp(self):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        self.log_dir = log_dir.name
        self.sandbox = Sandbox(os.environ["NORVANE_SANDBOX"], os.path.join(self.log_dir, "sandbox.log"))
        self.addCleanup(self.sandbox.stop)
        self.settings_path = write_profile(os.environ["XDG_CONFIG_HOME"], self.sandbox, showDueCountBadge=True)

    def settings(self):
        with open(self.settings_path, encoding="utf-8") as f:
            return json.load(f)

    def start(self):
        app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], self.log_dir).start()
        self.addCleanup(app.stop)
        app.wait_published()
        wait_until(app.tray_item, what="the tray item")
        return app

    def test_the_count_is_drawn_after_the_popover_opens_and_at_the_next_launch(self):
        app = self.start()
        plain = icon_pixmaps(app)
        app.toggle()
        app.wait_popover(True)
        token = self.sandbox.tokens[0][0]
        subprocess.run(["xdotool", "type", "--delay", "5", token], check=True)
        subprocess.run(["xdotool", "key", "Return"], check=True)
        wait_until(lambda: self.settings().get("activeAccountID"), timeout=15, what="the sign-in")
        # Each opening fetches the count once the workspace is known, which takes a moment after the
        # sign-in: closed and opened again until the count is drawn.
        counted = None
        for _ in range(5):
            app.toggle()
            app.wait_popover(False)
            app.toggle()
            app.wait_popover(True)
            try:
                counted = wait_until(lambda: (lambda now: now if now != plain else None)(icon_pixmaps(app)),
                                     timeout=3, what="the icon with its count")
                break
            except TimeoutError:
                continue
        self.assertIsNotNone(counted, "the count was never drawn")
        self.assertEqual([(w, h) for w, h, _ in counted], [(w, h) for w, h, _ in plain])
        app.stop()

        again = self.start()
        wait_until(lambda: icon_pixmaps(again) == counted, timeout=15, what="the count at launch")


if __name__ == "__main__":
    unittest.main(verbosity=2)
