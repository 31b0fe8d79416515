"""Signing in with Google from the settings window's Attachments tab, the whole way a desktop takes:
NorvaneBar opens the sign-in page in the session's browser (a stand-in that agrees at once, or one
that never answers), the sandbox's Google sends the browser on to NorvaneBar's scheme, `gio open`
starts NorvaneBar from the desktop entry it registered, that launch hands the answer to the running
one, and the tokens land in the session's Secret Service.

Runs inside `desktop-session run --a11y --tray sni`; NORVANEBAR_BINARY names the app, NORVANE_SANDBOX
the sandbox."""

import os
import subprocess
import sys
import tempfile
import unittest
import urllib.parse
from unittest import mock

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
import stand_in_browser  # noqa: E402
from accessibility import application, press, pump_until  # noqa: E402
from attachments_pane import press_button, shows  # noqa: E402
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import NorvaneBar, wait_until  # noqa: E402
from storage_stand_ins import google_settings, google_state  # noqa: E402

KEYRING_SERVICE = "com.norvanebar.app"
GOOGLE_ITEMS = ("google-drive-access-token", "google-drive-refresh-token", "google-drive-access-token-expiry")


def keyring_item(account):
    """What `secret-tool` finds for NorvaneBar's item `account`, or None."""
    found = subprocess.run(["secret-tool", "lookup", "server", KEYRING_SERVICE, "user", account],
                           capture_output=True, text=True, check=False)
    return found.stdout if found.returncode == 0 else None


class GoogleSignInTest(unittest.TestCase):
    def setUp(self):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        self.log_dir = log_dir.name
        self.sandbox = Sandbox(os.environ["NORVANE_SANDBOX"], os.path.join(self.log_dir, "sandbox.log"), admin=True)
        self.addCleanup(self.sandbox.stop)
        write_profile(os.environ["XDG_CONFIG_HOME"], self.sandbox, storageProvider="googleDrive",
                      **google_settings(self.sandbox))
        for account in GOOGLE_ITEMS:
            # Exits 1 when there is nothing to clear.
            subprocess.run(["secret-tool", "clear", "server", KEYRING_SERVICE, "user", account], check=False)
        environment = mock.patch.dict(os.environ, {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
        environment.start()
        self.addCleanup(environment.stop)
        self.browser_log = os.path.join(self.log_dir, "browser.jsonl")
        stand_in_browser.use(os.path.join(self.log_dir, "browser"), self.browser_log)

    def open_attachments_tab(self):
        app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], self.log_dir).start()
        self.addCleanup(app.stop)
        app.wait_published()
        app.click_menu("Settings…")
        ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
        press(ui, "Attachments")
        shows(ui, "Not connected")
        return ui

    def browser_visits(self, count):
        return wait_until(lambda: (visits := stand_in_browser.visits(self.browser_log)) and len(visits) >= count
                          and visits, timeout=15, what="the browser's visit")

    def test_the_browsers_answer_connects_google_drive_and_keeps_the_tokens_in_the_keyring(self):
        ui = self.open_attachments_tab()
        press_button(ui, "Sign in with Google")
        shows(ui, "Connected to Google Drive.", timeout=30)
        shows(ui, "Connected")

        visits = self.browser_visits(1)
        self.assertEqual(len(visits), 1, visits)
        self.assertTrue(visits[0]["url"].startswith(self.sandbox.web + "/google/o/oauth2/v2/auth?"), visits[0])
        callback = urllib.parse.urlsplit(visits[0]["callback"])
        self.assertEqual((callback.scheme, callback.path), ("com.norvanebar.app", "/oauth/google"))
        answer = urllib.parse.parse_qs(callback.query)
        self.assertEqual(answer["state"], urllib.parse.parse_qs(urllib.parse.urlsplit(visits[0]["url"]).query)["state"])
        self.assertTrue(answer["code"][0], visits[0])
        self.assertEqual(visits[0]["gio"], 0)
        grants = google_state(self.sandbox)["grants"]
        self.assertEqual(len(grants), 1, grants)
        self.assertEqual(keyring_item("google-drive-refresh-token"), grants[0]["refreshToken"])
        self.assertIn(keyring_item("google-drive-access-token"), google_state(self.sandbox)["accessTokens"])

    def test_cancel_ends_a_sign_in_the_browser_never_answers(self):
        os.environ[stand_in_browser.IDLE] = "1"
        ui = self.open_attachments_tab()
        press_button(ui, "Sign in with Google")
        shows(ui, "Finish signing in with Google in your browser.")
        self.browser_visits(1)
        press_button(ui, "Cancel Google sign-in")
        shows(ui, "Sign-in was cancelled.")
        shows(ui, "Not connected")

        self.assertEqual([list(visit) for visit in stand_in_browser.visits(self.browser_log)], [["url"]])
        self.assertEqual(google_state(self.sandbox)["grants"], [])
        self.assertIsNone(keyring_item("google-drive-refresh-token"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
