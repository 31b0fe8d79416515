#!/usr/bin/python3
"""Checks a running desktop session from the inside: run it with `desktop-session exec DIR --` or
`desktop-session run --`. It looks at what the session's clients rely on: the display, a private bus,
the keyring, the notification server and the tray host of the session's mode (NORVANEBAR_TRAY)."""

import array
import json
import os
import stat
import subprocess
import sys
import tempfile
import time
import unittest
import uuid
import xml.etree.ElementTree as ElementTree

import dbus
import dbus.bus

sys.path.insert(0, os.path.join(os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))), "harness"))
from session_helpers import SignalCatcher, bus, name_has_owner, read_json_lines, selection_owner  # noqa: E402

SESSION_DIR = os.environ.get("NORVANEBAR_SESSION_DIR", "")
TRAY = os.environ.get("NORVANEBAR_TRAY", "")
WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_PATH = "/StatusNotifierWatcher"
NOTIFICATIONS = "org.freedesktop.Notifications"
NOTIFICATIONS_PATH = "/org/freedesktop/Notifications"
A11Y_BUS = "org.a11y.Bus"


def session_pieces():
    """The pieces the session started, from DIR/pids ("PID STARTTIME NAME" lines)."""
    try:
        with open(os.path.join(SESSION_DIR, "pids"), encoding="utf-8") as pids:
            return [line.split()[2] for line in pids if line.strip()]
    except OSError:
        return []


PIECES = session_pieces()


def run(*command, **kwargs):
    return subprocess.run(command, capture_output=True, text=True, timeout=20, **kwargs)


class Environment(unittest.TestCase):
    def test_session_started_the_pieces_of_its_mode(self):
        self.assertEqual(PIECES[:2], ["xvfb", "dbus"])
        self.assertEqual("watcher" in PIECES, TRAY == "sni")
        self.assertEqual("trayer" in PIECES, TRAY == "xembed")

    def test_session_variables_point_into_the_session_folder(self):
        self.assertTrue(SESSION_DIR, "NORVANEBAR_SESSION_DIR is not set: run inside a desktop session")
        for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"):
            self.assertTrue(os.path.isdir(os.environ[name]), name)
        for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"):
            self.assertTrue(os.environ[name].startswith(SESSION_DIR + "/"), name)
        # The runtime folder is DIR/run (a link into /tmp only when DIR is too deep for sockets).
        self.assertEqual(os.path.realpath(os.path.join(SESSION_DIR, "run")),
                         os.path.realpath(os.environ["XDG_RUNTIME_DIR"]))
        self.assertEqual(stat.S_IMODE(os.stat(os.environ["XDG_RUNTIME_DIR"]).st_mode), 0o700)
        self.assertEqual(os.environ["QT_QPA_PLATFORM"], "xcb")
        self.assertIn(TRAY, ("sni", "xembed", "none"))

    def test_env_file_holds_export_lines_only(self):
        with open(os.path.join(SESSION_DIR, "env"), encoding="utf-8") as env:
            lines = env.read().splitlines()
        names = {line.split("=", 1)[0].removeprefix("export ") for line in lines}
        self.assertTrue(all(line.startswith("export ") for line in lines), lines)
        for name in ("DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS", "HOME", "XDG_CONFIG_HOME",
                     "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "NORVANEBAR_SESSION_DIR",
                     "NORVANEBAR_TRAY"):
            self.assertIn(name, names)


class Display(unittest.TestCase):
    def test_display_answers(self):
        result = run("xdpyinfo")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn("dimensions:    1280x800 pixels", result.stdout)
        self.assertIn("depth of root window:    24 planes", result.stdout)

    def test_display_does_not_listen_on_tcp(self):
        number = int(os.environ["DISPLAY"].lstrip(":").split(".")[0])
        with open("/proc/net/tcp", encoding="ascii") as tcp:
            listening = [line.split()[1] for line in tcp.readlines()[1:] if line.split()[3] == "0A"]
        self.assertNotIn(6000 + number, [int(address.split(":")[1], 16) for address in listening])


