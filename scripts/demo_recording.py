"""The screen recording's part of the headless demo: "Record Screen…" in the tray menu opens the
setup sheet, "Choose Screen…" our own picker (the virtual desktop runs no ScreenCast portal), the
whole screen is chosen by keyboard, the countdown runs, the recording goes on with the session's
microphone (a private PulseAudio playing a tone) until the controls bar says "Mic connected", and is
stopped; the review plays the movie, "Attach to task" puts it in a new task with the template for
recordings applied, and the task is created with the movie."""

import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(__file__))
from demo_settings import tray_menu  # noqa: E402
from demo_steps import focus, keys, norvanebar, screenshot, shown, submit  # noqa: E402
from accessibility import press  # noqa: E402

# The template the demo profile applies to recordings.
RECORDING_TEMPLATE = {"id": "5d2f8b1e-7a34-4c09-b6e1-93c0a4f2d817", "name": "Walkthrough",
                      "taskName": "Walkthrough: ", "descriptionMarkdown": "Watch the recording attached.",
                      "tags": ["video"]}
RECORDING_SETTINGS = {"screenRecordingTemplateID": RECORDING_TEMPLATE["id"], "recordingCaptureMicrophone": True,
                      "recordingIncludeFacecam": False}


def screen_choice():
    """The picker's name of the first screen: "Screen 1 — W × H"."""
    width, height = subprocess.run(["xdotool", "getdisplaygeometry"], capture_output=True, text=True,
                                   check=True).stdout.split()
    return f"Screen 1 — {width} × {height}"


def recording_road(out, prefix):
    ui = norvanebar()
    tray_menu("Record Screen…", "Return")
    shown(ui, "Choose Screen…")
    screenshot(out, f"{prefix}R1-recording-setup-sheet.png")
    press(ui, "Choose Screen…")
    shown(ui, screen_choice())
    screenshot(out, f"{prefix}R2-recording-picker.png")
    press(ui, screen_choice())
    # The countdown's second number, well before the recording starts.
    time.sleep(1.2)
    subprocess.run(["maim", os.path.join(out, f"{prefix}R3-recording-countdown.png")], check=True)
    print(f"screenshot: {os.path.join(out, f'{prefix}R3-recording-countdown.png')}")
    # The controls of the recording before may still be in the accessibility tree: the countdown's
    # end, then a moment of recording.
    time.sleep(6)
    shown(ui, "Mic connected", timeout=20)
    time.sleep(2)
    screenshot(out, f"{prefix}R4-recording-controls-bar.png")
    press(ui, "Stop recording")
    shown(ui, "Attach to task", timeout=20)
    screenshot(out, f"{prefix}R5-recording-review.png")
    press(ui, "Attach to task")
    shown(ui, "1 attachment", timeout=20)
    screenshot(out, f"{prefix}R6-recording-attached-with-its-template.png")
    focus(ui, "Task name")
    keys("End")
    submit("the new tray menu")
    shown(ui, "Task created", timeout=60)
    screenshot(out, f"{prefix}R7-recording-task-created.png")
    press(ui, "Create New Task")
    shown(ui, "Task name")
