"""A screen recording end to end on X11, as a person makes it: "Record Screen…" in the tray menu,
the setup sheet, our own picker by keyboard, the countdown, the recording with the session's
microphone (a private PulseAudio playing a tone), pause and resume, stop, the review, "Attach to
task", and the task created with the movie, which the sandbox then serves and gst-discoverer-1.0
reads; and from the composer's button, where the movie joins what is typed. Run inside a desktop
session with an accessibility bus, a StatusNotifierItem host and --microphone; NORVANEBAR_BINARY
names the app, NORVANE_SANDBOX the sandbox."""

import os
import subprocess
import sys
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
from accessibility import press, pump_until  # noqa: E402
from recording_app import WALKTHROUGH, RecordingAppTest, keys, type_text  # noqa: E402


def screen_choice():
    width, height = subprocess.run(["xdotool", "getdisplaygeometry"], capture_output=True, text=True,
                                   check=True).stdout.split()
    return f"Screen 1 — {width} × {height}"


class ScreenRecordingTest(RecordingAppTest):
    def choose_the_screen_by_keyboard(self):
        self.focused(screen_choice())  # the keyboard starts on the first screen
        keys("Return")

    def test_the_tray_records_the_screen_into_a_new_task_with_the_template(self):
        self.open_the_setup_from_the_tray()
        self.record_until_review(self.choose_the_screen_by_keyboard, pause=True)
        self.focused("Attach to task")  # the default button
        keys("Return")
        self.app.wait_popover(True)
        self.shown("1 attachment", timeout=20)
        name = self.shown("Task name")
        pump_until(lambda: name.get_text(0, -1) == WALKTHROUGH["taskName"], what="the template's task name")
        created = self.create_the_task("the new menu")
        self.assertEqual(created["json"]["name"], "Walkthrough: the new menu")
        self.assertIn("video #", self.uploaded_movie())

    def test_the_composers_button_adds_the_movie_to_what_is_typed(self):
        name = self.shown("Task name")
        name.grab_focus()
        type_text("Half written")
        press(self.ui(), "Record screen")
        self.shown("Choose Screen…")
        self.record_until_review(self.choose_the_screen_by_keyboard, pause=True)
        press(self.ui(), "Attach to task")
        self.app.wait_popover(True)
        self.shown("1 attachment", timeout=20)
        pump_until(lambda: self.shown("Task name").get_text(0, -1) == "Half written", what="the name kept")


if __name__ == "__main__":
    unittest.main(verbosity=2)
