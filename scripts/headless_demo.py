"""Shows NorvaneBar on a virtual display against norvane-sandbox: opens the popover with a click on
its tray icon, signs in with a wrong and then a demo token, chooses a list, pastes two files and then
a picture as attachments, starts again to show that the token and the list were kept, then creates
tasks: one typed and created, one with two files, three in bulk, one refused and retried, and one
left to run in the background, whose notification it prints; then turns to the Tasks tab: its
sections, a search with matches and one without, a filter chip's menu, a task's actions opened by
keyboard, a task marked complete, and the tray icon with the count of tasks due; then the composer's
road (demo_compose.py: the location picker, every field chip, templates, the attachment strip and the
created task's request) and the settings' (demo_settings.py: the tray menu's quick links, a second
account, each tab of the settings window, the account menu), the attachment storage's (demo_storage.py:
each provider set up on the Attachments tab, tested, Google Drive signed in to, and a task with a file
stored by each) and the tool tips of names with markup
(demo_tooltips.py: a custom field, an account and a quick link). It saves a screenshot of each step.
Then the desktop turns dark, as its Settings portal tells, and the key pages of the same road are
shown again in dark: the composer with text and files, a task being created and created, three in
bulk, a refused one, the banner of a job in the background once no notification server is left,
the hot key and the region screenshot, the three tool tips, each tab of the settings window, and the
Attachments tab of each storage provider.
Run inside a desktop session with an accessibility bus, through which it presses the buttons.

usage: headless_demo.py NORVANEBAR NORVANE_SANDBOX OUTPUT_FOLDER"""

import json
import os
import subprocess
import sys
import time

import dbus

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "harness"))
from accessibility import Atspi, application, find, has_state, press, pump_until  # noqa: E402
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from desktop_settings import DARK, LIGHT, SettingsPortal  # noqa: E402
from norvanebar_app import NorvaneBar, click, popover_window_id, wait_until, xembed_icon_window  # noqa: E402

sys.path.insert(0, os.path.dirname(__file__))
from demo_capture import SCREENSHOT_SETTINGS, SCREENSHOT_TEMPLATE, capture_road  # noqa: E402
from demo_compose import compose_road  # noqa: E402
from demo_recording import RECORDING_SETTINGS, RECORDING_TEMPLATE, recording_road  # noqa: E402
from demo_settings import settings_road, settings_tabs  # noqa: E402
from demo_storage import StorageStandIns, dark_storage, storage_road  # noqa: E402
from demo_tooltips import dark_tips, light_tips, quick_link  # noqa: E402
from demo_steps import (SETTLE, focus, norvanebar, paste, screenshot, shown, submit, type_into_popover,  # noqa: E402
                        wheel_until)


def sample_files(out):
    """A small document and a sparse 612 MB movie, which is above the size warning threshold."""
    folder = os.path.join(out, "files")
    os.makedirs(folder, exist_ok=True)
    notes = os.path.join(folder, "meeting-notes.pdf")
    with open(notes, "wb") as file:
        file.write(b"%PDF-1.4\n" + b"0" * 182_000)
    movie = os.path.join(folder, "product-demo.mov")
    with open(movie, "wb") as file:
        file.truncate(612_000_000)
    uris = os.path.join(folder, "uri-list")
    with open(uris, "w", encoding="utf-8") as file:
        file.write(f"file://{notes}\r\nfile://{movie}\r\n")
    picture = os.path.join(folder, "screen.png")
    subprocess.run(["maim", "--geometry", "320x200+900+40", picture], check=True)  # the popover's top
    return uris, picture


CREATE = {"method": "POST", "path": "/api/v2/list/*/task"}
UPLOAD = {"method": "POST", "path": "/api/v2/task/*/attachment"}


def two_small_files(out):
    folder = os.path.join(out, "files")
    os.makedirs(folder, exist_ok=True)
    paths = [os.path.join(folder, "wireframes.pdf"), os.path.join(folder, "colour-palette.png")]
    for path, size in zip(paths, (240_000, 96_000)):
        with open(path, "wb") as file:
            file.write(os.urandom(size))
    uris = os.path.join(folder, "two-files")
    with open(uris, "w", encoding="utf-8") as file:
        file.write("".join(f"file://{path}\r\n" for path in paths))
    return uris


