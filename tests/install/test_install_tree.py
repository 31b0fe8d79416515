"""What `cmake --install` puts under a prefix: exactly the program with the project's libraries,
its desktop entry, the application icon as SVG and as a PNG of each hicolor size, the symbolic tray
icon and the AppStream metainfo, in the places the freedesktop standards name; the program runs
from there, and the desktop's and AppStream's own checkers accept the two text files.

NORVANEBAR_BUILD_DIR names the built tree (build/main), NORVANEBAR_VERSION the project's version and
NORVANEBAR_LIBDIR the libraries' folder below the prefix."""

import configparser
import os
import re
import struct
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

APP_ID = "com.norvanebar.NorvaneBar"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
EXPECTED = {
    "bin/norvanebar",
    f"share/applications/{APP_ID}.desktop",
    f"share/icons/hicolor/scalable/apps/{APP_ID}.svg",
    f"share/icons/hicolor/symbolic/apps/{APP_ID}-symbolic.svg",
    f"share/metainfo/{APP_ID}.metainfo.xml",
} | {f"share/icons/hicolor/{side}x{side}/apps/{APP_ID}.png" for side in SIZES}
LIBDIR = os.environ["NORVANEBAR_LIBDIR"]
# The project's libraries the program links; modules it loads may sit beside them.
LINKED = {os.path.join(LIBDIR, f"libnorvanebar_{name}.so") for name in ("core", "platform")}


def png_size(path):
    """(width, height) from a PNG's header."""
    with open(path, "rb") as f:
        header = f.read(24)
    assert header[:8] == b"\x89PNG\r\n\x1a\n" and header[12:16] == b"IHDR", f"{path} is not a PNG"
    return struct.unpack(">II", header[16:24])


class InstallTreeTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.scratch = tempfile.TemporaryDirectory(prefix="norvanebar-install-")
        cls.prefix = os.path.join(cls.scratch.name, "prefix")
        subprocess.run(["cmake", "--install", os.environ["NORVANEBAR_BUILD_DIR"], "--prefix", cls.prefix],
                       check=True, capture_output=True, timeout=60)

    @classmethod
    def tearDownClass(cls):
        cls.scratch.cleanup()

    def path(self, relative):
        return os.path.join(self.prefix, relative)

    def test_exactly_the_expected_files_are_installed(self):
        installed = set()
        for folder, _, files in os.walk(self.prefix):
            installed |= {os.path.relpath(os.path.join(folder, name), self.prefix) for name in files}
        libraries = {path for path in installed if os.path.dirname(path) == LIBDIR}
        self.assertEqual(installed - libraries, EXPECTED)
        self.assertLessEqual(LINKED, libraries)
        for library in libraries:
            with self.subTest(library=library):
                self.assertRegex(os.path.basename(library), r"^libnorvanebar_\w+\.so$")
                with open(self.path(library), "rb") as f:
                    self.assertEqual(f.read(4), b"\x7fELF")
        self.assertTrue(os.access(self.path("bin/norvanebar"), os.X_OK))

    def test_each_png_has_the_size_of_its_folder(self):
        for side in SIZES:
            with self.subTest(side=side):
                self.assertEqual(png_size(self.path(f"share/icons/hicolor/{side}x{side}/apps/{APP_ID}.png")),
                                 (side, side))

    def test_the_symbolic_icon_is_of_one_colour(self):
        with open(self.path(f"share/icons/hicolor/symbolic/apps/{APP_ID}-symbolic.svg"), encoding="utf-8") as f:
            colours = set(re.findall(r'(?:fill|stroke)="(#[0-9a-fA-F]{3,6})"', f.read()))
        self.assertEqual(len(colours), 1, colours)

    def test_the_program_finds_its_libraries_under_the_prefix_and_says_the_projects_version(self):
        answer = subprocess.run([self.path("bin/norvanebar"), "--version"], capture_output=True, text=True,
                                timeout=10, env={"PATH": "/usr/bin:/bin"})
        self.assertEqual((answer.returncode, answer.stdout), (0, f"NorvaneBar {os.environ['NORVANEBAR_VERSION']}\n"))

    def test_the_desktop_entry_starts_the_program_for_the_sign_in_scheme(self):
        path = self.path(f"share/applications/{APP_ID}.desktop")
        checked = subprocess.run(["desktop-file-validate", path], capture_output=True, text=True, timeout=30)
        self.assertEqual((checked.returncode, checked.stdout + checked.stderr), (0, ""))
        entry = configparser.ConfigParser(interpolation=None)
        entry.optionxform = str
        entry.read(path, encoding="utf-8")
        group = entry["Desktop Entry"]
        self.assertEqual(group["Exec"], "norvanebar %u")
        self.assertEqual(group["Icon"], APP_ID)
        self.assertEqual(group["Name"], "NorvaneBar")
        self.assertEqual(group["MimeType"], "x-scheme-handler/com.norvanebar.app;")
        self.assertEqual(group["Terminal"], "false")

    def test_the_metainfo_is_valid_and_names_the_desktop_entry_and_the_version(self):
        path = self.path(f"share/metainfo/{APP_ID}.metainfo.xml")
        checked = subprocess.run(["appstreamcli", "validate", "--no-net", path], capture_output=True, text=True,
                                 timeout=60)
        self.assertEqual(checked.returncode, 0, checked.stdout + checked.stderr)
        component = ElementTree.parse(path).getroot()
        self.assertEqual(component.get("type"), "desktop-application")
        self.assertEqual(component.findtext("id"), APP_ID)
        self.assertEqual(component.findtext("launchable"), f"{APP_ID}.desktop")
        self.assertEqual([release.get("version") for release in component.iter("release")],
                         [os.environ["NORVANEBAR_VERSION"]])
        self.assertTrue(all(shot.findtext("caption") for shot in component.iter("screenshot")))


if __name__ == "__main__":
    unittest.main(verbosity=2)
