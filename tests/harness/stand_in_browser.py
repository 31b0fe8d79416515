"""The default browser of a desktop session, played by a script: given the address of a sign-in page,
it asks for it without following the redirect, checks that the answer sends it to NorvaneBar's scheme,
and asks the desktop to open that address (`gio open`, which starts the scheme's handler) as a browser
does when a person agrees. Each address it is given is written as a JSON line to the log.

NorvaneBar opens web pages through `xdg-open`, or, where none is installed, through $BROWSER; `use`
puts this script in both places for the programs started afterwards.

usage: stand_in_browser.py URL   (with NORVANEBAR_BROWSER_LOG set; NORVANEBAR_BROWSER_IDLE=1 only
                                  writes the address down, as a person who never signs in)"""

import json
import os
import stat
import subprocess
import sys
import urllib.error
import urllib.request

SCHEME = "com.norvanebar.app:"
LOG = "NORVANEBAR_BROWSER_LOG"
IDLE = "NORVANEBAR_BROWSER_IDLE"


class _NoRedirect(urllib.request.HTTPRedirectHandler):
    def redirect_request(self, *arguments):
        return None


def callback_of(url):
    """The address the sign-in page sends the browser on to."""
    try:
        with urllib.request.build_opener(_NoRedirect).open(url, timeout=30) as answer:
            raise RuntimeError(f"the sign-in page answered {answer.status} without a redirect")
    except urllib.error.HTTPError as redirect:
        if redirect.code not in (301, 302, 303, 307, 308):
            raise
        return redirect.headers["Location"]


def use(folder, log_path, environment=os.environ):
    """Makes this script the session's browser for the programs `environment` starts: an `xdg-open`
    in `folder`, first on PATH, and BROWSER."""
    os.makedirs(folder, exist_ok=True)
    opener = os.path.join(folder, "xdg-open")
    with open(opener, "w", encoding="utf-8") as file:
        file.write(f'#!/bin/sh\nexec /usr/bin/python3 {os.path.abspath(__file__)} "$@"\n')
    os.chmod(opener, os.stat(opener).st_mode | stat.S_IXUSR | stat.S_IXGRP | stat.S_IXOTH)
    environment["PATH"] = folder + os.pathsep + environment.get("PATH", "")
    environment["BROWSER"] = opener
    environment[LOG] = log_path


def visits(log_path):
    """What the browser was asked to open and did, in order."""
    if not os.path.exists(log_path):
        return []
    with open(log_path, encoding="utf-8") as log:
        return [json.loads(line) for line in log if line.strip()]


def main(url):
    visit = {"url": url}
    try:
        if os.environ.get(IDLE) != "1":
            visit["callback"] = callback_of(url)
            if not visit["callback"].startswith(SCHEME):
                raise RuntimeError(f"the sign-in page sent the browser to {visit['callback']}")
            visit["gio"] = subprocess.run(["gio", "open", visit["callback"]], check=False).returncode
    except Exception as error:  # written down for the test, which then fails on it
        visit["error"] = str(error)
    with open(os.environ[LOG], "a", encoding="utf-8") as log:
        log.write(json.dumps(visit) + "\n")
    return 0 if "error" not in visit and visit.get("gio", 0) == 0 else 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
