"""Shows NorvaneBar on a virtual display: opens the popover with a click on its tray icon, saves screenshots
of the screen and of the popover, and prints their paths. Run inside a desktop session."""

import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from norvanebar_app import NorvaneBar, click, popover_window_id, wait_until, xembed_icon_window  # noqa: E402


def main(binary, out):
    app = NorvaneBar(binary, out).start()
    try:
        icon = wait_until(xembed_icon_window, what="the tray icon")
        print("tray icon: in the panel at the top right")
        click(icon, 1)
        app.wait_popover(True)
        window = wait_until(popover_window_id, what="the popover window")
        subprocess.run(["xdotool", "mousemove", "640", "700"], check=True)  # off the icon
        screen = os.path.join(out, "screen.png")
        popover = os.path.join(out, "popover.png")
        subprocess.run(["maim", screen], check=True)
        subprocess.run(["maim", "--window", window, popover], check=True)
        print(f"screenshot of the screen: {screen}")
        print(f"screenshot of the popover: {popover}")
        app.stop()
        return 0
    finally:
        app.stop()


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2]))
