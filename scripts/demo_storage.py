"""The attachment storage's part of the headless demo, on the settings window's Attachments tab: for
Cloudinary and Google Drive the sandbox's stand-ins, for Cloudflare R2 the S3 server of tools/s3server.
Each provider is chosen and filled in (`A1`...), "Test connection" refuses a configuration with a
blank field and accepts the whole one, Google Drive is signed in to through the session's browser (a
stand-in that agrees at once), and a task with one file is created through each, whose description,
as norvane-sandbox received it, is printed with the provider's link. In dark, the tab again for each
provider (`DA1`...)."""

import json
import os
import secrets
import subprocess
import sys
import urllib.request

sys.path.insert(0, os.path.dirname(__file__))
from demo_settings import tray_menu  # noqa: E402
from demo_steps import focus, keys, norvanebar, paste, screenshot, shown, submit  # noqa: E402
from accessibility import press  # noqa: E402
from norvanebar_app import wait_until  # noqa: E402
from attachments_pane import choose_provider, fill, press_button, shows, test_connection  # noqa: E402
import stand_in_browser  # noqa: E402
from storage_stand_ins import (CLOUDINARY_CLOUD, CLOUDINARY_PRESET, cloudinary_settings, google_settings,  # noqa: E402
                               start_s3server, stop_s3server)

BUCKET = "norvanebar-demo"


def slug(provider):
    return provider.lower().replace(" ", "-")


class StorageStandIns:
    """The S3 server in place of R2 (the sandbox plays Cloudinary and Google), with a key pair of its
    own, and the session's browser; `settings` aims a profile at them."""

    def __init__(self, sandbox, out):
        self.sandbox = sandbox
        self.r2_key = "NVDEMO" + secrets.token_hex(6).upper()
        self.r2_secret = secrets.token_hex(20)
        self.s3server, self.r2_endpoint = start_s3server(os.path.join(out, "s3server"), BUCKET, self.r2_key,
                                                         self.r2_secret)
        stand_in_browser.use(os.path.join(out, "browser"), os.path.join(out, "browser.jsonl"))

    def settings(self):
        return {**cloudinary_settings(self.sandbox), **google_settings(self.sandbox),
                "cloudflareR2EndpointBaseURL": self.r2_endpoint}

    def stop(self):
        stop_s3server(self.s3server)


def open_attachments_tab(ui):
    tray_menu("Settings…", "Return")
    press(ui, "Attachments")  # the window opens on the tab it last showed
    shows(ui, "Store attachments with")


def close_settings():
    keys("Escape")
    wait_until(lambda: subprocess.run(["xdotool", "search", "--onlyvisible", "--name", "^NorvaneBar Settings$"],
                                      capture_output=True).returncode != 0, what="the settings window to close")


def refused_then_accepted(ui, out, number, field, value, refusal, provider):
    """A blank `field` is refused with `refusal`, and the whole configuration accepted."""
    fill(ui, field, "")
    test_connection(ui, refusal)
    screenshot(out, f"A{number}-{slug(provider)}-test-refused.png")
    fill(ui, field, value)
    test_connection(ui, f"{provider} configuration looks valid.")
    screenshot(out, f"A{number + 1}-{slug(provider)}-test-passed.png")


def cloudinary(ui, out, _):
    choose_provider(ui, "Cloudinary")
    fill(ui, "Cloud name", CLOUDINARY_CLOUD)
    fill(ui, "Upload preset", CLOUDINARY_PRESET)
    screenshot(out, "A1-cloudinary-settings.png")
    refused_then_accepted(ui, out, 2, "Upload preset", CLOUDINARY_PRESET, "Cloudinary upload preset is required.",
                          "Cloudinary")


