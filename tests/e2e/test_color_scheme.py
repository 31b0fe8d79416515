"""The whole NorvaneBar follows the desktop's colour scheme as its Settings portal tells it: dark at
the start, and a change while the popover is open. Run inside a desktop session; NORVANEBAR_BINARY
names the app."""

import os
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from desktop_settings import DARK, LIGHT, SettingsPortal  # noqa: E402
from norvanebar_app import NorvaneBar, popover_window_id, screen_pixel, wait_until, window_geometry  # noqa: E402


def lightness(colour):
    return max(colour) / 255


class ColorSchemeTest(unittest.TestCase):
    def start(self, scheme):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        portal = SettingsPortal(scheme, os.path.join(log_dir.name, "settings-portal.log"))
        self.addCleanup(portal.stop)
        app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], log_dir.name).start()
        self.addCleanup(app.stop)
        app.wait_published()
        return portal, app

    def open_popover(self, app):
        app.toggle()
        app.wait_popover(True)
        x, y, width, height = window_geometry(wait_until(popover_window_id, what="the popover window"))
        # Inside the frame, below the page's last control: the window's own colour.
        return x + 8, y + height - 8

    def wait_lightness(self, point, dark, what):
        return wait_until(lambda: (lightness(screen_pixel(*point)) < 0.3) == dark, timeout=10, what=what)

    def test_a_dark_desktop_gives_a_dark_popover_from_the_start(self):
        _, app = self.start(DARK)
        point = self.open_popover(app)
        self.wait_lightness(point, True, "a dark popover")

    def test_the_open_popover_turns_dark_and_light_again_with_the_desktop(self):
        portal, app = self.start(LIGHT)
        point = self.open_popover(app)
        self.wait_lightness(point, False, "a light popover")
        light = screen_pixel(*point)
        portal.set_color_scheme(DARK)
        self.wait_lightness(point, True, "the popover to turn dark")
        portal.set_color_scheme(LIGHT)
        wait_until(lambda: screen_pixel(*point) == light, timeout=10, what="the popover's light colour again")


if __name__ == "__main__":
    unittest.main(verbosity=2)