def last_notification():
    with open(os.environ["NORVANEBAR_NOTIFICATIONS_LOG"], encoding="utf-8") as log:
        events = [json.loads(line) for line in log if line.strip()]
    notified = [event for event in events if event.get("event") == "notify"]
    return notified[-1] if notified else None


def create_tasks(sandbox, out):
    """The road from the composer to the finished task, page by page."""
    ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")

    sandbox.add_fault(dict(CREATE, delayMs=2500))
    submit("Plan the launch")
    shown(ui, "Creating Plan the launch…")
    screenshot(out, "8-creating-a-task.png")
    shown(ui, "Task created")
    screenshot(out, "9-task-created.png")
    press(ui, "Create New Task")

    shown(ui, "Task name")
    paste("text/uri-list", two_small_files(out))
    shown(ui, "2 attachments")
    sandbox.add_fault(dict(UPLOAD, delayMs=2500, times=2))
    submit("Share the design files")
    shown(ui, "Uploading attachment 1 of 2…")
    screenshot(out, "10-uploading-attachment-1-of-2.png")
    shown(ui, "Task created")
    screenshot(out, "11-task-with-two-files-created.png")
    press(ui, "Create New Task")

    press(ui, "Multiple tasks — one per line")
    bulk_editor = pump_until(lambda: find(ui, None, "Bulk task names"), what="the bulk editor")
    bulk_editor.grab_focus()
    for number, line in enumerate(("Draft the agenda", "Book the room", "Send the invites")):
        if number:
            subprocess.run(["xdotool", "key", "Return"], check=True)
        subprocess.run(["xdotool", "type", "--delay", "5", line], check=True)
    screenshot(out, "12-three-lines-in-bulk.png")
    submit()
    shown(ui, "3 tasks created")
    screenshot(out, "13-bulk-done.png")
    press(ui, "Done")

    sandbox.add_fault(dict(CREATE, status=500, err="The service is down for maintenance", ecode="DEMO_001"))
    submit("Order new badges")
    shown(ui, "Couldn't create task")
    screenshot(out, "14-creation-refused.png")
    press(ui, "Retry")
    shown(ui, "Task created")
    screenshot(out, "15-created-on-retry.png")
    press(ui, "Create New Task")

    sandbox.add_fault(dict(CREATE, delayMs=3000))
    submit("Call the printer company")
    shown(ui, "Creating Call the printer company…")
    press(ui, "Create New Task")
    screenshot(out, "16-job-left-to-the-background.png")
    notification = wait_until(lambda: (n := last_notification()) and n["summary"] == "Call the printer company" and n,
                              timeout=15, what="the notification of the background job")
    print("notification server received: " + json.dumps(
        {key: notification[key] for key in ("app_name", "summary", "body", "actions", "hints")}, ensure_ascii=False))
    screenshot(out, "17-after-the-background-job.png")


def leave_notification_server():
    """The notification server quits: a job's outcome then has only the popover's banner."""
    server = dbus.SessionBus().get_object("org.freedesktop.Notifications", "/org/freedesktop/Notifications")
    server.Leave(dbus_interface="org.norvanebar.Test.Notifications")