class PrivateBus(unittest.TestCase):
    def test_bus_socket_is_inside_the_runtime_folder(self):
        address = os.environ["DBUS_SESSION_BUS_ADDRESS"]
        self.assertTrue(address.startswith("unix:path="), address)
        socket_path = address.removeprefix("unix:path=").split(",")[0]
        self.assertEqual(os.path.dirname(os.path.realpath(socket_path)),
                         os.path.realpath(os.environ["XDG_RUNTIME_DIR"]))

    def test_nothing_can_be_activated(self):
        daemon = bus().get_object("org.freedesktop.DBus", "/org/freedesktop/DBus")
        names = daemon.ListActivatableNames(dbus_interface="org.freedesktop.DBus")
        self.assertEqual([str(n) for n in names], ["org.freedesktop.DBus"])

    def test_unknown_name_fails_at_once_instead_of_starting_a_service(self):
        # The host has service files for these; a stock session bus would start them.
        names = ["org.freedesktop.impl.portal.Secret", "ca.desrt.dconf", "org.norvanebar.NoSuchService"]
        if "a11y" not in PIECES:
            names.append(A11Y_BUS)
        for name in names:
            started = time.monotonic()
            with self.assertRaises(dbus.exceptions.DBusException) as caught:
                bus().call_blocking(name, "/", "org.freedesktop.DBus.Peer", "Ping", "", [], timeout=10)
            self.assertEqual(caught.exception.get_dbus_name(), "org.freedesktop.DBus.Error.ServiceUnknown", name)
            self.assertLess(time.monotonic() - started, 0.5, name)
            self.assertFalse(name_has_owner(name), name)

    def test_services_of_pieces_left_out_are_absent(self):
        # The host has org.freedesktop.secrets.service; a stock bus would start gnome-keyring for it.
        absent = [name for piece, name in (("keyring", "org.freedesktop.secrets"),
                                           ("notifications", NOTIFICATIONS), ("watcher", WATCHER),
                                           ("a11y", A11Y_BUS))
                  if piece not in PIECES]
        for name in absent:
            started = time.monotonic()
            with self.assertRaises(dbus.exceptions.DBusException) as caught:
                bus().call_blocking(name, "/", "org.freedesktop.DBus.Peer", "Ping", "", [], timeout=10)
            self.assertEqual(caught.exception.get_dbus_name(), "org.freedesktop.DBus.Error.ServiceUnknown", name)
            self.assertLess(time.monotonic() - started, 0.5, name)

    def test_pieces_own_their_names(self):
        for piece, name in (("keyring", "org.freedesktop.secrets"), ("notifications", NOTIFICATIONS),
                            ("watcher", WATCHER), ("a11y", A11Y_BUS)):
            self.assertEqual(name_has_owner(name), piece in PIECES, name)


@unittest.skipUnless("a11y" in PIECES, "session started without an accessibility bus")
class Accessibility(unittest.TestCase):
    def launcher(self):
        return bus().get_object(A11Y_BUS, "/org/a11y/bus")

    def address(self):
        return str(self.launcher().GetAddress(dbus_interface=A11Y_BUS))

    def test_accessibility_is_reported_enabled(self):
        enabled = self.launcher().Get("org.a11y.Status", "IsEnabled", dbus_interface=dbus.PROPERTIES_IFACE)
        self.assertTrue(enabled)

    def test_accessibility_bus_socket_is_inside_the_runtime_folder(self):
        address = self.address()
        self.assertTrue(address.startswith("unix:path="), address)
        socket_path = address.removeprefix("unix:path=").split(",")[0]
        self.assertTrue(os.path.realpath(socket_path).startswith(os.path.realpath(os.environ["XDG_RUNTIME_DIR"]) + "/"),
                        socket_path)

    def test_the_display_announces_the_same_bus(self):
        result = run("xprop", "-root", "AT_SPI_BUS")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertIn('"%s"' % self.address(), result.stdout)

    def test_registry_answers_on_the_accessibility_bus(self):
        connection = dbus.bus.BusConnection(self.address())
        try:
            connection.call_blocking("org.a11y.atspi.Registry", "/", "org.freedesktop.DBus.Peer", "Ping", "", [],
                                     timeout=10)
            # ... and on that bus only.
            self.assertFalse(name_has_owner("org.a11y.atspi.Registry"))
        finally:
            connection.close()


