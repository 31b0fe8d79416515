"""Shows NorvaneBar on a virtual display against norvane-sandbox: opens the popover with a click on
its tray icon, signs in with a wrong and then a demo token, chooses a list, pastes two files and then
a picture as attachments, starts again to show that the token and the list were kept, and saves a
screenshot of each step. Run inside a desktop session.

usage: headless_demo.py NORVANEBAR NORVANE_SANDBOX OUTPUT_FOLDER"""

import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "e2e"))
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import NorvaneBar, click, popover_window_id, wait_until, xembed_icon_window  # noqa: E402

# The sandbox answers in milliseconds; this is only for the page to be drawn before its picture.
SETTLE = 1.0


def screenshot(out, name):
    subprocess.run(["xdotool", "mousemove", "640", "700"], check=True)  # off the icon
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
    subprocess.run(["maim", "--geometry", "320x200+0+0", picture], check=True)
    return uris, picture


def open_from_tray(app):
    click(wait_until(xembed_icon_window, what="the tray icon"), 1)
    app.wait_popover(True)
    wait_until(popover_window_id, what="the popover window")


def main(binary, sandbox_binary, out):
    sandbox = Sandbox(sandbox_binary, os.path.join(out, "sandbox.log"))
    try:
        write_profile(os.environ["XDG_CONFIG_HOME"], sandbox)
        token, _, name = sandbox.tokens[0]
        print(f"norvane-sandbox: {sandbox.web} (demo token of {name}: {token})")
        # Pasted pictures are staged in the temporary folder; the demo keeps its own.
        os.environ["TMPDIR"] = os.path.join(out, "tmp")
        os.makedirs(os.environ["TMPDIR"], exist_ok=True)

        app = NorvaneBar(binary, out).start()
        try:
            open_from_tray(app)
            screenshot(out, "1-onboarding.png")
            type_into_popover("pk_not_a_real_token")
            screenshot(out, "2-wrong-token.png")
            type_into_popover(token)
            screenshot(out, "3-signed-in.png")
            # The list chooser takes the keyboard with Tab and loads the lists; each Down picks the next.
            subprocess.run(["xdotool", "key", "Tab"], check=True)
            time.sleep(SETTLE)
            subprocess.run(["xdotool", "key", "Down", "Down"], check=True)
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
        finally:
            again.stop()
    finally:
        sandbox.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
