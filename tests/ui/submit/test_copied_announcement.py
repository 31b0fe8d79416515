#!/usr/bin/python3
""""Copied", as a screen reader hears it, over the accessibility bus (AT-SPI).

Runs inside `desktop-session run --a11y`, whose session has an accessibility bus, against
norvane-sandbox (NORVANE_SANDBOX). NorvaneBar (NORVANEBAR_BINARY) starts with accessibility on, is
signed in with a demo token through its onboarding page and creates a task. Then each copy button,
pressed, takes "Copied" as its accessible name while it shows it, which the bus announces as a change
of name, and gives its own name back afterwards: "Copy Link" and "Branch" on the created task's page,
and "Copy link" among a task's actions in the Tasks tab, which says "Copied link"."""

import os
import subprocess
import sys
import tempfile
import unittest

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

TESTS = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(TESTS, "harness"))
from accessibility import application, find, press, pump_until  # noqa: E402
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import NorvaneBar  # noqa: E402

NAME_CHANGED = "object:property-change:accessible-name"


def xdotool(*arguments):
    subprocess.run(["xdotool", *arguments], check=True, timeout=30)


class CopiedAnnouncementTest(unittest.TestCase):
    def setUp(self):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-a11y-")
        self.addCleanup(log_dir.cleanup)
        sandbox = Sandbox(os.environ["NORVANE_SANDBOX"], os.path.join(log_dir.name, "sandbox.log"))
        self.addCleanup(sandbox.stop)
        write_profile(os.environ["XDG_CONFIG_HOME"], sandbox)
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"

        # The buttons whose name changed, as the bus announced them.
        self.renamed = []
        self.listener = Atspi.EventListener.new(
            lambda event: self.renamed.append(event.source.get_role()) if event.type == NAME_CHANGED else None)
        self.listener.register(NAME_CHANGED)
        self.addCleanup(self.listener.deregister, NAME_CHANGED)

        self.app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], log_dir.name).start()
        self.addCleanup(self.app.stop)
        self.app.wait_published()
        self.app.toggle()
        self.app.wait_popover(True)
        self.ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
        token, _, name = sandbox.tokens[0]
        pump_until(lambda: find(self.ui, Atspi.Role.PASSWORD_TEXT), what="the token field")
        xdotool("type", "--delay", "5", token)
        xdotool("key", "Return")
        self.shown(f"Signed in as {name}")

    def shown(self, name, role=None, timeout=15.0):
        return pump_until(lambda: find(self.ui, role, name), timeout, f'"{name}"')

    def announced(self, label, copied):
        """Presses the button `label`: it is named `copied` meanwhile, which the bus announces, and
        named `label` again afterwards."""
        before = len(self.renamed)
        press(self.ui, label)
        self.shown(copied, Atspi.Role.PUSH_BUTTON)
        pump_until(lambda: Atspi.Role.PUSH_BUTTON in self.renamed[before:], what=f'the change of name to "{copied}"')
        self.shown(label, Atspi.Role.PUSH_BUTTON)

    def test_each_copy_button_says_copied_to_assistive_technology(self):
        press(self.ui, "List for new tasks")
        search = self.shown("Search lists")
        search.grab_focus()
        xdotool("type", "--delay", "5", "Web")
        self.shown("Sprint 12 · Web")
        xdotool("key", "Return")
        self.shown("Task name").grab_focus()
        xdotool("type", "--delay", "5", "Announce the copy")
        xdotool("key", "ctrl+Return")
        self.shown("Task created")
        self.announced("Copy Link", "Copied")
        self.announced("Branch", "Copied")

        press(self.ui, "Create New Task")
        press(self.ui, "Tasks")
        self.shown("Overdue")
        self.shown("Search tasks").grab_focus()
        xdotool("key", "Down", "Return")
        self.announced("Copy link", "Copied link")


if __name__ == "__main__":
    unittest.main()