@unittest.skipUnless("keyring" in PIECES, "session started without a keyring")
class Keyring(unittest.TestCase):
    def test_stores_and_returns_a_secret(self):
        account = "harness-" + uuid.uuid4().hex
        secret = "token-" + uuid.uuid4().hex
        attributes = ["server", "com.norvanebar.harness", "user", account]
        stored = run("secret-tool", "store", "--label=harness check", *attributes, input=secret)
        self.assertEqual(stored.returncode, 0, stored.stderr)
        try:
            looked_up = run("secret-tool", "lookup", *attributes)
            self.assertEqual(looked_up.returncode, 0, looked_up.stderr)
            self.assertEqual(looked_up.stdout, secret)
        finally:
            run("secret-tool", "clear", *attributes)
        self.assertNotEqual(run("secret-tool", "lookup", *attributes).returncode, 0)

    def test_login_collection_is_unlocked_and_default(self):
        service = bus().get_object("org.freedesktop.secrets", "/org/freedesktop/secrets")
        default = service.ReadAlias("default", dbus_interface="org.freedesktop.Secret.Service")
        self.assertEqual(str(default), "/org/freedesktop/secrets/collection/login")
        login = bus().get_object("org.freedesktop.secrets", default)
        locked = login.Get("org.freedesktop.Secret.Collection", "Locked", dbus_interface=dbus.PROPERTIES_IFACE)
        self.assertFalse(locked)

    def test_keyring_files_live_in_the_session(self):
        self.assertTrue(os.path.exists(os.path.join(os.environ["XDG_DATA_HOME"], "keyrings", "login.keyring")))