def cloudflare_r2(ui, out, stand_ins):
    choose_provider(ui, "Cloudflare R2")
    fill(ui, "Account ID", "4f6d0c1e8b2a4e7f9c3d5b1a0e2f4c6d")
    fill(ui, "Bucket name", BUCKET)
    fill(ui, "Public URL base", f"{stand_ins.r2_endpoint}/{BUCKET}")
    fill(ui, "Access key ID", stand_ins.r2_key)
    fill(ui, "Secret access key", stand_ins.r2_secret)
    screenshot(out, "A4-cloudflare-r2-settings.png")
    refused_then_accepted(ui, out, 5, "Bucket name", BUCKET, "R2 bucket name is required.", "Cloudflare R2")


def google_drive(ui, out, _):
    choose_provider(ui, "Google Drive")
    shows(ui, "Not connected")
    screenshot(out, "A7-google-drive-not-connected.png")
    test_connection(ui, "Sign in with Google to connect Drive.")
    screenshot(out, "A8-google-drive-test-refused.png")
    press_button(ui, "Sign in with Google")
    shows(ui, "Connected to Google Drive.", timeout=30)
    shows(ui, "Connected")
    screenshot(out, "A9-google-drive-connected.png")
    test_connection(ui, "Google Drive configuration looks valid.")
    screenshot(out, "A10-google-drive-test-passed.png")


def one_file(out, provider):
    """A uri-list of one small picture to paste, named after the provider."""
    folder = os.path.join(out, "files")
    os.makedirs(folder, exist_ok=True)
    picture = os.path.join(folder, f"{slug(provider)}-mockup.png")
    subprocess.run(["maim", "--geometry", "240x160+40+40", picture], check=True)
    uris = os.path.join(folder, f"{slug(provider)}-uri-list")
    with open(uris, "w", encoding="utf-8") as file:
        file.write(f"file://{picture}\r\n")
    return uris


def last_creation(sandbox):
    """The last task creation the sandbox received: its path and body."""
    with urllib.request.urlopen(f"{sandbox.web}/_sandbox/requests", timeout=10) as answer:
        requests = json.load(answer)["requests"]
    creations = [r for r in requests if r["method"] == "POST" and r["path"].startswith("/api/v2/list/")
                 and r["path"].endswith("/task")]
    return creations[-1]


def task_with_one_file(ui, app, out, sandbox, provider, number):
    app.toggle()
    app.wait_popover(True)
    focus(ui, "Task name")
    paste("text/uri-list", one_file(out, provider))
    shown(ui, "1 attachment")
    submit(f"Review the mockup stored with {provider}")
    shown(ui, "Task created", timeout=60)
    screenshot(out, f"A{number}-task-created-with-{slug(provider)}.png")
    creation = last_creation(sandbox)
    print(f"the task stored with {provider} as norvane-sandbox received it ({creation['path']}): "
          + json.dumps(creation["json"].get("markdown_description"), ensure_ascii=False))
    press(ui, "Create New Task")
    shown(ui, "Task name")
    app.toggle()
    app.wait_popover(False)


def storage_road(sandbox, out, app, stand_ins):
    """Each provider set up, tested and used for a task; Norvane itself is chosen again at the end, and
    the popover left open, as the road before left it."""
    ui = norvanebar()
    if app.popover_visible():
        app.toggle()
        app.wait_popover(False)
    for number, (provider, set_up) in enumerate((("Cloudinary", cloudinary), ("Cloudflare R2", cloudflare_r2),
                                                 ("Google Drive", google_drive))):
        open_attachments_tab(ui)
        set_up(ui, out, stand_ins)
        close_settings()
        task_with_one_file(ui, app, out, sandbox, provider, 11 + number)
    open_attachments_tab(ui)
    choose_provider(ui, "Norvane")
    close_settings()
    app.toggle()
    app.wait_popover(True)


def dark_storage(out):
    """The tab of each provider in dark, as the light road left it, and Norvane chosen again."""
    ui = norvanebar()
    open_attachments_tab(ui)
    for number, provider in enumerate(("Cloudinary", "Cloudflare R2", "Google Drive")):
        choose_provider(ui, provider)
        test_connection(ui, f"{provider} configuration looks valid.")
        screenshot(out, f"DA{number + 1}-{slug(provider)}-settings.png")
    choose_provider(ui, "Norvane")
    close_settings()