def dark_road(sandbox, out, portal):
    """The desktop turns dark while the popover is open; the key pages of the road again, in dark."""
    ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
    portal.set_color_scheme(DARK)
    focus(ui, "Task name")
    subprocess.run(["xdotool", "type", "--delay", "5", "Prepare the quarterly review"], check=True)
    description = pump_until(lambda: find(ui, None, "Description"), what="the description")
    description.grab_focus()
    subprocess.run(["xdotool", "type", "--delay", "5", "Figures from finance, slides by Friday."], check=True)
    uris, _ = sample_files(out)
    paste("text/uri-list", uris)
    shown(ui, "2 attachments")
    screenshot(out, "18-dark-composer.png")
    # The big movie would be copied and sent whole: only the notes go with the task.
    press(ui, "Remove product-demo.mov")
    shown(ui, "1 attachment")

    sandbox.add_fault(dict(CREATE, delayMs=2500))
    submit()
    shown(ui, "Creating Prepare the quarterly review…")
    screenshot(out, "19-dark-creating-a-task.png")
    shown(ui, "Task created")
    screenshot(out, "20-dark-task-created.png")
    press(ui, "Create New Task")

    press(ui, "Multiple tasks — one per line")
    bulk_editor = pump_until(lambda: find(ui, None, "Bulk task names"), what="the bulk editor")
    bulk_editor.grab_focus()
    subprocess.run(["xdotool", "type", "--delay", "5", "Collect the figures"], check=True)
    subprocess.run(["xdotool", "key", "Return"], check=True)
    subprocess.run(["xdotool", "type", "--delay", "5", "Draft the slides"], check=True)
    submit()
    shown(ui, "2 tasks created")
    screenshot(out, "21-dark-bulk-done.png")
    press(ui, "Done")

    sandbox.add_fault(dict(CREATE, status=500, err="The service is down for maintenance", ecode="DEMO_001"))
    submit("Order new badges")
    shown(ui, "Couldn't create task")
    screenshot(out, "22-dark-creation-refused.png")
    press(ui, "Back to editing")

    leave_notification_server()
    sandbox.add_fault(dict(CREATE, delayMs=2000))
    submit("Call the printer company again")
    shown(ui, "Creating Call the printer company again…")
    press(ui, "Create New Task")
    shown(ui, "Call the printer company again, Background task completed")
    screenshot(out, "23-dark-banner.png")

    press(ui, "Tasks")
    shown(ui, "Overdue")
    pump_until(lambda: find(ui, None, "Search tasks"), what="the search field").grab_focus()
    subprocess.run(["xdotool", "key", "Down", "Return"], check=True)
    shown(ui, "Copy link")
    screenshot(out, "24-dark-tasks-tab.png")
    press(ui, "Create")


