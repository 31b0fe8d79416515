"""A screen recording through the ScreenCast portal, as on Wayland: the portal of the harness on the
session bus hands out the fake screen of a private PipeWire, and NorvaneBar records it from the
tray into a task that the sandbox receives; the screen chosen is offered again with the portal's
restore token until the person chooses another; the person's cancel in the portal's chooser and
the portal's failure end the recording as they should, from the tray and from the composer. Run
inside a desktop session with an accessibility bus, a StatusNotifierItem host and --microphone;
NORVANEBAR_BINARY names the app, NORVANE_SANDBOX the sandbox."""

import os
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from accessibility import press, pump_until  # noqa: E402
from recording_app import RecordingAppTest  # noqa: E402
from screen_sharing import FakeScreen, ScreenCastPortal  # noqa: E402

# The portal's failure as the workflow tells it.
FAILURE = "Recording failed: The desktop ended the screen sharing."


class ScreenRecordingPortalTest(RecordingAppTest):
    @classmethod
    def setUpClass(cls):
        cls.screen_logs = tempfile.TemporaryDirectory(prefix="norvanebar-screen-")
        cls.screen = FakeScreen(cls.screen_logs.name)

    @classmethod
    def tearDownClass(cls):
        cls.screen.stop()
        cls.screen_logs.cleanup()

    def start_portal(self, answer=None):
        self.portal = ScreenCastPortal(self.screen, os.path.join(self.log_dir, "portal.log"), answer)
        self.addCleanup(self.portal.stop)

    def ask_the_portal(self):
        """"Choose Screen…" on the open sheet, and the portal's answer to the one start it is asked."""
        press(self.ui(), "Choose Screen…")
        pump_until(lambda: len(self.portal.options_of("Start")) == 1, what="the portal asked to start")

    def discard(self):
        press(self.ui(), "Discard")
        self.app.wait_popover(True)

    def test_the_portals_screen_is_recorded_into_a_task_and_offered_again_until_another_is_chosen(self):
        self.start_portal()
        self.open_the_setup_from_the_tray()
        self.record_until_review()
        press(self.ui(), "Attach to task")
        self.app.wait_popover(True)
        self.shown("1 attachment", timeout=20)
        self.create_the_task("through the portal")
        report = self.uploaded_movie()
        # The fake screen's size, not the X server's.
        self.assertIn("Width: 1280", report)
        self.assertIn("Height: 720", report)
        self.assertNotIn("restore_token", self.portal.options_of("SelectSources")[0])

        self.open_the_setup_from_the_tray()
        self.shown("Choose Another Screen")
        self.record_until_review()
        self.assertEqual(self.portal.options_of("SelectSources")[1]["restore_token"], "restore-1")
        self.assertEqual(self.portal.options_of("SelectSources")[1]["persist_mode"], 2)
        self.discard()

        self.open_the_setup_from_the_tray()
        press(self.ui(), "Choose Another Screen")
        self.record_until_review()
        self.assertNotIn("restore_token", self.portal.options_of("SelectSources")[2])
        self.discard()
        self.assertEqual(self.movies_left(), [])

    def test_a_cancel_in_the_portals_chooser_brings_the_popover_back_with_nothing_to_tell(self):
        self.start_portal("cancel")
        self.open_the_setup_from_the_tray()
        self.ask_the_portal()
        self.app.wait_popover(True)
        self.shown("Task name")
        self.assertIsNone(self.showing("Choose Screen…"))
        self.assertIsNone(self.showing("Screen Recording"))
        self.assertEqual(self.movies_left(), [])
        # Nothing is left running: the next recording starts as the first did.
        self.open_the_setup_from_the_tray()
        press(self.ui(), "Cancel")

    def test_the_portals_failure_is_told_in_the_popover_from_the_tray(self):
        self.start_portal("fail")
        self.open_the_setup_from_the_tray()
        self.ask_the_portal()
        self.app.wait_popover(True)
        self.shown(FAILURE)
        press(self.ui(), "OK")
        pump_until(lambda: self.showing(FAILURE) is None, what="the alert closed")

    def test_the_portals_failure_from_the_composers_button_waits_in_the_closed_popover(self):
        self.start_portal("fail")
        press(self.ui(), "Record screen")
        self.ask_the_portal()
        self.app.wait_popover(False)
        time.sleep(1)
        self.assertFalse(self.app.popover_visible())
        self.app.toggle()
        self.app.wait_popover(True)
        self.shown(FAILURE)


if __name__ == "__main__":
    unittest.main(verbosity=2)
