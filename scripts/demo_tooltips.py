"""The hostile names' part of the headless demo: a custom field, an account and a quick link named
with markup whose picture points back at norvane-sandbox, each hovered until its tool tip shows the
name exactly as written; in light (`H1` to `H3`) and again in dark (`H4` to `H6`)."""

import os
import sys
import time

sys.path.insert(0, os.path.dirname(__file__))
from demo_settings import add_account, tray_menu  # noqa: E402
from demo_steps import close_if_showing, hover, keys, screenshot, scroll_into_window, shown, type_text  # noqa: E402
from accessibility import Atspi, descendants, press, pump_until  # noqa: E402

ADA = "Ada Okafor (ada@northwind.example)"


def field_name(sandbox):
    """The custom field of the hostile user's list named with markup, as the sandbox's demo names it."""
    return f'<b>Field</b> & "notes" <img src="{sandbox.web}/hostile/field.png">'


def quick_link(sandbox):
    """A quick link of the demo profile, named with markup."""
    return {"id": "6d2f1c9e-7a3b-4c5d-8e9f-0a1b2c3d4e5f",
            "name": f'<b>Board</b> & "links" <img src="{sandbox.web}/hostile/quick-link.png">',
            "urlString": f"{sandbox.web}/settings/apps"}


def tip(ui, text):
    """Waits until a tool tip shows `text`."""
    pump_until(lambda: next((node for node in descendants(ui)
                             if node.get_role() == Atspi.Role.TOOL_TIP and node.get_name() == text), None),
               what=f'the tool tip "{text}"')


def popover_tips(ui, out, sandbox, first, second):
    """The field chip's and the avatar's tips, with the hostile user's list in the composer."""
    _, _, user = sandbox.tokens[2]
    field = field_name(sandbox)
    press(ui, "More +1")  # the five standard fields come first
    hover(ui, f"{field}: Not set")
    tip(ui, field)
    screenshot(out, first, pointer_stays=True)
    close_if_showing(ui, f"{field}: Not set")
    hover(ui, "Switch Norvane account")
    tip(ui, f"Signed in as {user} — click to switch account")
    screenshot(out, second, pointer_stays=True)


def quick_link_tip(ui, out, sandbox, name):
    """The settings window on "General", its quick link named with markup hovered."""
    tray_menu("Settings…", "Return")
    press(ui, "General")
    remove = "Remove " + quick_link(sandbox)["name"]
    scroll_into_window(ui, remove)
    hover(ui, remove)
    tip(ui, remove)
    screenshot(out, name, pointer_stays=True)
    keys("Escape")
    time.sleep(0.5)


def switch_account(ui, title, signed_in):
    press(ui, "Switch Norvane account")
    press(ui, title)
    shown(ui, f"Signed in as {signed_in}")


def light_tips(ui, out, sandbox, app):
    """With the popover open, adds the hostile user's account, chooses their list named with markup
    and hovers the three; leaves Ada signed in again with the popover open."""
    token, _, user = sandbox.tokens[2]
    app.toggle()
    app.wait_popover(False)
    add_account(ui, token, user)
    app.toggle()
    app.wait_popover(True)
    press(ui, "List for new tasks")
    shown(ui, "Search lists")
    type_text("Bold")
    time.sleep(0.5)
    keys("Return")
    popover_tips(ui, out, sandbox, "H1-tooltip-custom-field-name.png", "H2-tooltip-account-name.png")
    switch_account(ui, ADA, "Ada Okafor")
    app.toggle()
    app.wait_popover(False)
    quick_link_tip(ui, out, sandbox, "H3-tooltip-quick-link-name.png")
    app.toggle()
    app.wait_popover(True)


def dark_tips(ui, out, sandbox, app):
    """With the popover open, switches to the hostile user, whose list comes back, and hovers the
    three again; leaves Ada signed in with the popover closed."""
    _, _, user = sandbox.tokens[2]
    switch_account(ui, f"{user} (mia@hostile.example)", user)
    popover_tips(ui, out, sandbox, "H4-dark-tooltip-custom-field-name.png", "H5-dark-tooltip-account-name.png")
    switch_account(ui, ADA, "Ada Okafor")
    app.toggle()
    app.wait_popover(False)
    quick_link_tip(ui, out, sandbox, "H6-dark-tooltip-quick-link-name.png")
