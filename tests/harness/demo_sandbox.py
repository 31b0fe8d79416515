"""The demo profile of `make run`: a norvane-sandbox with demo data, and a settings file that points
NorvaneBar at it, in a throw-away configuration folder so the user's own settings stay untouched."""

import json
import os
import subprocess
import urllib.request


class Sandbox:
    def __init__(self, binary, log_path, admin=False, data=None):
        """With `admin`, the test endpoints are on, so that `add_fault` can stage failures and
        `requests` reads the request log; uploaded attachments are written to the folder `data`
        when one is given."""
        self.log = open(log_path, "w", encoding="utf-8")
        arguments = [binary, "--port", "0", "--seed", "demo"] + (["--admin"] if admin else [])
        arguments += ["--data", data] if data else []
        self.process = subprocess.Popen(arguments, stdout=subprocess.PIPE, stderr=self.log, text=True)
        self.api = self.web = None
        self.tokens = []  # (token, user id, display name)
        for line in self.process.stdout:
            self.log.write(line)
            words = line.split()
            if not words:
                continue
            if words[0] == "api":
                self.api = words[1]
            elif words[0] == "web":
                self.web = words[1]
            elif words[0] == "token":
                self.tokens.append((words[1], words[3], " ".join(words[4:])))
            elif words[0] == "ready":
                break
        if not (self.api and self.web and self.tokens):
            self.stop()
            raise RuntimeError(f"norvane-sandbox did not start; see {log_path}")

    def add_fault(self, rule):
        """Adds a fault rule (see tools/sandbox/README.md), such as a delay or a refusal."""
        request = urllib.request.Request(self.web + "/_sandbox/faults", data=json.dumps(rule).encode("utf-8"),
                                         headers={"Content-Type": "application/json"}, method="POST")
        with urllib.request.urlopen(request, timeout=10) as answer:
            answer.read()

    def requests(self):
        """The request log: method, path and the parts of each request, oldest first."""
        with urllib.request.urlopen(self.web + "/_sandbox/requests", timeout=10) as answer:
            return json.load(answer)["requests"]

    def stop(self):
        if self.process.poll() is None:
            self.process.terminate()
            self.process.wait(10)
        self.log.close()


def write_profile(config_home, sandbox, **settings_to_set):
    """Settings that aim NorvaneBar at the sandbox, with `settings_to_set` besides; nothing else is
    set."""
    folder = os.path.join(config_home, "NorvaneBar")
    os.makedirs(folder, exist_ok=True)
    path = os.path.join(folder, "settings.json")
    settings = {}
    if os.path.exists(path):
        with open(path, encoding="utf-8") as f:
            settings = json.load(f)
    settings["serviceAPIBaseURL"] = sandbox.api
    settings["serviceWebBaseURL"] = sandbox.web
    settings.update(settings_to_set)
    with open(path, "w", encoding="utf-8") as f:
        json.dump(settings, f, indent=4, sort_keys=True)
    return path