def scroll_to(ui, anchor, name):
    """Turns the mouse wheel over the list below `anchor` until the row `name` stands near its top."""
    box = find(ui, None, anchor).get_extents(Atspi.CoordType.SCREEN)

    def near_top():
        node = find(ui, None, name)
        if node is None or not has_state(node, Atspi.StateType.SHOWING):
            return False
        return node.get_extents(Atspi.CoordType.SCREEN).y < box.y + 120

    wheel_until(box.x + box.width // 2, box.y + 40, near_top, f'"{name}"')


def tasks_tab(out):
    """The Tasks tab: sections, search, a chip's menu, a row's actions, completing a task."""
    ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
    press(ui, "Tasks")
    shown(ui, "Overdue")
    screenshot(out, "T8-tasks-tab-sections.png")
    scroll_to(ui, "Overdue", "Due today")
    screenshot(out, "T8b-due-today-with-subtasks.png")
    scroll_to(ui, "Due today", "Later")
    screenshot(out, "T8c-later.png")
    search = pump_until(lambda: find(ui, None, "Search tasks"), what="the search field")
    search.grab_focus()
    subprocess.run(["xdotool", "type", "--delay", "5", "Inbox"], check=True)
    screenshot(out, "T9-search-with-results-and-subtasks.png")
    subprocess.run(["xdotool", "key", "ctrl+a", "BackSpace"], check=True)
    subprocess.run(["xdotool", "type", "--delay", "5", "zebra quartz"], check=True)
    shown(ui, "No tasks match “zebra quartz”")
    screenshot(out, "T10-search-without-matches.png")
    press(ui, "Clear search")
    shown(ui, "Overdue")
    press(ui, "Status: All statuses")
    time.sleep(SETTLE)
    screenshot(out, "T11-status-chip-open.png")
    subprocess.run(["xdotool", "key", "Escape"], check=True)
    search.grab_focus()
    subprocess.run(["xdotool", "key", "Down", "Return"], check=True)
    shown(ui, "Copy link")
    screenshot(out, "T12-row-actions-by-keyboard.png")
    press(ui, "More actions")
    screenshot(out, "T13-more-actions.png")
    press(ui, "Mark complete")
    time.sleep(SETTLE)
    screenshot(out, "T14-task-marked-complete.png")
    press(ui, "Create")
    shown(ui, "Task name")


def tray_icon(out):
    """The tray icon alone, with the count of tasks due."""
    icon = wait_until(xembed_icon_window, what="the tray icon")
    path = os.path.join(out, "T15-tray-icon-with-due-count.png")
    subprocess.run(["maim", "--window", icon, path], check=True)
    print(f"screenshot: {path}")


def open_from_tray(app):
    click(wait_until(xembed_icon_window, what="the tray icon"), 1)
    app.wait_popover(True)
    wait_until(popover_window_id, what="the popover window")


def main(binary, sandbox_binary, out):
    sandbox = Sandbox(sandbox_binary, os.path.join(out, "sandbox.log"), admin=True)
    # The desktop prefers light until the dark part of the road.
    portal = SettingsPortal(LIGHT, os.path.join(out, "settings-portal.log"))
    storage = StorageStandIns(sandbox, out)
    try:
        # The tray icon counts the tasks due by today's end.
        write_profile(os.environ["XDG_CONFIG_HOME"], sandbox, showDueCountBadge=True,
                      visibleDefaultFields=["status", "assignee", "dueDate", "priority", "tags"],
                      bookmarks=[quick_link(sandbox)], **SCREENSHOT_SETTINGS, **RECORDING_SETTINGS,
                      **storage.settings(), templates=[SCREENSHOT_TEMPLATE, RECORDING_TEMPLATE])
        token, _, name = sandbox.tokens[0]
        print(f"norvane-sandbox: {sandbox.web} (demo token of {name}: {token})")
        # Pasted pictures are staged in the temporary folder; the demo keeps its own.
        os.environ["TMPDIR"] = os.path.join(out, "tmp")
        os.makedirs(os.environ["TMPDIR"], exist_ok=True)
        # The demo presses buttons over the accessibility bus.
        os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"

        app = NorvaneBar(binary, out).start()
        try:
            open_from_tray(app)
            screenshot(out, "1-onboarding.png")
            type_into_popover("pk_not_a_real_token")
            screenshot(out, "2-wrong-token.png")
            type_into_popover(token)
            screenshot(out, "3-signed-in.png")
            # Return on the location selector opens the picker, which loads the lists; typing
            # searches them and Return chooses the first match.
            ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
            pump_until(lambda: find(ui, None, "List for new tasks"), what="the location selector") \
                .grab_focus()
            time.sleep(SETTLE)
            subprocess.run(["xdotool", "key", "Return"], check=True)
            shown(ui, "Sprint 12 · Web")
            subprocess.run(["xdotool", "type", "--delay", "5", "Web"], check=True)
            time.sleep(SETTLE)
            subprocess.run(["xdotool", "key", "Return"], check=True)
            screenshot(out, "4-list-chosen.png")
            uris, picture = sample_files(out)
            paste("text/uri-list", uris)
            screenshot(out, "5-files-pasted-as-attachments.png")
            paste("image/png", picture)
            screenshot(out, "6-picture-pasted-as-attachment.png")
        finally:
            app.stop()

        again = NorvaneBar(binary, out).start()
        try:
            open_from_tray(again)
            screenshot(out, "7-signed-in-and-list-restored-after-restart.png")
            try:
                tasks_tab(out)
                tray_icon(out)
                create_tasks(sandbox, out)
                compose_road(sandbox, out, sample_files(out))
                capture_road(again, out, "K")
                recording_road(out, "")
                settings_road(sandbox, out, again)
                storage_road(sandbox, out, again, storage)
                light_tips(norvanebar(), out, sandbox, again)
                dark_road(sandbox, out, portal)
                capture_road(again, out, "DK")
                recording_road(out, "D")
                dark_tips(norvanebar(), out, sandbox, again)
                settings_tabs(norvanebar(), out, "D")
                dark_storage(out)
            except Exception:
                screenshot(out, "failed-step.png")
                raise
        finally:
            again.stop()
    finally:
        storage.stop()
        portal.stop()
        sandbox.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
