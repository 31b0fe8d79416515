"""The global shortcuts' part of the headless demo: the compose shortcut opens the popover from
anywhere, and the screenshot shortcut closes it, lets a region be dragged with the desktop's selector
(slop, as `maim -s` runs it) and shows the picture as the only attachment of a new task, with the
template for screenshots applied; the task is then named and created."""

import os
import subprocess
import sys

sys.path.insert(0, os.path.dirname(__file__))
from demo_steps import focus, keys, norvanebar, screenshot, shown, submit  # noqa: E402
from accessibility import find, press, pump_until  # noqa: E402
from norvanebar_app import wait_until  # noqa: E402

HARNESS = os.path.join(os.path.dirname(__file__), "..", "tests", "harness")
# The template the demo profile applies to screenshots, and the shortcut that takes one.
SCREENSHOT_TEMPLATE = {"id": "0c9a7e52-3d41-4f6b-9a2e-5b8c1d7f4e30", "name": "Bug report",
                       "taskName": "Bug: ", "descriptionMarkdown": "Steps to reproduce:\n1. ",
                       "priority": 2, "tags": ["bug"]}
SCREENSHOT_SETTINGS = {"screenshotTemplateID": SCREENSHOT_TEMPLATE["id"],
                       "screenshotHotKeyPreset": "controlShiftSpace"}


def capture_road(app, out, prefix):
    ui = norvanebar()
    if app.popover_visible():
        app.toggle()
        app.wait_popover(False)
    keys("alt+shift+space")
    app.wait_popover(True)
    shown(ui, "Task name")
    screenshot(out, f"{prefix}1-popover-opened-by-the-hot-key.png")
    # Something on the screen to take a picture of, below where the popover hangs.
    note = subprocess.Popen(["xmessage", "-geometry", "+160+480", "-buttons", "",
                             "Release 4.2: the due count on the tray icon is cut off"])
    wait_until(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "Xmessage"],
                                      capture_output=True).returncode == 0, what="the note on the screen")
    keys("ctrl+shift+space")
    app.wait_popover(False)
    subprocess.run([sys.executable, os.path.join(HARNESS, "region_drag.py"), "150", "470", "520", "530"], check=True)
    app.wait_popover(True)
    note.terminate()  # only once the picture is taken
    shown(ui, "1 attachment")
    task_name = pump_until(lambda: find(ui, None, "Task name"), what="the task name field")
    pump_until(lambda: task_name.get_text(0, -1) == SCREENSHOT_TEMPLATE["taskName"], what="the template's task name")
    screenshot(out, f"{prefix}2-region-screenshot-attached-with-its-template.png")
    focus(ui, "Task name")
    keys("End")
    submit("the tray icon's badge is cut off")
    shown(ui, "Task created", timeout=30)
    screenshot(out, f"{prefix}3-screenshot-task-created.png")
    press(ui, "Create New Task")
    shown(ui, "Task name")
