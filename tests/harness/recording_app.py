"""NorvaneBar signed in to a sandbox, ready to record the screen into a task, for the end-to-end tests
of screen recording: the session's microphone on, the camera off, the "Walkthrough" template set for
recordings, and the movies written in the test's own temporary folder. Run inside a desktop session
with an accessibility bus, a StatusNotifierItem host and --microphone; NORVANEBAR_BINARY names the
app, NORVANE_SANDBOX the sandbox."""

import os
import subprocess
import tempfile
import time
import unittest

from accessibility import Atspi, application, descendants, has_state, press, pump_until
from demo_sandbox import Sandbox, write_profile
from norvanebar_app import NorvaneBar, wait_until

NORTHWIND = "9015000001"
INBOX = "901500001001"
WALKTHROUGH = {"id": "5d2f8b1e-7a34-4c09-b6e1-93c0a4f2d817", "name": "Walkthrough", "taskName": "Walkthrough: ",
               "descriptionMarkdown": "Watch the recording attached."}


def keys(*names):
    subprocess.run(["xdotool", "key", *names], check=True)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True)


class RecordingAppTest(unittest.TestCase):
    def setUp(self):
        log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-e2e-")
        self.addCleanup(log_dir.cleanup)
        self.log_dir = log_dir.name
        self.movies = os.path.join(self.log_dir, "movies")
        os.makedirs(self.movies)
        os.environ["TMPDIR"] = self.movies
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
        self.app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], self.log_dir).start()
        self.addCleanup(self.app.stop)
        self.app.wait_published()
        wait_until(self.app.tray_item, what="the tray item")
        self.app.toggle()
        self.app.wait_popover(True)
        type_text(self.sandbox.tokens[0][0])
        keys("Return")
        self.shown("Task name", timeout=20)

    def ui(self):
        return pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")

    def showing(self, name):
        """The node of this name on a window on the screen, or None: a window hidden, such as the
        controls of a recording that ended, keeps its nodes."""
        for node in descendants(self.ui()):
            if node.get_name() == name and has_state(node, Atspi.StateType.SHOWING):
                return node
        return None

    def shown(self, name, timeout=15.0):
        return pump_until(lambda: self.showing(name), timeout, f'"{name}" on the screen')

    def focused(self, name, timeout=15.0):
        """Waits until the control of this name has the keyboard, so that a key pressed goes to it."""
        pump_until(lambda: (node := self.showing(name)) and has_state(node, Atspi.StateType.FOCUSED),
                   timeout, f'the keyboard on "{name}"')

    def open_the_setup_from_the_tray(self):
        """"Record Screen…" in the tray menu, with the popover closed first as a person finds it."""
        if self.app.popover_visible():
            self.app.toggle()
            self.app.wait_popover(False)
        self.app.click_menu("Record Screen…")
        self.app.wait_popover(True)
        self.shown("Choose Screen…")

    def record_until_review(self, choose=lambda: None, pause=False):
        """From the open setup sheet to the review: "Choose Screen…", then `choose` answers the
        picker, and three seconds are recorded, with a pause of 1.5 s if asked."""
        press(self.ui(), "Choose Screen…")
        self.app.wait_popover(False)
        choose()
        self.shown("Mic connected", timeout=30)
        if pause:
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
            if name.startswith("Recorded ") and has_state(node, Atspi.StateType.SHOWING):
                minutes, seconds = name.removeprefix("Recorded ").split(":")[-2:]
                return int(minutes) * 60 + int(seconds)
        return 0

    def movies_left(self):
        """The movies being recorded or reviewed; a movie attached is the draft's own and stays."""
        return sorted(name for name in os.listdir(self.movies) if name.startswith("norvanebar-rec-"))

    def create_the_task(self, typed):
        """Types at the end of the task's name and creates the task; its request to the sandbox."""
        name = self.shown("Task name")
        name.grab_focus()
        keys("End")
        type_text(typed)
        keys("ctrl+Return")
        self.shown("Task created", timeout=60)
        created = [request for request in self.sandbox.requests()
                   if request["method"] == "POST" and request["path"].endswith("/task")]
        return created[-1]

    def uploaded_movie(self):
        """The parts of the one attachment upload, and what gst-discoverer-1.0 reads in the file."""
        uploads = [request for request in self.sandbox.requests()
                   if request["method"] == "POST" and request["path"].endswith("/attachment")]
        self.assertEqual(len(uploads), 1)
        stored = [os.path.join(folder, name) for folder, _, names in os.walk(self.uploads) for name in names]
        self.assertEqual(len(stored), 1)
        report = subprocess.run(["gst-discoverer-1.0", stored[0]], capture_output=True, text=True,
                                check=True).stdout
        parts = uploads[0]["parts"]
        self.assertTrue(parts[0]["filename"].startswith("Screen Recording "), parts)
        self.assertTrue(parts[0]["filename"].endswith(".mov"), parts)
        self.assertIn("H.264", report)
        self.assertIn("audio #", report)
        return report