@unittest.skipUnless("notifications" in PIECES, "session started without a notification server")
class Notifications(unittest.TestCase):
    def setUp(self):
        self.server = bus().get_object(NOTIFICATIONS, NOTIFICATIONS_PATH)
        self.app = "harness-" + uuid.uuid4().hex[:8]

    def notify(self, summary, actions=(), hints=None, replaces_id=0):
        return int(self.server.Notify(
            self.app, dbus.UInt32(replaces_id), "task-due", summary, "body of " + summary,
            dbus.Array(actions, signature="s"), dbus.Dictionary(hints or {}, signature="sv"), dbus.Int32(5000),
            dbus_interface=NOTIFICATIONS))

    def test_server_describes_itself(self):
        capabilities = self.server.GetCapabilities(dbus_interface=NOTIFICATIONS)
        self.assertIn("actions", capabilities)
        self.assertIn("body", capabilities)
        name, _vendor, _version, protocol_version = self.server.GetServerInformation(dbus_interface=NOTIFICATIONS)
        self.assertTrue(name)
        self.assertEqual(protocol_version, "1.2")

    def test_capabilities_can_be_changed_and_restored(self):
        test = "org.norvanebar.Test.Notifications"
        try:
            self.server.SetCapabilities(dbus.Array(["body"], signature="s"), dbus_interface=test)
            self.assertEqual(list(self.server.GetCapabilities(dbus_interface=NOTIFICATIONS)), ["body"])
        finally:
            self.server.SetCapabilities(dbus.Array([], signature="s"), dbus_interface=test)
        self.assertIn("actions", self.server.GetCapabilities(dbus_interface=NOTIFICATIONS))

    def test_notify_is_recorded_with_its_hints(self):
        hints = {"urgency": dbus.Byte(2), "category": "task", "x-norvanebar-task": "T-1",
                 "resident": dbus.Boolean(True), "image-data": dbus.Struct(
                     (1, 1, 4, True, 8, 4, dbus.ByteArray(b"\x01\x02\x03\x04")), signature="iiibiiay")}
        first = self.notify("first", ["default", "Open", "snooze", "Snooze"], hints)
        second = self.notify("second")
        self.assertGreater(second, first)
        replaced = self.notify("first again", replaces_id=first)
        self.assertEqual(replaced, first)

        records = [r for r in read_json_lines(os.environ["NORVANEBAR_NOTIFICATIONS_LOG"])
                   if r.get("app_name") == self.app]
        self.assertEqual([r["event"] for r in records], ["notify"] * 3)
        record = records[0]
        self.assertEqual(record["id"], first)
        self.assertEqual(record["summary"], "first")
        self.assertEqual(record["body"], "body of first")
        self.assertEqual(record["app_icon"], "task-due")
        self.assertEqual(record["replaces_id"], 0)
        self.assertEqual(record["expire_timeout"], 5000)
        self.assertEqual(record["actions"], ["default", "Open", "snooze", "Snooze"])
        self.assertEqual(record["hints"]["urgency"], 2)
        self.assertEqual(record["hints"]["category"], "task")
        self.assertIs(record["hints"]["resident"], True)
        self.assertEqual(record["hints"]["image-data"], [1, 1, 4, True, 8, 4, "AQIDBA=="])
        self.assertIsInstance(record["time"], float)
        self.assertEqual(records[2]["replaces_id"], first)
        for notification_id in (first, second):
            self.server.CloseNotification(dbus.UInt32(notification_id), dbus_interface=NOTIFICATIONS)

    def test_invoke_action_emits_action_invoked_then_closes(self):
        catcher = SignalCatcher(NOTIFICATIONS, ["ActionInvoked", "NotificationClosed"])
        notification_id = self.notify("with actions", ["default", "Open", "snooze", "Snooze"])
        self.server.InvokeAction(dbus.UInt32(notification_id), "snooze",
                                 dbus_interface="org.norvanebar.Test.Notifications")
        signals = catcher.wait_for(2, keep=lambda member, args: args[0] == notification_id)
        self.assertEqual(signals, [("ActionInvoked", (notification_id, "snooze")),
                                   ("NotificationClosed", (notification_id, 2))])

    def test_dismiss_and_close_emit_notification_closed(self):
        catcher = SignalCatcher(NOTIFICATIONS, ["NotificationClosed"])
        dismissed = self.notify("dismissed")
        closed = self.notify("closed")
        self.server.Dismiss(dbus.UInt32(dismissed), dbus_interface="org.norvanebar.Test.Notifications")
        self.server.CloseNotification(dbus.UInt32(closed), dbus_interface=NOTIFICATIONS)
        signals = catcher.wait_for(2, keep=lambda member, args: args[0] in (dismissed, closed))
        self.assertEqual(signals, [("NotificationClosed", (dismissed, 2)), ("NotificationClosed", (closed, 3))])

    def test_unknown_action_is_an_error(self):
        notification_id = self.notify("no such action", ["default", "Open"])
        with self.assertRaises(dbus.exceptions.DBusException):
            self.server.InvokeAction(dbus.UInt32(notification_id), "snooze",
                                     dbus_interface="org.norvanebar.Test.Notifications")
        open_ones = json.loads(self.server.Notifications(dbus_interface="org.norvanebar.Test.Notifications"))
        self.assertIn(notification_id, [r["id"] for r in open_ones])
        self.server.CloseNotification(dbus.UInt32(notification_id), dbus_interface=NOTIFICATIONS)


