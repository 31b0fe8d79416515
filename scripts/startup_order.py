"""Writes the functions of NorvaneBar's libraries that run while it starts and rests, signed in to
norvane-sandbox with its popover never opened, one mangled name a line, into data/startup-order/:
the linker lays them out together (cmake/StartupOrder.cmake). Runs the program under callgrind,
which records every function executed. Run inside `desktop-session run --tray sni`:

  tests/harness/desktop-session run --tray sni -- /usr/bin/python3 scripts/startup_order.py \\
      build/main/src/desktop/norvanebar build/main/tools/sandbox/norvane-sandbox"""

import os
import re
import signal
import subprocess
import sys
import tempfile
import time

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
sys.path.insert(0, os.path.join(ROOT, "bench"))
sys.path.insert(0, os.path.join(ROOT, "tests", "harness"))
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from tray_bench import Subject, sign_in  # noqa: E402

LIBRARIES = {"libnorvanebar_core.so": "core.txt", "libnorvanebar_platform.so": "platform.txt"}
# Slow under callgrind: long enough for the start, the sign-in's token and the due count.
SECONDS = 45


def executed_functions(profile):
    """{object file: set of mangled function names} from a callgrind profile with compressed names."""
    objects, functions, executed = {}, {}, {}
    current = None
    for line in open(profile, encoding="utf-8", errors="replace"):
        match = re.match(r"^(ob|cob|fn|cfn)=\((\d+)\)(?: (.*))?$", line.rstrip("\n"))
        if not match:
            continue
        kind, ident, name = match.groups()
        table = objects if kind in ("ob", "cob") else functions
        if name:
            table[ident] = name
        if kind == "ob":
            current = objects[ident]
        elif kind == "fn":
            # A cycle's or a recursion's copies are named name'2, name'3…
            executed.setdefault(current, set()).add(functions[ident].split("'")[0])
    return executed


def main():
    program, sandbox_program = sys.argv[1], sys.argv[2]
    with tempfile.TemporaryDirectory(prefix="norvanebar-startup-order-") as home:
        sandbox = Sandbox(sandbox_program, os.path.join(home, "sandbox.log"))
        try:
            os.environ["XDG_CONFIG_HOME"] = home
            app = Subject("NorvaneBar", program, "com.norvanebar.NorvaneBar")
            sign_in(app, sandbox, write_profile(home, sandbox))
            app.stop()
            profile = os.path.join(home, "callgrind.out")
            run = subprocess.Popen(["valgrind", "--tool=callgrind", "--demangle=no", f"--callgrind-out-file={profile}",
                                    program], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            time.sleep(SECONDS)
            run.send_signal(signal.SIGTERM)
            run.wait(60)
            executed = executed_functions(profile)
        finally:
            sandbox.stop()
    for path, names in executed.items():
        listed = LIBRARIES.get(os.path.basename(path))
        if listed:
            with open(os.path.join(ROOT, "data", "startup-order", listed), "w", encoding="utf-8") as out:
                out.writelines(f"{name}\n" for name in sorted(names) if re.fullmatch(r"[\w.$]+", name))
            print(f"{listed}: {len(names)} functions")


if __name__ == "__main__":
    main()
