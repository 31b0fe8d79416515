"""The settings window's "Attachments" tab, driven over the accessibility bus and the X server as a
person does: the provider chosen in "Store attachments with", its fields typed into, its buttons
pressed, and the lines it shows read."""

import subprocess
import time

from accessibility import Atspi, descendants, has_state, pump_until

# A text that only the section of each provider shows.
SECTION_MARKS = {"Norvane": "Attachments upload directly to Norvane when you create a task.",
                 "Cloudinary": "Cloud name", "Cloudflare R2": "Account ID", "Google Drive": "Folder ID (optional)"}


WHEEL_UP, WHEEL_DOWN = "4", "5"


def _page_bounds(node):
    """The top and bottom of the part of the window the tab's page shows: below the tab bar."""
    while node.get_role() not in (Atspi.Role.FRAME, Atspi.Role.WINDOW, Atspi.Role.DIALOG):
        node = node.get_parent()
    window = node.get_extents(Atspi.CoordType.SCREEN)
    top = window.y
    for child in descendants(node):
        if child.get_role() == Atspi.Role.PAGE_TAB_LIST:
            tabs = child.get_extents(Atspi.CoordType.SCREEN)
            top = tabs.y + tabs.height
            break
    return window, top, window.y + window.height


def _at_rest(node, still=0.15):
    """Waits until the node has kept its place for `still` seconds: a turn of the wheel flicks the
    page on for a moment."""
    place = {"y": None, "since": 0.0}

    def resting():
        y, now = node.get_extents(Atspi.CoordType.SCREEN).y, time.monotonic()
        if y != place["y"]:
            place.update(y=y, since=now)
        return now - place["since"] >= still

    pump_until(resting, what="the page to come to rest")


def into_view(node):
    """Turns the mouse wheel over the node's window until the node stands wholly inside it."""
    window, top, bottom = _page_bounds(node)
    subprocess.run(["xdotool", "mousemove", str(window.x + window.width // 2), str(window.y + window.height // 2)],
                   check=True)
    for _ in range(60):
        box = node.get_extents(Atspi.CoordType.SCREEN)
        if box.y < top:
            button = WHEEL_UP
        elif box.y + box.height > bottom:
            button = WHEEL_DOWN
        else:
            return _at_rest(node)
        subprocess.run(["xdotool", "click", button], check=True)
        pump_until(lambda: node.get_extents(Atspi.CoordType.SCREEN).y != box.y, what="the page to scroll")
    raise TimeoutError(f'"{node.get_name()}" never came into view')


def _click_middle(node):
    into_view(node)
    box = node.get_extents(Atspi.CoordType.SCREEN)
    subprocess.run(["xdotool", "mousemove", str(box.x + box.width // 2), str(box.y + box.height // 2), "click", "1"],
                   check=True)


def press_button(ui, name):
    """Clicks the enabled button `name` of the tab, scrolled into view first."""

    def button():
        for node in descendants(ui):
            if (node.get_name() == name and node.get_role() in (Atspi.Role.PUSH_BUTTON, Atspi.Role.COMBO_BOX)
                    and has_state(node, Atspi.StateType.ENABLED) and has_state(node, Atspi.StateType.SHOWING)):
                return node
        return None

    _click_middle(pump_until(button, what=f'the button "{name}"'))


def text_field(ui, label):
    """The showing text field named by `label` (the label above it has the same name)."""

    def field():
        for node in descendants(ui):
            if (node.get_name() == label and node.get_role() in (Atspi.Role.TEXT, Atspi.Role.PASSWORD_TEXT)
                    and has_state(node, Atspi.StateType.SHOWING)):
                return node
        return None

    return pump_until(field, what=f'the field "{label}"')


def fill(ui, label, text):
    """Clicks into the field and types `text` over what it held; an empty `text` blanks it."""
    _click_middle(text_field(ui, label))
    subprocess.run(["xdotool", "key", "ctrl+a", "BackSpace"], check=True)
    if text:
        subprocess.run(["xdotool", "type", "--delay", "5", text], check=True)


def choose_provider(ui, name):
    """Opens "Store attachments with", chooses `name` among PROVIDERS and waits for its section."""
    press_button(ui, "Store attachments with")

    def entry():
        for node in descendants(ui):
            if (node.get_name() == name and node.get_role() == Atspi.Role.LIST_ITEM
                    and has_state(node, Atspi.StateType.SHOWING)):
                return node
        return None

    _click_middle(pump_until(entry, what=f'"{name}" in the list of providers'))
    shows(ui, SECTION_MARKS[name])


def shows(ui, text, timeout=15.0):
    """Waits until a showing line of the window reads `text`, and returns it."""

    def line():
        for node in descendants(ui):
            if node.get_name() == text and has_state(node, Atspi.StateType.SHOWING):
                return node
        return None

    return pump_until(line, timeout, f'"{text}" in the settings window')


def test_connection(ui, expected):
    """Presses "Test connection" and waits for the result line `expected`, scrolled into view."""
    press_button(ui, "Test connection")
    into_view(shows(ui, expected))
