"""Reading and driving NorvaneBar as assistive technology does, over the accessibility bus (AT-SPI).
Needs a session with an accessibility bus (`desktop-session run --a11y`) and NorvaneBar started with
QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1."""

import json
import os
import subprocess
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

from norvanebar_app import NorvaneBar, wait_until  # noqa: E402


def start_accessible(test, settings):
    """NorvaneBar (NORVANEBAR_BINARY) on the settings file `settings`, with accessibility on, for the
    unittest `test`, which stops it at its end; returned once its D-Bus interface is up."""
    folder = os.path.join(os.environ["XDG_CONFIG_HOME"], "NorvaneBar")
    os.makedirs(folder, exist_ok=True)
    with open(os.path.join(folder, "settings.json"), "w", encoding="utf-8") as file:
        json.dump(settings, file)
    os.environ["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
    log_dir = tempfile.TemporaryDirectory(prefix="norvanebar-a11y-")
    test.addCleanup(log_dir.cleanup)
    app = NorvaneBar(os.environ["NORVANEBAR_BINARY"], log_dir.name).start()
    test.addCleanup(app.stop)
    app.wait_published()
    return app


def pump_until(condition, timeout=10.0, what="condition"):
    """Runs the GLib main loop, which delivers AT-SPI events, until condition() is true."""
    context = GLib.MainContext.default()

    def idle():
        if not context.iteration(False):
            time.sleep(0.02)

    return wait_until(condition, timeout, what, idle)


def descendants(node, depth=0):
    if node is None or depth > 30:
        return
    yield node
    for index in range(node.get_child_count()):
        yield from descendants(node.get_child_at_index(index), depth + 1)


def application(name):
    """The application of that name, read afresh at each call: pages come and go, and a cached
    node may be one that is gone."""
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        app = desktop.get_child_at_index(index)
        if app is not None and app.get_name() == name:
            app.set_cache_mask(Atspi.Cache.NONE)
            return app
    return None


def find(root, role, name=None):
    """The first node below root with the role (any role for None) and the name (any for None)."""
    for node in descendants(root):
        if (role is None or node.get_role() == role) and (name is None or node.get_name() == name):
            return node
    return None


def has_state(node, state):
    return node.get_state_set().contains(state)


def press(root, name, timeout=10.0):
    """Clicks the enabled, showing button named `name` with the mouse, where the accessibility bus
    says it is."""

    def button():
        for node in descendants(root):
            if (node.get_name() == name and node.get_action_iface() is not None
                    and has_state(node, Atspi.StateType.ENABLED) and has_state(node, Atspi.StateType.SHOWING)):
                return node
        return None

    node = pump_until(button, timeout, f'the button "{name}"')
    box = node.get_extents(Atspi.CoordType.SCREEN)
    subprocess.run(["xdotool", "mousemove", str(box.x + box.width // 2), str(box.y + box.height // 2), "click", "1"],
                   check=True)
