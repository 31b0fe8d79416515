"""A screen recording end to end on X11, as a person makes it: "Record Screen…" in the tray menu,
the setup sheet, our own picker by keyboard, the countdown, the recording with the session's
microphone (a private PulseAudio playing a tone), pause and resume, stop, the review, "Attach to
task", and the task created with the movie, which the sandbox then serves and gst-discoverer-1.0
reads; and from the composer's button, where the movie joins what is typed. Run inside a desktop
session with an accessibility bus, a StatusNotifierItem host and --microphone; NORVANEBAR_BINARY
names the app, NORVANE_SANDBOX the sandbox."""

import json
import os
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from accessibility import Atspi, application, descendants, find, has_state, press, pump_until  # noqa: E402
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import NorvaneBar, wait_until  # noqa: E402

NORTHWIND = "9015000001"
INBOX = "901500001001"
WALKTHROUGH = {"id": "5d2f8b1e-7a34-4c09-b6e1-93c0a4f2d817", "name": "Walkthrough", "taskName": "Walkthrough: ",
               "descriptionMarkdown": "Watch the recording attached."}


def keys(*names):
    subprocess.run(["xdotool", "key", *names], check=True)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True)


def screen_choice():
    width, height = subprocess.run(["xdotool", "getdisplaygeometry"], capture_output=True, text=True,
                                   check=True).stdout.split()
    return f"Screen 1 — {width} × {height}"


class ScreenRecordingTest(unittest.TestCase):
    def setUp(self):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        self.log_dir = log_dir.name
        # The movies are written in the test's own temporary folder.
        os.environ["TMPDIR"] = self.log_dir
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.uploads = os.path.join(self.log_dir, "uploads")
        os.makedirs(self.uploads)
        self.sandbox = Sandbox(os.environ["NORVANE_SANDBOX"], os.path.join(self.log_dir, "sandbox.log"), admin=True,
                               data=self.uploads)
        self.addCleanup(self.sandbox.stop)
        write_profile(os.environ["XDG_CONFIG_HOME"], self.sandbox, templates=[WALKTHROUGH],
                      screenRecordingTemplateID=WALKTHROUGH["id"], recordingCaptureMicrophone=True,
                      recordingIncludeFacecam=False,
                      lastLocation={"workspaceID": NORTHWIND, "listID": INBOX, "listName": "Inbox",
                                    "pathDescription": "Product"})
        self.token = self.sandbox.tokens[0][0]
        self.app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], self.log_dir).start()
        self.addCleanup(self.app.stop)
        self.app.wait_published()
        wait_until(self.app.tray_item, what="the tray item")
        self.app.toggle()
        self.app.wait_popover(True)
        type_text(self.token)
        keys("Return")
        self.shown("Task name", timeout=20)

    def ui(self):
        return pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")

    def shown(self, name, timeout=15.0):
        return pump_until(lambda: find(self.ui(), None, name), timeout, f'"{name}"')

    def focused(self, name, timeout=15.0):
        """Waits until the control of this name has the keyboard, so that a key pressed goes to it."""
        pump_until(lambda: (node := find(self.ui(), None, name)) and has_state(node, Atspi.StateType.FOCUSED),
                   timeout, f'the keyboard on "{name}"')

    def record_from_the_sheet(self):
        """From the open setup sheet to the review of a recording with a pause in it."""
        press(self.ui(), "Choose Screen…")
        self.app.wait_popover(False)
        self.focused(screen_choice())  # the keyboard starts on the first screen
        keys("Return")
        self.shown("Mic connected", timeout=30)
        press(self.ui(), "Pause")
        self.shown("Resume")
        paused_at = self.elapsed()
        time.sleep(1.5)
        self.assertEqual(self.elapsed(), paused_at)
        press(self.ui(), "Resume")
        self.shown("Pause")
        pump_until(lambda: self.elapsed() >= 3, timeout=20, what="three seconds recorded")
        press(self.ui(), "Stop recording")
        self.shown("Attach to task", timeout=30)

    def elapsed(self):
        """The seconds recorded, as the controls bar tells them ("Recorded 0:03")."""
        for node in descendants(self.ui()):
            name = node.get_name() or ""
            if name.startswith("Recorded "):
                minutes, seconds = name.removeprefix("Recorded ").split(":")[-2:]
                return int(minutes) * 60 + int(seconds)
        return 0

    def uploaded_movie(self):
        """The parts of the one attachment upload, and what gst-discoverer-1.0 reads in the file."""
        uploads = [request for request in self.sandbox.requests()
                   if request["method"] == "POST" and request["path"].endswith("/attachment")]
        self.assertEqual(len(uploads), 1)
        stored = [os.path.join(folder, name) for folder, _, names in os.walk(self.uploads) for name in names]
        self.assertEqual(len(stored), 1)
        report = subprocess.run(["gst-discoverer-1.0", stored[0]], capture_output=True, text=True,
                                check=True).stdout
        return uploads[0]["parts"], report

    def test_the_tray_records_the_screen_into_a_new_task_with_the_template(self):
        self.app.toggle()
        self.app.wait_popover(False)
        self.app.click_menu("Record Screen…")
        self.app.wait_popover(True)
        self.shown("Choose Screen…")
        self.record_from_the_sheet()
        self.focused("Attach to task")  # the default button
        keys("Return")
        self.app.wait_popover(True)
        self.shown("1 attachments", timeout=20)
        name = self.shown("Task name")
        pump_until(lambda: name.get_text(0, -1) == WALKTHROUGH["taskName"], what="the template's task name")
        name.grab_focus()
        keys("End")
        type_text("the new menu")
        keys("ctrl+Return")
        self.shown("Task created", timeout=60)

        created = [request for request in self.sandbox.requests()
                   if request["method"] == "POST" and request["path"].endswith("/task")]
        self.assertEqual(created[-1]["json"]["name"], "Walkthrough: the new menu")
        parts, report = self.uploaded_movie()
        self.assertTrue(parts[0]["filename"].startswith("Screen Recording "), parts)
        self.assertTrue(parts[0]["filename"].endswith(".mov"), parts)
        self.assertIn("video #", report)
        self.assertIn("H.264", report)
        self.assertIn("audio #", report)

    def test_the_composers_button_adds_the_movie_to_what_is_typed(self):
        name = self.shown("Task name")
        name.grab_focus()
        type_text("Half written")
        press(self.ui(), "Record screen")
        self.shown("Choose Screen…")
        self.record_from_the_sheet()
        press(self.ui(), "Attach to task")
        self.app.wait_popover(True)
        self.shown("1 attachments", timeout=20)
        pump_until(lambda: self.shown("Task name").get_text(0, -1) == "Half written", what="the name kept")


if __name__ == "__main__":
    unittest.main(verbosity=2)
