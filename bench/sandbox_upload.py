"""Attachment upload benchmark of norvane-sandbox: one file of 1 GiB sent with
`curl -F attachment=@FILE` to a demo task, while the server's resident memory is watched.

  peak RSS growth    VmHWM during the upload (reset through clear_refs just before) minus VmRSS
                     before it; the upload is streamed to disk, so the target is under 32 MiB
  throughput         the file's size over curl's total time, on loopback

Prints one figure a line as "name value unit". Exits 1 when the upload fails, the stored file
differs in size, or the growth misses the target.

usage: sandbox_upload.py SANDBOX [--size-mib N] [--target-mib N]"""

import argparse
import json
import os
import signal
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request

FIRST_WORKSPACE = "9015000001"
CHUNK = 1024 * 1024


def status_kib(pid, field):
    with open(f"/proc/{pid}/status", encoding="ascii") as status:
        for line in status:
            if line.startswith(field + ":"):
                return int(line.split()[1])
    raise KeyError(field)


def start_sandbox(binary, data):
    process = subprocess.Popen([binary, "--port", "0", "--seed", "demo", "--data", data],
                               stdout=subprocess.PIPE, text=True)
    base, token = None, None
    for line in process.stdout:
        words = line.split()
        if words[0] == "listening":
            base = words[1]
        elif words[0] == "token" and token is None:
            token = words[1]
        elif words[0] == "ready":
            return process, base, token
    raise RuntimeError("norvane-sandbox did not get ready")


def first_task(base, token):
    request = urllib.request.Request(f"{base}/api/v2/team/{FIRST_WORKSPACE}/task",
                                     headers={"Authorization": token})
    with urllib.request.urlopen(request) as answer:
        return json.load(answer)["tasks"][0]["id"]


def write_file(path, size):
    # Random bytes, so that nothing on the way can make the upload cheaper by compressing it.
    with open(path, "wb") as file:
        for _ in range(size // CHUNK):
            file.write(os.urandom(CHUNK))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("sandbox")
    parser.add_argument("--size-mib", type=int, default=1024)
    parser.add_argument("--target-mib", type=int, default=32)
    arguments = parser.parse_args()
    size = arguments.size_mib * CHUNK

    with tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as folder:
        source = os.path.join(folder, "upload.bin")
        data = os.path.join(folder, "data")
        write_file(source, size)
        process, base, token = start_sandbox(arguments.sandbox, data)
        try:
            task = first_task(base, token)
            rss_before = status_kib(process.pid, "VmRSS")
            # Writing 5 to clear_refs resets VmHWM, so the peak is the upload's own.
            with open(f"/proc/{process.pid}/clear_refs", "w", encoding="ascii") as refs:
                refs.write("5")
            sampled_peak = [rss_before]
            done = threading.Event()

            def sample():
                while not done.wait(0.02):
                    sampled_peak[0] = max(sampled_peak[0], status_kib(process.pid, "VmRSS"))

            sampler = threading.Thread(target=sample)
            sampler.start()
            started = time.monotonic()
            curl = subprocess.run(
                ["curl", "-s", "-o", os.path.join(folder, "answer.json"), "-w", "%{http_code}",
                 "-H", f"Authorization: {token}", "-F", f"attachment=@{source}",
                 f"{base}/api/v2/task/{task}/attachment"],
                capture_output=True, text=True, check=False)
            seconds = time.monotonic() - started
            done.set()
            sampler.join()
            peak = max(status_kib(process.pid, "VmHWM"), sampled_peak[0])
            stored = [os.path.getsize(os.path.join(data, name)) for name in os.listdir(data)]
        finally:
            process.send_signal(signal.SIGTERM)
            process.wait(timeout=30)

    growth_mib = (peak - rss_before) / 1024
    print(f"sandbox_upload_size {size} bytes")
    print(f"sandbox_upload_status {curl.stdout or 'none'} http")
    print(f"sandbox_upload_stored {max(stored, default=0)} bytes")
    print(f"sandbox_upload_time {seconds:.2f} s")
    print(f"sandbox_upload_throughput {size / CHUNK / seconds:.1f} MiB/s")
    print(f"sandbox_rss_before {rss_before / 1024:.1f} MiB")
    print(f"sandbox_rss_peak {peak / 1024:.1f} MiB")
    print(f"sandbox_rss_growth {growth_mib:.1f} MiB")
    print(f"sandbox_rss_growth_target {arguments.target_mib} MiB")
    ok = curl.stdout == "200" and stored == [size] and growth_mib < arguments.target_mib
    print(f"sandbox_upload_result {'pass' if ok else 'fail'}")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
