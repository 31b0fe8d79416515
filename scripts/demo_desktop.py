"""`make run` on a desktop: starts norvane-sandbox with demo data and NorvaneBar aimed at it through
a throw-away demo profile, tells which token to paste, and stops the sandbox when NorvaneBar ends.

usage: demo_desktop.py NORVANEBAR NORVANE_SANDBOX PROFILE_FOLDER"""

import os
import subprocess
import sys

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "harness"))
from demo_sandbox import Sandbox, write_profile  # noqa: E402


def main(binary, sandbox_binary, profile):
    config_home = os.path.join(profile, "config")
    sandbox = Sandbox(sandbox_binary, os.path.join(profile, "sandbox.log"))
    try:
        write_profile(config_home, sandbox)
        print(f"norvane-sandbox: {sandbox.web} (its token page: {sandbox.web}/settings/apps)")
        for token, _, name in sandbox.tokens:
            print(f"  demo token of {name}: {token}")
        print("Paste one into NorvaneBar's popover (click its tray icon). Quit it from the icon's menu.")
        environment = dict(os.environ, XDG_CONFIG_HOME=config_home)
        return subprocess.run([binary], env=environment).returncode
    finally:
        sandbox.stop()


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:4]))
