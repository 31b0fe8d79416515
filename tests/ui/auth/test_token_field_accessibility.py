#!/usr/bin/python3
"""The token field as a screen reader meets it, over the accessibility bus (AT-SPI).

Runs inside `desktop-session run --a11y`, whose session has an accessibility bus. NorvaneBar
(NORVANEBAR_BINARY) starts with accessibility on, its popover opens on the onboarding page, and a
token is typed into the field with the keyboard. A client of the accessibility bus then finds the
field by its role, password text, and checks that it is named and that neither its text nor the
events it sent while the token was typed hold the token."""

import os
import subprocess
import sys
import time
import unittest
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

TESTS = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
sys.path.insert(0, os.path.join(TESTS, "harness"))
from accessibility import application, find, has_state, pump_until, start_accessible  # noqa: E402

NAME = "Norvane personal API token"
TOKEN = "pk_4810001_Q7WX2ZKV9M"


class TokenFieldAccessibilityTest(unittest.TestCase):
    def setUp(self):
        # Aimed at a closed loopback port: nothing typed here may leave the machine.
        self.app = start_accessible(self, {"serviceAPIBaseURL": "http://127.0.0.1:9/api/v2",
                                           "serviceWebBaseURL": "http://127.0.0.1:9"})

        self.events = []
        self.listener = Atspi.EventListener.new(self.events.append)
        for event_type in ("object:text-changed", "object:property-change", "object:text-attributes-changed"):
            self.listener.register(event_type)
        self.addCleanup(self.listener.deregister, "object:text-changed")

        self.app.toggle()
        self.app.wait_popover(True)
        self.accessible_app = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
        self.field = pump_until(lambda: find(self.accessible_app, Atspi.Role.PASSWORD_TEXT),
                                what="a password text in NorvaneBar")
        pump_until(lambda: has_state(self.field, Atspi.StateType.FOCUSED), what="the token field to have the focus")

    def type_token(self):
        subprocess.run(["xdotool", "type", "--delay", "25", TOKEN], check=True, timeout=30)
        pump_until(lambda: self.field.get_character_count() == len(TOKEN), what="the typed token to arrive")
        # The app holds the token: Connect, disabled while the field is empty, is enabled.
        connect = find(self.accessible_app, Atspi.Role.PUSH_BUTTON, "Connect")
        self.assertIsNotNone(connect)
        pump_until(lambda: has_state(connect, Atspi.StateType.ENABLED), what="Connect to be enabled")

    def test_the_field_is_named(self):
        self.assertEqual(self.field.get_name(), NAME)
        self.type_token()
        self.assertEqual(self.field.get_name(), NAME)

    def test_the_field_shows_the_mask_and_never_the_token(self):
        self.type_token()
        text = self.field.get_text(0, -1)
        self.assertEqual(len(text), len(TOKEN))
        self.assertEqual(len(set(text)), 1, text)
        self.assertNotIn(text[0], TOKEN)
        # Qt 6.4 answers the older boundary calls only (GetTextAtOffset, not GetStringAtOffset).
        with warnings.catch_warnings():
            warnings.simplefilter("ignore", DeprecationWarning)
            for boundary in (Atspi.TextBoundaryType.CHAR, Atspi.TextBoundaryType.WORD_START,
                             Atspi.TextBoundaryType.LINE_START, Atspi.TextBoundaryType.SENTENCE_START):
                piece = self.field.get_text_at_offset(3, boundary).content
                self.assertTrue(piece, boundary)
                self.assertFalse(set(piece) & set(TOKEN), (boundary, piece))
        self.assertFalse(set(self.field.get_description() or "") & set(TOKEN[3:]))

    def test_no_event_carries_the_token(self):
        self.type_token()
        # Whatever the field announced while the token was typed has arrived by now.
        time.sleep(0.3)
        pump_until(lambda: not GLib.MainContext.default().pending(), what="the events to be delivered")
        for event in self.events:
            data = event.any_data
            if isinstance(data, str):
                self.assertFalse(set(data) & set(TOKEN[3:]), (event.type, data))


if __name__ == "__main__":
    unittest.main()
