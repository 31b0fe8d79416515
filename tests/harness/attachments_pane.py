"""The settings window's "Attachments" tab, driven over the accessibility bus and the X server as a
person does: the provider chosen in "Store attachments with", its fields typed into, its buttons
pressed, and the lines it shows read."""

import subprocess

from accessibility import Atspi, descendants, has_state, pump_until

# A text that only the section of each provider shows.
SECTION_MARKS = {"Norvane": "Attachments upload directly to Norvane when you create a task.",
                 "Cloudinary": "Cloud name", "Cloudflare R2": "Account ID", "Google Drive": "Folder ID (optional)"}


WHEEL_UP, WHEEL_DOWN = "4", "5"


def _window_box(node):
    while node.get_role() not in (Atspi.Role.FRAME, Atspi.Role.WINDOW, Atspi.Role.DIALOG):
        node = node.get_parent()
    return node.get_extents(Atspi.CoordType.SCREEN)


def into_view(node):
    """Turns the mouse wheel over the node's window until the node stands wholly inside it."""
    window = _window_box(node)
    subprocess.run(["xdotool", "mousemove", str(window.x + window.width // 2), str(window.y + window.height // 2)],
                   check=True)
    for _ in range(60):
        box = node.get_extents(Atspi.CoordType.SCREEN)
        if box.y < window.y:
            button = WHEEL_UP
        elif box.y + box.height > window.y + window.height:
            button = WHEEL_DOWN
        else:
            return
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
    """The showing text field named by `label` (its label above it has the same name, but no text to edit)."""

    def field():
        for node in descendants(ui):
            if (node.get_name() == label and node.get_editable_text_iface() is not None
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
    """Waits until a showing line of the window reads `text`."""
    pump_until(lambda: any(node.get_name() == text and has_state(node, Atspi.StateType.SHOWING)
                           for node in descendants(ui)), timeout, f'"{text}" in the settings window')


def test_connection(ui, expected):
    """Presses "Test connection" and waits for the result line `expected`."""
    press_button(ui, "Test connection")
    shows(ui, expected)
