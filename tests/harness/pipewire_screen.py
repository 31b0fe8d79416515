#!/usr/bin/python3
"""A Wayland screen without a compositor, for the tests of PipeWire capture: a private PipeWire and
WirePlumber in the session's runtime folder ($XDG_RUNTIME_DIR/pipewire-0) and a fake screen, a video
node "fakescreen" that gst-launch-1.0 feeds with videotestsrc's SMPTE bars, BGRx 1280×720 at 30
frames a second.

Once the node is there it prints its id on a line of its own, then runs until SIGTERM or SIGINT (or
until a piece dies), and stops its pieces, last started first. Their output goes to
DIR/pipewire.log, DIR/wireplumber.log and DIR/fakescreen.log, DIR being the first argument (the
runtime folder by default).

The node suspends neither when idle nor after a consumer leaves
(node.pause-on-idle=false, session.suspend-timeout-seconds=0): with WirePlumber's defaults a consumer
that comes soon after another has left gets no frames.

Usage: pipewire_screen.py [LOG_DIR]
"""

import json
import os
import signal
import subprocess
import sys
import time

NODE_NAME = "fakescreen"
TIMEOUT = 10  # seconds each piece may take to come up


def pw_dump():
    """The objects pw-dump lists; it sometimes prints more than one JSON array."""
    result = subprocess.run(["pw-dump"], capture_output=True, text=True, timeout=TIMEOUT)
    objects, decoder, text, position = [], json.JSONDecoder(), result.stdout, 0
    while True:
        while position < len(text) and text[position].isspace():
            position += 1
        if position >= len(text):
            return objects
        value, position = decoder.raw_decode(text, position)
        objects.extend(value)


def node_id(name):
    for item in pw_dump():
        props = (item.get("info") or {}).get("props") or {}
        if item.get("type") == "PipeWire:Interface:Node" and props.get("node.name") == name:
            return item["id"]
    return None


def wait_for(what, ready, pieces):
    deadline = time.monotonic() + TIMEOUT
    while time.monotonic() < deadline:
        value = ready()
        if value is not None and value is not False:
            return value
        for name, process in pieces:
            if process.poll() is not None:
                raise RuntimeError("%s exited before %s" % (name, what))
        time.sleep(0.025)
    raise RuntimeError("no %s within %d s" % (what, TIMEOUT))


def main():
    runtime = os.environ["XDG_RUNTIME_DIR"]
    logs = sys.argv[1] if len(sys.argv) > 1 else runtime
    pieces = []
    stop = []
    signal.signal(signal.SIGTERM, lambda *_: stop.append(True))
    signal.signal(signal.SIGINT, lambda *_: stop.append(True))

    def start(name, command):
        log = open(os.path.join(logs, name + ".log"), "ab")
        pieces.append((name, subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=log, stderr=log)))

    try:
        start("pipewire", ["pipewire"])
        socket_path = os.path.join(runtime, "pipewire-0")
        wait_for("the socket " + socket_path, lambda: os.path.exists(socket_path), pieces)
        start("wireplumber", ["wireplumber"])
        start(NODE_NAME, [
            "gst-launch-1.0", "-q", "videotestsrc", "is-live=true", "pattern=smpte", "!",
            "video/x-raw,format=BGRx,width=1280,height=720,framerate=30/1", "!",
            "pipewiresink", "mode=provide",
            "stream-properties=p,media.class=Video/Source,node.name=%s,node.pause-on-idle=false,"
            "session.suspend-timeout-seconds=0" % NODE_NAME])
        print(wait_for("node " + NODE_NAME, lambda: node_id(NODE_NAME), pieces), flush=True)
        while not stop and all(process.poll() is None for _name, process in pieces):
            time.sleep(0.2)
    finally:
        for _name, process in reversed(pieces):
            process.terminate()
            try:
                process.wait(timeout=3)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
    return 0 if stop else 1


if __name__ == "__main__":
    sys.exit(main())
