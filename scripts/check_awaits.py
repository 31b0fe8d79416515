#!/usr/bin/env python3
"""Refuses a co_await that awaits a temporary.

GCC 12 destroys temporaries twice when a coroutine call stands inside a co_await expression (a
default argument, a braced record, a capturing lambda: ASan sees a heap use-after-free). So a
co_await awaits `std::move(` of a named task, a plain name, or one of the awaitables below, which
are no coroutine of ours: the task is made as a named local first.

    scripts/check_awaits.py            the project's C++ sources (tests/data left out)
    scripts/check_awaits.py PATH...    these files, or the C++ files below these folders

Prints each refused co_await as `file:line: co_await <expression>` and exits with 1 when there is one.
"""

import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
PROJECT_FOLDERS = ["src", "tests", "tools", "bench"]
LEFT_OUT = os.path.join(ROOT, "tests", "data")
EXTENSIONS = (".h", ".cpp")

ALLOWED = [
    re.compile(r"std::move\("),
    # A plain name: a task or an awaitable made before.
    re.compile(r"[A-Za-z_]\w*\b(?!\s*(?:\(|\.|->|::|\[|<|\{))"),
    # QCoro's timer and signal helpers, over a duration or an object and its signal.
    re.compile(r"QCoro::sleepFor\("),
    re.compile(r"QCoro::sleepUntil\("),
    re.compile(r"qCoro\("),
    # A D-Bus call gives a QDBusPendingCall, which QCoro awaits; no coroutine is called.
    re.compile(r"[\w:]+(?:\(\))?(?:\.|->)asyncCall\("),
]

CO_AWAIT = re.compile(r"\bco_await\b")
# Comments, then string and character literals (raw strings first), in one pass.
CODE_NOISE = re.compile(
    r"//[^\n]*"
    r"|/\*.*?\*/"
    r'|R"([^(\s]{0,16})\(.*?\)\1"'
    r'|"(?:\\.|[^"\\\n])*"'
    r"|'(?:\\.|[^'\\\n])*'",
    re.DOTALL,
)


def blanked(text):
    """The text with comments and literals replaced by blanks, lines kept where they were."""
    return CODE_NOISE.sub(lambda match: re.sub(r"[^\n]", " ", match.group(0)), text)


def refused(path):
    with open(path, encoding="utf-8", errors="replace") as source:
        code = blanked(source.read())
    for match in CO_AWAIT.finditer(code):
        rest = code[match.end():].lstrip()
        if not any(allowed.match(rest) for allowed in ALLOWED):
            line = code.count("\n", 0, match.start()) + 1
            expression = " ".join(re.split(r";|\{\s*\n", rest, maxsplit=1)[0].split())
            yield f"{os.path.relpath(path)}:{line}: co_await {expression}"


def sources(paths):
    for path in paths:
        if os.path.isfile(path):
            yield path
            continue
        for folder, subfolders, files in os.walk(path):
            subfolders[:] = sorted(sub for sub in subfolders if os.path.join(folder, sub) != LEFT_OUT)
            yield from (os.path.join(folder, name) for name in sorted(files) if name.endswith(EXTENSIONS))


def main(arguments):
    paths = arguments or [os.path.join(ROOT, folder) for folder in PROJECT_FOLDERS]
    findings = [finding for path in sources(paths) for finding in refused(path)]
    for finding in findings:
        print(finding)
    if findings:
        print(f"{len(findings)} co_await expressions await a temporary: make the task a named local, "
              "then co_await std::move(task)")
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
