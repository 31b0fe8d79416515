"""The composer's part of the headless demo: the location picker with a search and a star, every
field chip set (the due date's popover, More +N and a custom field's editor on the way), the
template menu and its sheet, files and a picture in the attachment strip, and the created task's
request as norvane-sandbox received it."""

import json
import os
import sys
import time
import urllib.request

sys.path.insert(0, os.path.dirname(__file__))
from demo_steps import close_if_showing, focus, keys, norvanebar, paste, screenshot, shown, submit, type_text  # noqa: E402
from accessibility import press  # noqa: E402

INBOX = "901500001001"


def choose_inbox(ui, out):
    press(ui, "List for new tasks")
    shown(ui, "Search lists")
    type_text("inbox")
    press(ui, "Add to bookmarks")
    shown(ui, "Remove from bookmarks")
    screenshot(out, "C1-location-picker-search-and-star.png")
    focus(ui, "Search lists")
    keys("Return")


def set_custom_fields(ui, out):
    press(ui, "More +10")
    shown(ui, "Customer: Not set")
    screenshot(out, "C3-more-fields.png")
    press(ui, "Customer: Not set")
    type_text("Contoso & <Partners>")
    screenshot(out, "C4-custom-field-editor.png")
    keys("Return")
    close_if_showing(ui, "Customer")
    press(ui, "More +10")
    press(ui, "Severity: Not set")
    press(ui, "Critical")
    press(ui, "More +10")
    press(ui, "Customer facing: Unchecked")
    close_if_showing(ui, "Customer facing: Checked")


def set_every_chip(ui, out):
    focus(ui, "Task name")
    type_text("Prepare the customer demo")
    focus(ui, "Description")
    type_text("Walk through the new onboarding, then the **reports**.")
    press(ui, "Status")
    keys("Down", "Down", "Return")
    press(ui, "Assignee")
    press(ui, "Ben Carter")
    close_if_showing(ui, "Clear assignees")
    press(ui, "Due date")
    press(ui, "Tomorrow 9 AM")
    press(ui, "Remind me")
    screenshot(out, "C2-due-date-popover.png")
    close_if_showing(ui, "Remind me")
    press(ui, "Priority")
    press(ui, "High")
    press(ui, "Tags")
    focus(ui, "New tag")
    type_text("Customer-Demo")
    keys("Return")
    close_if_showing(ui, "New tag")
    set_custom_fields(ui, out)
    screenshot(out, "C5-composer-with-every-chip-set.png")


def templates(ui, out):
    press(ui, "Template")
    press(ui, "Save Current as Template…")
    focus(ui, "Template name")
    type_text("Customer demo")
    screenshot(out, "C6-save-as-template.png")
    keys("Return")
    time.sleep(0.5)
    press(ui, "Template")
    shown(ui, "Customer demo")
    screenshot(out, "C7-template-menu.png")
    close_if_showing(ui, "Save Current as Template…")


def created_request(sandbox):
    """The body of the last task creation in the Inbox list, from the sandbox's request log."""
    with urllib.request.urlopen(f"{sandbox.web}/_sandbox/requests", timeout=10) as answer:
        requests = json.load(answer)["requests"]
    creations = [r for r in requests if r["method"] == "POST" and r["path"] == f"/api/v2/list/{INBOX}/task"]
    return creations[-1]["json"] if creations else None


def compose_road(sandbox, out, files):
    """`files` are a uri-list of a document and a movie and a picture, to paste."""
    ui = norvanebar()
    choose_inbox(ui, out)
    shown(ui, "More +10")
    set_every_chip(ui, out)
    templates(ui, out)
    uris, picture = files
    focus(ui, "Task name")
    paste("text/uri-list", uris)
    paste("image/png", picture)
    shown(ui, "3 attachments")
    screenshot(out, "C8-attachment-strip.png")
    press(ui, "Remove product-demo.mov")
    shown(ui, "2 attachments")
    focus(ui, "Task name")
    submit()
    shown(ui, "Task created", timeout=30)
    screenshot(out, "C9-task-with-every-field-created.png")
    body = created_request(sandbox)
    path = os.path.join(out, "C9-created-task-request.json")
    with open(path, "w", encoding="utf-8") as file:
        json.dump(body, file, indent=2, ensure_ascii=False)
    print(f"the created task as norvane-sandbox received it ({path}):")
    print(json.dumps(body, indent=2, ensure_ascii=False))
    press(ui, "Create New Task")
    shown(ui, "Task name")