@unittest.skipUnless(TRAY == "sni", "the session's tray is not StatusNotifierItem")
class StatusNotifierWatcher(unittest.TestCase):
    def watcher(self):
        return bus().get_object(WATCHER, WATCHER_PATH)

    def test_reports_a_registered_host(self):
        value = self.watcher().Get(WATCHER, "IsStatusNotifierHostRegistered", dbus_interface=dbus.PROPERTIES_IFACE)
        self.assertIsInstance(value, dbus.Boolean)
        self.assertTrue(value)
        everything = self.watcher().GetAll(WATCHER, dbus_interface=dbus.PROPERTIES_IFACE)
        self.assertEqual(everything["ProtocolVersion"], 0)
        self.assertIsInstance(everything["RegisteredStatusNotifierItems"], dbus.Array)

    def test_introspection_lists_the_properties(self):
        xml = self.watcher().Introspect(dbus_interface="org.freedesktop.DBus.Introspectable")
        interface = [i for i in ElementTree.fromstring(str(xml)).iter("interface") if i.get("name") == WATCHER]
        self.assertEqual(len(interface), 1)
        properties = {p.get("name"): (p.get("type"), p.get("access")) for p in interface[0].iter("property")}
        self.assertEqual(properties["IsStatusNotifierHostRegistered"], ("b", "read"))
        self.assertEqual(properties["RegisteredStatusNotifierItems"], ("as", "read"))
        self.assertEqual(properties["ProtocolVersion"], ("i", "read"))
        methods = {m.get("name") for m in interface[0].iter("method")}
        self.assertEqual(methods, {"RegisterStatusNotifierItem", "RegisterStatusNotifierHost"})

    def test_registration_is_recorded_and_dropped_when_the_owner_leaves(self):
        # A second connection plays the tray client: it owns an item name like Qt's and registers it.
        client = dbus.bus.BusConnection(os.environ["DBUS_SESSION_BUS_ADDRESS"])
        item_name = "org.kde.StatusNotifierItem-%d-%d" % (os.getpid(), int(time.monotonic() * 1000) % 100000)
        self.assertEqual(client.request_name(item_name), dbus.bus.REQUEST_NAME_REPLY_PRIMARY_OWNER)
        catcher = SignalCatcher(WATCHER, ["StatusNotifierItemRegistered", "StatusNotifierItemUnregistered"])
        before = time.monotonic()
        client.call_blocking(WATCHER, WATCHER_PATH, WATCHER, "RegisterStatusNotifierItem", "s", [item_name])
        # An object path means "this path on my connection".
        client.call_blocking(WATCHER, WATCHER_PATH, WATCHER, "RegisterStatusNotifierItem", "s", ["/Tray/Other"])
        by_path = client.get_unique_name() + "/Tray/Other"
        by_name = item_name + "/StatusNotifierItem"

        items = self.watcher().Get(WATCHER, "RegisteredStatusNotifierItems", dbus_interface=dbus.PROPERTIES_IFACE)
        self.assertIn(by_name, items)
        self.assertIn(by_path, items)
        records = [r for r in read_json_lines(os.environ["NORVANEBAR_WATCHER_LOG"])
                   if r.get("event") == "registered" and r.get("item") in (by_name, by_path)]
        self.assertEqual([r["item"] for r in records], [by_name, by_path])
        for record in records:
            self.assertEqual(record["sender"], client.get_unique_name())
            self.assertGreaterEqual(record["time"], before)
            self.assertLessEqual(record["time"], time.monotonic())

        client.close()
        signals = catcher.wait_for(4, keep=lambda member, args: args[0] in (by_name, by_path))
        self.assertEqual(sorted(signals), sorted([
            ("StatusNotifierItemRegistered", (by_name,)), ("StatusNotifierItemRegistered", (by_path,)),
            ("StatusNotifierItemUnregistered", (by_name,)), ("StatusNotifierItemUnregistered", (by_path,))]))
        items = self.watcher().Get(WATCHER, "RegisteredStatusNotifierItems", dbus_interface=dbus.PROPERTIES_IFACE)
        self.assertNotIn(by_name, items)
        self.assertNotIn(by_path, items)

    def test_registering_a_name_nobody_owns_fails(self):
        with self.assertRaises(dbus.exceptions.DBusException):
            self.watcher().RegisterStatusNotifierItem("org.kde.StatusNotifierItem-0-0", dbus_interface=WATCHER)

    def test_no_xembed_tray_alongside(self):
        self.assertIsNone(selection_owner("_NET_SYSTEM_TRAY_S0"))


