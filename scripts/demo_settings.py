"""The settings' part of the headless demo: the tray menu's quick links, the settings window's tabs
with a second account added on the Account tab, and the popover's account menu listing both."""

import os
import subprocess
import sys
import time

sys.path.insert(0, os.path.dirname(__file__))
from demo_steps import click_on, keys, norvanebar, screenshot, scroll_into_window, shown, type_text  # noqa: E402
from accessibility import press  # noqa: E402
from norvanebar_app import click, wait_until, xembed_icon_window  # noqa: E402

TABS = ("account", "fields", "templates", "general", "attachments")


def visible_windows():
    """NorvaneBar's windows on the screen; the tray menu and each of its submenus is one. The menus
    are not on the accessibility bus, so this is how a step knows that one has opened."""
    found = subprocess.run(["xdotool", "search", "--onlyvisible", "--classname", "norvanebar"],
                           capture_output=True, text=True)
    return set(found.stdout.split())


def opening_a_window(action, what):
    """Does the action and waits until one window of NorvaneBar more is on the screen."""
    before = visible_windows()
    action()
    wait_until(lambda: visible_windows() - before, what=what)


# The tray menu's entries down to the settings, as the demo profile has them (it keeps a quick link).
TRAY_MENU = ["New Task", "Record Screen…", "Quick Links", "Settings…"]


def tray_menu(entry, *then):
    """Opens the tray icon's menu, moves to `entry` by keyboard and presses the keys `then`."""
    icon = wait_until(xembed_icon_window, what="the tray icon")
    opening_a_window(lambda: click(icon, 3), "the tray menu")
    keys(*["Down"] * (TRAY_MENU.index(entry) + 1), *then)


def quick_links(ui, out):
    tray_menu("Quick Links")
    opening_a_window(lambda: keys("Right"), "the quick links submenu")
    shown(ui, "Inbox")
    screenshot(out, "Q1-tray-menu-quick-links.png")
    keys("Escape", "Escape")


def settings_tabs(ui, out, prefix):
    """Opens the settings window from the tray menu and pictures each tab, then closes it."""
    tray_menu("Settings…", "Return")
    shown(ui, "Norvane Accounts")
    press(ui, "Account")  # the window opens on the tab it last showed
    for index, tab in enumerate(TABS):
        if index:
            keys("ctrl+Tab")
        if tab == "general":  # from its top, where the shortcuts are; the window keeps where it was scrolled
            scroll_into_window(ui, "Shortcuts")
        screenshot(out, f"{prefix}{index + 1}-settings-{tab}.png")
        if tab == "general":  # and its screen recording defaults, further down
            scroll_into_window(ui, "Show due count in panel")
            screenshot(out, f"{prefix}{index + 1}-settings-{tab}-screen-recording.png")
    keys("Escape")
    time.sleep(0.5)


def add_account(ui, token, name):
    """Adds the account of `token` on the settings window's Account tab; it becomes the active one."""
    tray_menu("Settings…", "Return")
    press(ui, "Account")  # the window opens on the tab it last showed
    click_on(ui, "Personal API token")
    type_text(token)
    keys("Return")
    shown(ui, name)
    keys("Escape")
    time.sleep(0.5)


def account_menu(ui, out, app):
    click(wait_until(xembed_icon_window, what="the tray icon"), 1)
    app.wait_popover(True)
    press(ui, "Switch Norvane account")
    shown(ui, "Add Account…")
    screenshot(out, "S6-account-menu-with-two-accounts.png")
    press(ui, "Ada Okafor (ada@northwind.example)")
    shown(ui, "Signed in as Ada Okafor")


def settings_road(sandbox, out, app):
    """Leaves Ada signed in with her list, as before, and Ben as a second account."""
    ui = norvanebar()
    app.toggle()
    app.wait_popover(False)
    quick_links(ui, out)
    token, _, name = sandbox.tokens[1]
    add_account(ui, token, name)
    settings_tabs(ui, out, "S")
    account_menu(ui, out, app)
