"""The steps the headless demo is made of: pictures of the screen, keys typed, the clipboard, and
waiting for a text over the accessibility bus."""

import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "harness"))
from accessibility import Atspi, application, find, has_state, pump_until  # noqa: E402

# The sandbox answers in milliseconds; this is only for the page to be drawn before its picture.
SETTLE = 1.0


def screenshot(out, name, pointer_stays=False):
    """A picture of the whole screen; the pointer moves off the icon first unless it `pointer_stays`
    where it rests, as on a control whose tool tip the picture shows."""
    if not pointer_stays:
        subprocess.run(["xdotool", "mousemove", "640", "700"], check=True)
    time.sleep(SETTLE)
    path = os.path.join(out, name)
    subprocess.run(["maim", path], check=True)
    print(f"screenshot: {path}")


def type_into_popover(text):
    subprocess.run(["xdotool", "key", "ctrl+a", "BackSpace"], check=True)
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True)
    subprocess.run(["xdotool", "key", "Return"], check=True)


def paste(target, source):
    """Puts the file `source` on the clipboard as `target` (a MIME type) and presses Ctrl+V."""
    subprocess.run(["xclip", "-selection", "clipboard", "-t", target, "-i", source], check=True)
    subprocess.run(["xdotool", "key", "ctrl+v"], check=True)


def shown(ui, name, timeout=15.0):
    """Waits until the popover shows a text with this accessible name."""
    pump_until(lambda: find(ui, None, name), timeout, f'"{name}" in the popover')


def submit(name=None):
    if name:
        subprocess.run(["xdotool", "type", "--delay", "5", name], check=True)
    subprocess.run(["xdotool", "key", "ctrl+Return"], check=True)


def keys(*names):
    subprocess.run(["xdotool", "key", *names], check=True)


def type_text(text):
    subprocess.run(["xdotool", "type", "--delay", "5", text], check=True)


def focus(ui, name):
    """Puts the keyboard on the control of this accessible name."""
    pump_until(lambda: find(ui, None, name), what=f'"{name}"').grab_focus()
    time.sleep(0.2)


def hover(ui, name, *then):
    """Rests the pointer on the middle of the control of this accessible name, and does `then` there
    (xdotool's words, such as "click", "1")."""
    node = pump_until(lambda: find(ui, None, name), what=f'"{name}"')
    box = node.get_extents(Atspi.CoordType.SCREEN)
    subprocess.run(["xdotool", "mousemove", str(box.x + box.width // 2), str(box.y + box.height // 2), *then],
                   check=True)


WHEEL_UP, WHEEL_DOWN = "4", "5"


def wheel_until(x, y, condition, what, button=WHEEL_DOWN):
    """Turns the mouse wheel (down, or up with WHEEL_UP) over the point (x, y) until `condition` holds."""
    subprocess.run(["xdotool", "mousemove", str(x), str(y)], check=True)
    for _ in range(60):
        if condition():
            return
        subprocess.run(["xdotool", "click", button], check=True)
        time.sleep(0.05)
    raise TimeoutError(f"{what} never came into view")


def window_of(node):
    """The top-level window the accessible `node` stands in."""
    while node.get_role() not in (Atspi.Role.FRAME, Atspi.Role.WINDOW, Atspi.Role.DIALOG):
        node = node.get_parent()
    return node


def scroll_into_window(ui, name):
    """Turns the mouse wheel over the window of the control `name`, up or down, until the control
    stands inside it."""
    node = pump_until(lambda: find(ui, None, name), what=f'"{name}"')
    window = window_of(node).get_extents(Atspi.CoordType.SCREEN)

    def box():
        return find(ui, None, name).get_extents(Atspi.CoordType.SCREEN)

    def inside():
        return box().y >= window.y and box().y + box().height <= window.y + window.height

    button = WHEEL_UP if box().y < window.y else WHEEL_DOWN
    wheel_until(window.x + window.width // 2, window.y + window.height // 2, inside, f'"{name}"', button)


def click_on(ui, name):
    """Clicks the middle of the control of this accessible name, which also gives its window the
    keyboard."""
    hover(ui, name, "click", "1")
    time.sleep(0.2)


def close_if_showing(ui, name):
    """Presses Escape while a menu or popover with this entry is open; a closed one would take the
    popover with it."""
    time.sleep(0.3)
    node = find(ui, None, name)
    if node is not None and has_state(node, Atspi.StateType.SHOWING):
        keys("Escape")
        time.sleep(0.3)


def norvanebar():
    return pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