@unittest.skipUnless(TRAY == "xembed", "the session's tray is not XEmbed")
class XEmbedTray(unittest.TestCase):
    def test_tray_selection_has_an_owner(self):
        self.assertIsNotNone(selection_owner("_NET_SYSTEM_TRAY_S0"))

    def test_trayer_window_exists(self):
        result = run("xdotool", "search", "--class", "trayer")
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertTrue(result.stdout.split())

    def test_no_status_notifier_watcher(self):
        self.assertFalse(name_has_owner(WATCHER))


def sound_server_answers():
    return run("pactl", "info").returncode == 0


@unittest.skipUnless("pulseaudio" in PIECES, "session started without a microphone")
class Microphone(unittest.TestCase):
    def test_clients_are_pointed_at_the_private_server_and_its_monitor(self):
        socket_path = os.path.join(os.environ["XDG_RUNTIME_DIR"], "pulse", "native")
        self.assertEqual(os.environ["PULSE_SERVER"], "unix:" + socket_path)
        self.assertTrue(stat.S_ISSOCK(os.stat(socket_path).st_mode))
        self.assertEqual(os.environ["PULSE_SOURCE"], "fakemic.monitor")
        self.assertTrue(sound_server_answers())
        sources = run("pactl", "list", "short", "sources").stdout
        self.assertEqual([line.split("\t")[1] for line in sources.splitlines()], ["fakemic.monitor"])
        self.assertEqual(PIECES[-2:], ["pulseaudio", "tone"])

    def test_the_default_source_records_a_440_hz_tone(self):
        rate, buffers = 48000, 50  # pulsesrc gives 10 ms a buffer: half a second
        with tempfile.NamedTemporaryFile(suffix=".raw") as recording:
            result = run("gst-launch-1.0", "-q", "pulsesrc", "num-buffers=%d" % buffers, "!",
                         "audio/x-raw,format=S16LE,channels=1,rate=%d" % rate, "!",
                         "filesink", "location=" + recording.name)
            self.assertEqual(result.returncode, 0, result.stderr)
            samples = array.array("h", recording.read())
        self.assertGreater(len(samples), rate // 4)
        self.assertGreater(max(abs(sample) for sample in samples), 1000)
        # A sine crosses zero upwards once a period; the median period passes over any gap of silence
        # that the tone's player leaves under load.
        rising = [i for i in range(1, len(samples)) if samples[i - 1] < 0 <= samples[i]]
        periods = sorted(after - before for before, after in zip(rising, rising[1:]))
        self.assertGreater(len(periods), 100)
        self.assertAlmostEqual(rate / periods[len(periods) // 2], 440, delta=10)


@unittest.skipIf("pulseaudio" in PIECES, "session started with a microphone")
class NoSoundServer(unittest.TestCase):
    def test_no_server_answers_and_none_is_started(self):
        self.assertNotIn("PULSE_SERVER", os.environ)
        self.assertNotIn("PULSE_SOURCE", os.environ)
        self.assertFalse(sound_server_answers())
        self.assertFalse(os.path.exists(os.path.join(os.environ["XDG_RUNTIME_DIR"], "pulse", "native")))


@unittest.skipUnless(TRAY == "none", "the session has a tray host")
class NoTray(unittest.TestCase):
    def test_neither_tray_host(self):
        self.assertFalse(name_has_owner(WATCHER))
        self.assertIsNone(selection_owner("_NET_SYSTEM_TRAY_S0"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
