"""The Debian package as dpkg and a desktop meet it. CPack builds it into a scratch folder; lintian
passes it; its Depends carry what the program loads at run time that dpkg-shlibdeps cannot see (the
QML modules its windows import, the GStreamer elements of the recording); unpacked into a scratch
root, its program answers --version, its desktop entry starts it onto the session's tray, and the
sign-in's scheme resolves to the installed entry, with no entry of the user's that hides it.

Runs inside `desktop-session run --a11y --tray sni`; NORVANEBAR_BUILD_DIR names the built tree,
NORVANEBAR_SOURCE_DIR the sources and NORVANEBAR_VERSION the project's version."""

import glob
import json
import os
import re
import signal
import subprocess
import sys
import tempfile
import types
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "harness"))
import stand_in_browser  # noqa: E402
from accessibility import application, press, pump_until  # noqa: E402
from attachments_pane import press_button, shows  # noqa: E402
from norvanebar_app import NorvaneBar, wait_until  # noqa: E402

APP_ID = "com.norvanebar.NorvaneBar"
ENTRY = f"{APP_ID}.desktop"
SCHEME_TYPE = "x-scheme-handler/com.norvanebar.app"
SOURCES = os.environ["NORVANEBAR_SOURCE_DIR"]
# Every GStreamer element the recording, the camera and the movie writer name in their pipelines,
# and the camera's source, which the device monitor makes for a V4L2 camera.
ELEMENTS = ("appsrc", "appsink", "ximagesrc", "pipewiresrc", "pulsesrc", "videoconvert", "videoscale", "videorate",
            "audiorate", "videoflip", "valve", "capsfilter", "x264enc", "openh264enc", "h264parse", "qtmux", "filesink")
DEVICE_ELEMENTS = ("v4l2src",)


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, timeout=120, **options)


def owner_of(path):
    """The Debian package that installed `path` (asked under /usr too, as on a merged-/usr system)."""
    for candidate in (path, os.path.realpath(path), "/usr" + path):
        found = run(["dpkg-query", "-S", candidate])
        if found.returncode == 0:
            return found.stdout.split(":")[0]
    raise AssertionError(f"no package holds {path}")


def package_names(field):
    """The package names of a Depends-like field, alternatives included."""
    return {re.split(r"[\s(]", alternative.strip())[0] for relation in field.split(",")
            for alternative in relation.split("|") if alternative.strip()}


def qml_imports():
    """The modules the app's QML files import, other than its own."""
    modules = set()
    for path in glob.glob(os.path.join(SOURCES, "src", "desktop", "**", "*.qml"), recursive=True):
        with open(path, encoding="utf-8") as f:
            modules |= set(re.findall(r"^import\s+([A-Za-z][\w.]*)", f.read(), re.MULTILINE))
    return modules - {"NorvaneBar"}


class PackageTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="norvanebar-package-")
        out = os.path.join(cls.scratch.name, "out")
        built = run(["cpack", "--config", os.path.join(os.environ["NORVANEBAR_BUILD_DIR"], "CPackConfig.cmake"),
                     "-B", out])
        assert built.returncode == 0, built.stdout + built.stderr
        cls.deb = os.path.join(out, f"norvanebar_{os.environ['NORVANEBAR_VERSION']}_amd64.deb")
        assert os.path.isfile(cls.deb), os.listdir(out)
        cls.root = os.path.join(cls.scratch.name, "root")
        subprocess.run(["dpkg", "-x", cls.deb, cls.root], check=True, timeout=60)
        cls.program = os.path.join(cls.root, "usr", "bin", "norvanebar")

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def field(self, name):
        return run(["dpkg-deb", "-f", self.deb, name]).stdout.strip()

    def test_lintian_passes_the_package(self):
        checked = run(["lintian", "--fail-on", "error,warning", self.deb])
        self.assertEqual(checked.returncode, 0, checked.stdout + checked.stderr)
        self.assertEqual([line for line in checked.stdout.splitlines() if line[:2] in ("E:", "W:")], [])

    def test_depends_carry_the_qml_modules_the_windows_import(self):
        depends = package_names(self.field("Depends"))
        qml = run(["qtpaths6", "--query", "QT_INSTALL_QML"]).stdout.strip()
        imports = qml_imports()
        self.assertIn("QtQuick.Controls", imports)
        for module in imports:
            with self.subTest(module=module):
                self.assertIn(owner_of(os.path.join(qml, *module.split("."), "qmldir")), depends)

    def test_depends_carry_the_gstreamer_elements_of_the_recording(self):
        depends = package_names(self.field("Depends"))
        named = set()
        for path in glob.glob(os.path.join(SOURCES, "src", "platform", "linux", "GStreamer*.cpp")):
            with open(path, encoding="utf-8") as f:
                named |= set(re.findall(r"[a-z0-9]+", f.read()))
        for element in ELEMENTS + DEVICE_ELEMENTS:
            with self.subTest(element=element):
                self.assertTrue(element in named or element in DEVICE_ELEMENTS, f"{element} is named nowhere")
                inspected = run(["gst-inspect-1.0", element])
                self.assertEqual(inspected.returncode, 0, inspected.stderr)
                plugin = re.search(r"^\s*Filename\s+(\S+)", inspected.stdout, re.MULTILINE).group(1)
                self.assertIn(owner_of(plugin), depends)

    def test_depends_and_recommends_carry_the_other_run_time_pieces(self):
        depends = package_names(self.field("Depends"))
        self.assertLessEqual({"qt6-qpa-plugins", "libqt6svg6", "qml6-module-qtmultimedia", "libqt6core6",
                              "libqt6dbus6"}, depends)
        # The Secret Service is spoken to over D-Bus: no keyring client library, nor libsecret.
        self.assertFalse({"libqt6keychain1", "libsecret-1-0"} & depends)
        self.assertIn("gnome-keyring | org.freedesktop.secrets", self.field("Recommends"))
        self.assertEqual(self.field("Version"), os.environ["NORVANEBAR_VERSION"])

    def test_the_installed_program_says_its_version(self):
        answer = run([self.program, "--version"], env={"PATH": "/usr/bin:/bin"})
        self.assertEqual((answer.returncode, answer.stdout), (0, f"NorvaneBar {os.environ['NORVANEBAR_VERSION']}\n"))

    def test_the_desktop_entry_starts_the_installed_program_which_makes_its_entry_the_schemes_handler(self):
        home = os.path.join(self.scratch.name, "home")
        config, data = os.path.join(home, "config"), os.path.join(home, "data")
        environment = dict(os.environ, XDG_CONFIG_HOME=config, XDG_DATA_HOME=data,
                           XDG_DATA_DIRS=os.path.join(self.root, "usr", "share") + ":/usr/local/share:/usr/share",
                           PATH=os.path.join(self.root, "usr", "bin") + ":" + os.environ["PATH"],
                           QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        environment.pop("XDG_CURRENT_DESKTOP", None)
        # A browser that only writes the sign-in page's address down, and Google Drive chosen for the
        # attachments, with a Google that is never asked.
        browser_log = os.path.join(self.scratch.name, "browser.jsonl")
        stand_in_browser.use(os.path.join(self.scratch.name, "browser"), browser_log, environment)
        environment[stand_in_browser.IDLE] = "1"
        os.makedirs(os.path.join(config, "NorvaneBar"))
        with open(os.path.join(config, "NorvaneBar", "settings.json"), "w", encoding="utf-8") as f:
            json.dump({"storageProvider": "googleDrive"} | {key: "http://127.0.0.1:9/google" for key in (
                "googleAccountsBaseURL", "googleOAuthTokenBaseURL", "googleDriveAPIBaseURL",
                "googleDriveUploadBaseURL", "googleDriveWebBaseURL")}, f)
        # The entry a run from the build tree left in the user's folder, which would hide the installed one.
        user_entry = os.path.join(data, "applications", ENTRY)
        os.makedirs(os.path.dirname(user_entry))
        build_program = os.path.join(os.environ["NORVANEBAR_BUILD_DIR"], "src", "desktop", "norvanebar")
        with open(user_entry, "w", encoding="utf-8") as f:
            f.write("[Desktop Entry]\nType=Application\nName=NorvaneBar\nComment=Create Norvane tasks from the panel\n"
                    f'Exec="{build_program}" %u\nIcon={APP_ID}\nTerminal=false\nMimeType={SCHEME_TYPE};\n')
        mime_apps = os.path.join(config, "mimeapps.list")

        with open(os.environ["NORVANEBAR_WATCHER_LOG"], encoding="utf-8") as log:
            log.seek(0, os.SEEK_END)
            offset = log.tell()
        # The program keeps gio's output streams: a file, which nobody waits to see closed.
        with open(os.path.join(self.scratch.name, "norvanebar.stderr"), "wb") as output:
            launched = subprocess.run(["gio", "launch", os.path.join(self.root, "usr", "share", "applications", ENTRY)],
                                      env=environment, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                      timeout=30)
        self.assertEqual(launched.returncode, 0)
        app = NorvaneBar(self.program, self.scratch.name)
        installed = os.path.realpath(self.program)

        def registered_installed_program():
            with open(os.environ["NORVANEBAR_WATCHER_LOG"], encoding="utf-8") as log:
                log.seek(offset)
                records = [json.loads(line) for line in log if line.strip()]
            for record in records:
                if record.get("event") != "registered":
                    continue
                try:
                    pid = app._process_of(record["sender"])
                    if os.readlink(f"/proc/{pid}/exe") == installed:
                        return pid
                except Exception:  # a sender gone by now, or another user's process
                    continue
            return None

        pid = wait_until(registered_installed_program, timeout=30, what="the installed program's tray item")
        self.addCleanup(self.stop, pid)
        app.process = types.SimpleNamespace(pid=pid)
        self.assertFalse(os.path.exists(mime_apps) and SCHEME_TYPE in open(mime_apps, encoding="utf-8").read())

        # Signing in with Google registers the scheme's handler before the browser opens.
        app.click_menu("Settings…")
        ui = pump_until(lambda: application("NorvaneBar"), what="NorvaneBar on the accessibility bus")
        press(ui, "Attachments")
        press_button(ui, "Sign in with Google")
        shows(ui, "Finish signing in with Google in your browser.")
        visits = wait_until(lambda: stand_in_browser.visits(browser_log), timeout=15, what="the browser's visit")
        self.assertTrue(visits[0]["url"].startswith("http://127.0.0.1:9/google/"), visits)

        with open(mime_apps, encoding="utf-8") as f:
            self.assertIn(f"\n{SCHEME_TYPE}={ENTRY}\n", "\n" + f.read())
        self.assertFalse(os.path.exists(user_entry), "the build tree's entry still hides the installed one")
        resolved = run(["xdg-mime", "query", "default", SCHEME_TYPE], env=environment)
        self.assertEqual((resolved.returncode, resolved.stdout.strip()), (0, ENTRY), resolved.stderr)

    @staticmethod
    def stop(pid):
        try:
            os.kill(pid, signal.SIGTERM)
        except ProcessLookupError:
            return
        wait_until(lambda: not os.path.exists(f"/proc/{pid}") or open(f"/proc/{pid}/stat").read().split()[2] == "Z",
                   timeout=10, what="the installed program to end")


if __name__ == "__main__":
    unittest.main(verbosity=2)
