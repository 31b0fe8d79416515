"""The composer's benchmark: NorvaneBar signed in to norvane-sandbox with a list of 30 custom fields
chosen, its popover showing the full composer, beside the bare Qt Quick tray program built in the
same tree (run inside `desktop-session run --tray sni`).

  toggle -> frame, warm     D-Bus TogglePopover until the popover reports its first frame drawn
  memory, composer shown    resident and anonymous memory with the popover open

usage: composer_bench.py NORVANEBAR BASELINE SANDBOX [--runs N]"""

import argparse
import json
import os
import statistics
import sys
import tempfile
import time
import urllib.request

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "tests", "harness"))
from demo_sandbox import Sandbox, write_profile  # noqa: E402
from norvanebar_app import wait_until  # noqa: E402
from tray_bench import Subject, ratio, sign_in, summary  # noqa: E402

NORTHWIND = "9015000001"
INBOX = "901500001001"  # a field of each type the composer edits
FIELD_COUNT = 30
# The tray bench's figure for the signed-out popover, the reference this one is read against.
SIGNED_OUT_RSS_MB = 53


def thirty_fields(sandbox):
    """The Inbox list's editable fields repeated to 30, each with an id and a name of its own."""
    request = urllib.request.Request(f"{sandbox.api}/list/{INBOX}/field",
                                     headers={"Authorization": sandbox.tokens[0][0]})
    with urllib.request.urlopen(request, timeout=10) as answer:
        fields = [f for f in json.load(answer)["fields"] if f["type"] != "formula"]
    many = []
    for index in range(FIELD_COUNT):
        field = dict(fields[index % len(fields)])
        field["id"] = f"{field['id'][:-4]}{index:04d}"
        field["name"] = f"{field['name']} {index + 1}"
        many.append(field)
    return many


def requested(sandbox, path):
    with urllib.request.urlopen(f"{sandbox.web}/_sandbox/requests", timeout=10) as answer:
        return any(r["path"] == path for r in json.load(answer)["requests"])


def measure_shown(subject, results, warm_toggles):
    """Warm openings of the closed popover, then the memory with it open."""
    for _ in range(warm_toggles):
        time.sleep(0.05)
        results["warm"].append(subject.toggle_until(True))
        subject.toggle_until(False)
    subject.toggle_until(True)
    time.sleep(0.5)
    rss, anon = subject.memory_kib()
    results["rss"].append(rss)
    results["anon"].append(anon)


def composer_shown(binary, sandbox_binary, runs, warm_toggles=10):
    """Warm toggle times and the memory with the composer shown, over `runs` launches."""
    results = {"warm": [], "rss": [], "anon": []}
    for _ in range(runs):
        with tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as home:
            sandbox = Sandbox(sandbox_binary, os.path.join(home, "sandbox.log"), admin=True)
            try:
                sandbox.add_fault({"method": "GET", "path": f"/api/v2/list/{INBOX}/field", "times": -1,
                                   "status": 200, "body": {"fields": thirty_fields(sandbox)}})
                os.environ["XDG_CONFIG_HOME"] = home
                settings = os.path.join(home, "NorvaneBar", "settings.json")
                write_profile(home, sandbox, lastLocation={"workspaceID": NORTHWIND, "listID": INBOX,
                                                           "listName": "Inbox", "pathDescription": "Product"})
                app = Subject("NorvaneBar", binary, "com.norvanebar.NorvaneBar")
                sign_in(app, sandbox, settings)
                wait_until(lambda: requested(sandbox, f"/api/v2/list/{INBOX}/field"), 20, "the list's fields")
                time.sleep(1.0)  # the chips of the answer are laid out
                app.toggle_until(True)  # the first opening after the sign-in draws the composer anew
                app.toggle_until(False)
                measure_shown(app, results, warm_toggles)
                app.stop()
            finally:
                sandbox.stop()
    return results


def bare_popover_shown(binary, runs, warm_toggles=10):
    results = {"warm": [], "rss": [], "anon": []}
    for _ in range(runs):
        base = Subject("bare tray", binary, "com.norvanebar.BareTrayBaseline")
        base.start()
        time.sleep(1.0)
        base.toggle_until(True)
        base.toggle_until(False)
        measure_shown(base, results, warm_toggles)
        base.stop()
    return results


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("norvanebar")
    parser.add_argument("baseline")
    parser.add_argument("sandbox")
    parser.add_argument("--runs", type=int, default=3)
    args = parser.parse_args()
    mine = composer_shown(args.norvanebar, args.sandbox, args.runs)
    base = bare_popover_shown(args.baseline, args.runs)

    print(f"composer benchmarks: median [min – max]; {args.runs} launches, {FIELD_COUNT} custom fields")
    print(f"{'measure':28} {'NorvaneBar composer':32} {'bare tray popover':32} ratio   target")
    rows = [
        ("toggle -> frame, warm", "warm", "ms", 1000, "≤ 5 ms"),
        ("resident memory, shown", "rss", "MB", 1 / 1024, "≤ 70 MB"),
        ("anonymous memory, shown", "anon", "MB", 1 / 1024, ""),
    ]
    for label, key, unit, scale, target in rows:
        print(f"{label:28} {summary(mine[key], unit, scale):32} {summary(base[key], unit, scale):32} "
              f"{ratio(mine[key], base[key])}  {target}")
    rss_mb = statistics.median(mine["rss"]) / 1024
    print(f"resident memory, shown, against the signed-out popover's {SIGNED_OUT_RSS_MB} MB: "
          f"{rss_mb / SIGNED_OUT_RSS_MB:.2f}×")


if __name__ == "__main__":
    sys.exit(main())
