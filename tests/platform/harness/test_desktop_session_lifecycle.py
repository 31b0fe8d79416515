#!/usr/bin/python3
"""Starts and stops desktop sessions of its own and checks their life cycle: start time, the files
in DIR, that stop (and run, also on a signal or a failing piece) leaves no process behind and removes
the throw-away folders, and that exec and run return the command's status."""

import os
import signal
import statistics
import subprocess
import sys
import tempfile
import time
import unittest

HARNESS_DIR = os.path.join(os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__)))), "harness")
HARNESS = os.path.join(HARNESS_DIR, "desktop-session")
sys.path.insert(0, HARNESS_DIR)
from x_selection_owner import alive  # noqa: E402
THROWAWAY = ("home", "config", "data", "cache", "run")
ENV_NAMES = ("DISPLAY", "QT_QPA_PLATFORM", "DBUS_SESSION_BUS_ADDRESS", "HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
             "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "NORVANEBAR_SESSION_DIR", "NORVANEBAR_TRAY")


def harness(*args, env=None, timeout=30):
    return subprocess.run([HARNESS, *args], capture_output=True, text=True, timeout=timeout, env=env)


def session_processes(session_dir):
    """PIDs of live processes whose environment names this session (every piece has it)."""
    marker = b"NORVANEBAR_SESSION_DIR=" + os.fsencode(session_dir) + b"\0"
    found = []
    for entry in os.listdir("/proc"):
        if not entry.isdigit():
            continue
        try:
            with open("/proc/%s/environ" % entry, "rb") as environ:
                if marker in environ.read():
                    found.append(int(entry))
        except OSError:
            pass  # gone, or a zombie
    return found


def descendants(pid):
    """PIDs of all live descendants of pid (the tree a test driver kills on a timeout)."""
    children = {}
    for entry in os.listdir("/proc"):
        try:
            with open("/proc/%s/stat" % entry, encoding="utf-8") as stat:
                children.setdefault(int(stat.read().rsplit(")", 1)[1].split()[1]), []).append(int(entry))
        except (OSError, ValueError, IndexError):
            pass
    found, queue = [], [pid]
    while queue:
        for child in children.get(queue.pop(), []):
            found.append(child)
            queue.append(child)
    return found


def read_pids(session_dir):
    with open(os.path.join(session_dir, "pids"), encoding="utf-8") as pids:
        return [(int(line.split()[0]), line.split()[2]) for line in pids if line.strip()]


def read_env(session_dir):
    values = {}
    with open(os.path.join(session_dir, "env"), encoding="utf-8") as env:
        for line in env.read().splitlines():
            name, value = line.removeprefix("export ").split("=", 1)
            values[name] = value
    return values


class Lifecycle(unittest.TestCase):
    def setUp(self):
        self.base = tempfile.mkdtemp(prefix="nb-life-")
        self.dir = os.path.join(self.base, "s")

    def tearDown(self):
        harness("stop", self.dir)
        subprocess.run(["rm", "-rf", self.base], check=True)

    def start(self, *options, env=None):
        started = time.monotonic()
        result = harness("start", self.dir, *options, env=env)
        elapsed = time.monotonic() - started
        self.assertEqual(result.returncode, 0, result.stderr)
        return elapsed

    def assert_stopped(self, pids, session_dir=None):
        for pid, name in pids:
            self.assertFalse(alive(pid), "%s (pid %d) still runs" % (name, pid))
        self.assertEqual(session_processes(session_dir or self.dir), [])

    def test_start_and_stop_again_and_again(self):
        starts, stops = [], []
        for _ in range(3):
            starts.append(self.start())
            pids = read_pids(self.dir)
            began = time.monotonic()
            self.assertEqual(harness("stop", self.dir).returncode, 0)
            stops.append(time.monotonic() - began)
            self.assert_stopped(pids)
        print("\nstart (tray sni, keyring, notifications): median %.0f ms, range %.0f-%.0f ms"
              % (statistics.median(starts) * 1000, min(starts) * 1000, max(starts) * 1000))
        print("stop: median %.0f ms, range %.0f-%.0f ms"
              % (statistics.median(stops) * 1000, min(stops) * 1000, max(stops) * 1000))
        # Informative figures only: a piece that does not come up fails the start by itself, and how
        # long a start takes depends on what else the machine is doing.

    def test_start_writes_env_pids_and_logs(self):
        self.start()
        env = read_env(self.dir)
        for name in ENV_NAMES:
            self.assertIn(name, env)
        self.assertEqual(env["NORVANEBAR_SESSION_DIR"], self.dir)
        self.assertEqual(env["NORVANEBAR_TRAY"], "sni")
        self.assertEqual(env["QT_QPA_PLATFORM"], "xcb")
        self.assertRegex(env["DISPLAY"], r"^:\d+$")
        self.assertEqual(env["NORVANEBAR_WATCHER_LOG"], os.path.join(self.dir, "status-notifier-watcher.jsonl"))
        self.assertEqual(env["NORVANEBAR_NOTIFICATIONS_LOG"], os.path.join(self.dir, "notifications.jsonl"))
        for name in ("HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"):
            self.assertTrue(env[name].startswith(self.dir + "/"), name)

        pids = read_pids(self.dir)
        self.assertEqual([name for _, name in pids], ["xvfb", "dbus", "keyring", "notifications", "watcher"])
        for pid, name in pids:
            self.assertTrue(alive(pid), name)
            self.assertTrue(os.path.exists(os.path.join(self.dir, "log", name + ".log")), name)
        self.assertEqual(sorted(session_processes(self.dir)), sorted(pid for pid, _ in pids))

    def test_stop_leaves_nothing_running_and_removes_the_throwaway_folders(self):
        self.start("--tray", "xembed")
        pids = read_pids(self.dir)
        self.assertIn("trayer", [name for _, name in pids])
        self.assertEqual(harness("stop", self.dir).returncode, 0)
        self.assert_stopped(pids)
        for name in THROWAWAY + ("env", "pids"):
            self.assertFalse(os.path.lexists(os.path.join(self.dir, name)), name)
        # The logs stay for a post-mortem.
        self.assertTrue(os.path.isdir(os.path.join(self.dir, "log")))
        self.assertEqual(harness("stop", self.dir).returncode, 0)

    def test_accessibility_bus_and_its_registry_stop_with_the_session(self):
        self.start("--a11y")
        pids = read_pids(self.dir)
        self.assertEqual([name for _, name in pids][-1], "a11y")
        asked = harness("exec", self.dir, "--", "dbus-send", "--session", "--print-reply=literal",
                        "--dest=org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus.GetAddress")
        self.assertEqual(asked.returncode, 0, asked.stderr)
        address = asked.stdout.strip()
        self.assertTrue(address.startswith("unix:path=" + os.path.realpath(read_env(self.dir)["XDG_RUNTIME_DIR"])),
                        address)
        # A client starts the registry on the accessibility bus; it is the session's too.
        pinged = harness("exec", self.dir, "--", "dbus-send", "--bus=" + address, "--print-reply",
                         "--dest=org.a11y.atspi.Registry", "/", "org.freedesktop.DBus.Peer.Ping")
        self.assertEqual(pinged.returncode, 0, pinged.stderr)
        self.assertGreater(len(session_processes(self.dir)), len(pids))
        self.assertEqual(harness("stop", self.dir).returncode, 0)
        self.assert_stopped(pids)

    def test_stop_without_a_session_succeeds(self):
        self.assertEqual(harness("stop", os.path.join(self.base, "never-started")).returncode, 0)
        os.makedirs(self.dir)
        self.assertEqual(harness("stop", self.dir).returncode, 0)

    def test_start_on_a_live_session_replaces_it(self):
        self.start()
        first = read_pids(self.dir)
        self.start("--tray", "none")
        for pid, name in first:
            self.assertFalse(alive(pid), name)
        second = read_pids(self.dir)
        self.assertEqual([name for _, name in second], ["xvfb", "dbus", "keyring", "notifications"])
        self.assertEqual(read_env(self.dir)["NORVANEBAR_TRAY"], "none")

    def test_deep_session_folder_gets_a_short_runtime_folder(self):
        self.dir = os.path.join(self.base, "a-rather-long-folder-name-" * 4, "s")
        self.start()
        runtime = read_env(self.dir)["XDG_RUNTIME_DIR"]
        self.assertTrue(os.path.islink(os.path.join(self.dir, "run")))
        self.assertEqual(os.path.realpath(os.path.join(self.dir, "run")), os.path.realpath(runtime))
        result = harness("exec", self.dir, "--", "secret-tool", "search", "--all", "server", "none")
        self.assertEqual(result.returncode, 0, result.stderr)  # the keyring's socket path fits
        self.assertEqual(harness("stop", self.dir).returncode, 0)
        self.assertFalse(os.path.exists(runtime))

    def test_exec_returns_the_command_status_and_applies_the_env(self):
        self.start("--tray", "none", "--no-keyring", "--no-notifications")
        result = harness("exec", self.dir, "--", "sh", "-c", 'echo "$NORVANEBAR_SESSION_DIR $HOME"; exit 7')
        self.assertEqual(result.returncode, 7)
        self.assertEqual(result.stdout.split(), [self.dir, os.path.join(self.dir, "home")])

    def test_exec_fails_loudly_without_a_live_session(self):
        result = harness("exec", self.dir, "--", "true")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("no desktop session", result.stderr)

        self.start("--tray", "none", "--no-keyring")
        notifications = dict((name, pid) for pid, name in read_pids(self.dir))["notifications"]
        os.kill(notifications, signal.SIGKILL)
        deadline = time.monotonic() + 5
        while alive(notifications) and time.monotonic() < deadline:
            time.sleep(0.01)
        result = harness("exec", self.dir, "--", "true")
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("notifications", result.stderr)

    def test_failing_piece_fails_the_start_loudly_and_stops_the_rest(self):
        fake = os.path.join(self.base, "bin")
        os.makedirs(fake)
        with open(os.path.join(fake, "trayer"), "w", encoding="utf-8") as script:
            script.write("#!/bin/sh\necho 'trayer: cannot dock' >&2\nexit 1\n")
        os.chmod(os.path.join(fake, "trayer"), 0o755)
        env = dict(os.environ, PATH=fake + ":" + os.environ["PATH"])
        result = harness("start", self.dir, "--tray", "xembed", env=env)
        self.assertNotEqual(result.returncode, 0)
        self.assertIn("trayer exited", result.stderr)
        self.assertIn("cannot dock", result.stderr)
        self.assertEqual(session_processes(self.dir), [])
        self.assertFalse(os.path.exists(os.path.join(self.dir, "env")))

    def test_piece_that_never_comes_up_times_out(self):
        fake = os.path.join(self.base, "bin")
        os.makedirs(fake)
        with open(os.path.join(fake, "trayer"), "w", encoding="utf-8") as script:
            script.write("#!/bin/sh\nexec sleep 60\n")
        os.chmod(os.path.join(fake, "trayer"), 0o755)
        env = dict(os.environ, PATH=fake + ":" + os.environ["PATH"], NORVANEBAR_SESSION_TIMEOUT="10")
        started = time.monotonic()
        result = harness("start", self.dir, "--tray", "xembed", env=env)
        self.assertNotEqual(result.returncode, 0)
        # The fake tray sleeps a minute: ending well before that is the limit at work. The limit holds
        # for every piece, so it leaves the real ones time to come up on a busy machine.
        self.assertLess(time.monotonic() - started, 40)
        self.assertIn("trayer did not own the _NET_SYSTEM_TRAY_S0 selection within 10 s", result.stderr)
        self.assertEqual(session_processes(self.dir), [])


class Run(unittest.TestCase):
    def test_run_returns_the_status_and_cleans_up(self):
        with tempfile.TemporaryDirectory() as scratch:
            record = os.path.join(scratch, "session")
            result = harness("run", "--tray", "xembed", "--", "sh", "-c",
                             'echo "$NORVANEBAR_SESSION_DIR" >%s; test "$NORVANEBAR_TRAY" = xembed && exit 5' % record)
            self.assertEqual(result.returncode, 5, result.stderr)
            with open(record, encoding="utf-8") as recorded:
                session_dir = recorded.read().strip()
        self.assertTrue(session_dir)
        self.assertFalse(os.path.exists(session_dir))
        self.assertEqual(session_processes(session_dir), [])

    def test_host_desktop_does_not_leak_into_the_session(self):
        host = dict(os.environ, DISPLAY=":99", DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent/bus",
                    WAYLAND_DISPLAY="wayland-0", XDG_CURRENT_DESKTOP="GNOME", XAUTHORITY="/nonexistent/xauth",
                    HOME="/nonexistent/home")
        script = ('env; for pid in $(cut -d" " -f1 "$NORVANEBAR_SESSION_DIR/pids"); do '
                  'echo "piece $pid"; tr "\\0" "\\n" </proc/$pid/environ; done')
        result = subprocess.run([HARNESS, "run", "--tray", "xembed", "--", "sh", "-c", script], env=host,
                                capture_output=True, text=True, timeout=30)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout.count("piece "), 5)
        for line in result.stdout.splitlines():
            for leaked in ("DISPLAY=:99", "/nonexistent/", "WAYLAND_DISPLAY=", "XDG_CURRENT_DESKTOP="):
                self.assertNotIn(leaked, line)

    def test_run_passes_stdin_and_succeeds(self):
        result = subprocess.run([HARNESS, "run", "--tray", "none", "--", "cat"], input="through", capture_output=True,
                                text=True, timeout=30)
        self.assertEqual(result.returncode, 0, result.stderr)
        self.assertEqual(result.stdout, "through")

    def test_signal_to_run_stops_the_command_and_the_session(self):
        with tempfile.TemporaryDirectory() as scratch:
            record = os.path.join(scratch, "session")
            runner = subprocess.Popen([HARNESS, "run", "--", "sh", "-c",
                                       'echo "$NORVANEBAR_SESSION_DIR" >%s.new; mv %s.new %s; exec sleep 60'
                                       % (record, record, record)],
                                      stdout=subprocess.DEVNULL, stderr=subprocess.PIPE)
            try:
                deadline = time.monotonic() + 10
                while not os.path.exists(record) and time.monotonic() < deadline:
                    time.sleep(0.02)
                with open(record, encoding="utf-8") as recorded:
                    session_dir = recorded.read().strip()
                self.assertTrue(session_processes(session_dir))
                runner.send_signal(signal.SIGTERM)
                self.assertNotEqual(runner.wait(timeout=10), 0)
            finally:
                if runner.poll() is None:
                    runner.kill()
                    runner.wait()
                runner.stderr.close()
        self.assertFalse(os.path.exists(session_dir))
        self.assertEqual(session_processes(session_dir), [])

    def test_killing_the_run_process_tree_leaves_nothing(self):
        with tempfile.TemporaryDirectory() as scratch:
            record = os.path.join(scratch, "session")
            runner = subprocess.Popen([HARNESS, "run", "--tray", "xembed", "--", "sh", "-c",
                                       'echo "$NORVANEBAR_SESSION_DIR" >%s.new; mv %s.new %s; exec sleep 60'
                                       % (record, record, record)],
                                      stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            deadline = time.monotonic() + 10
            while not os.path.exists(record) and time.monotonic() < deadline:
                time.sleep(0.02)
            with open(record, encoding="utf-8") as recorded:
                session_dir = recorded.read().strip()
            # The pieces are children of the run process, so killing its tree reaches every one.
            tree = descendants(runner.pid)
            try:
                self.assertLessEqual(set(session_processes(session_dir)), set(tree))
            finally:
                for pid in [runner.pid] + tree + session_processes(session_dir):
                    try:
                        os.kill(pid, signal.SIGKILL)
                    except ProcessLookupError:
                        pass
                runner.wait()
        deadline = time.monotonic() + 5
        while session_processes(session_dir) and time.monotonic() < deadline:
            time.sleep(0.02)
        self.assertEqual(session_processes(session_dir), [])
        subprocess.run(["rm", "-rf", session_dir], check=True)


if __name__ == "__main__":
    unittest.main(verbosity=2)
