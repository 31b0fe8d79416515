"""Attachment upload benchmark: one file of 1 GiB sent with `curl -F attachment=@FILE` to a demo
task of norvane-sandbox, while the server's resident memory is watched; then, with --client, the
same file sent by NorvaneBar's streaming upload path to the same sandbox. Curl and the client take
turns for --rounds rounds, and the medians are compared, since the disk's write-back makes single
runs wander.

  peak RSS growth    the sandbox's VmHWM during curl's upload (reset through clear_refs just before)
                     minus VmRSS before it; the upload is streamed to disk, so the target is under
                     32 MiB
  throughput         the file's size over curl's median time, on loopback
  native/curl        the client's median wall time over curl's (target at most 2.0: the client writes
                     a multipart body file before it sends), the client's own largest peak RSS
                     growth (target at most 16 MiB), and no temporary file left behind

Prints one figure a line as "name value unit". Exits 1 when an upload fails, a stored file differs
in size, or a figure misses its target.

usage: sandbox_upload.py SANDBOX [--client NATIVE_UPLOAD_CLIENT] [--rounds N] [--size-mib N]"""

import argparse
import json
import os
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time
import urllib.request

from random_file import MIB, write_random_file

FIRST_WORKSPACE = "9015000001"


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



def stored_sizes(data):
    """The sizes of the files the sandbox stored, which are then removed to keep the disk free."""
    sizes = []
    for name in os.listdir(data):
        path = os.path.join(data, name)
        sizes.append(os.path.getsize(path))
        os.remove(path)
    return sizes


def curl_upload(process, base, token, task, source, folder):
    """Curl's wall time and the sandbox's peak RSS growth in KiB, or None if the upload failed."""
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
    return (seconds, peak - rss_before) if curl.stdout == "200" else None


def client_upload(client, base, token, task, source, folder):
    """The client's figures as a dict of name to value, or None when the upload failed."""
    temporary = tempfile.mkdtemp(prefix="client-tmp-", dir=folder)
    result = subprocess.run([client, f"{base}/api/v2", token, str(task), source],
                            env=dict(os.environ, TMPDIR=temporary), capture_output=True, text=True, check=False)
    sys.stderr.write(result.stderr)
    if result.returncode != 0:
        return None
    figures = {line.split()[0]: float(line.split()[1]) for line in result.stdout.splitlines()
               if line.split()[0] != "native_attachment_id"}
    figures["native_temporary_files_left"] = len(os.listdir(temporary))
    return figures


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("sandbox")
    parser.add_argument("--client")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--size-mib", type=int, default=1024)
    parser.add_argument("--target-mib", type=int, default=32)
    parser.add_argument("--client-ratio-target", type=float, default=2.0)
    parser.add_argument("--client-target-mib", type=int, default=16)
    arguments = parser.parse_args()
    size = arguments.size_mib * MIB

    curl_runs, client_runs, ok = [], [], True
    with tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as folder:
        source = os.path.join(folder, "upload.bin")
        data = os.path.join(folder, "data")
        write_random_file(source, size)
        process, base, token = start_sandbox(arguments.sandbox, data)
        try:
            task = first_task(base, token)
            for _ in range(arguments.rounds):
                curl_runs.append(curl_upload(process, base, token, task, source, folder))
                ok = ok and curl_runs[-1] is not None and stored_sizes(data) == [size]
                if arguments.client:
                    client_runs.append(client_upload(arguments.client, base, token, task, source, folder))
                    # Besides its own copy, the client's small warm-up upload.
                    ok = ok and client_runs[-1] is not None and sorted(stored_sizes(data))[-1:] == [size]
        finally:
            process.send_signal(signal.SIGTERM)
            process.wait(timeout=30)

    if not ok:
        print("sandbox_upload_result fail")
        return 1
    curl_seconds = statistics.median(seconds for seconds, _ in curl_runs)
    growth_mib = max(growth for _, growth in curl_runs) / 1024
    print(f"sandbox_upload_size {size} bytes")
    print(f"sandbox_upload_rounds {arguments.rounds}")
    print(f"sandbox_upload_time {curl_seconds:.2f} s (median of curl)")
    print(f"sandbox_upload_throughput {size / MIB / curl_seconds:.1f} MiB/s")
    print(f"sandbox_rss_growth {growth_mib:.1f} MiB (target under {arguments.target_mib})")
    ok = growth_mib < arguments.target_mib
    if client_runs:
        seconds = statistics.median(run["native_upload_time"] for run in client_runs)
        ratio = seconds / curl_seconds
        client_growth = max(run["native_rss_growth"] for run in client_runs)
        left = sum(run["native_temporary_files_left"] for run in client_runs)
        print(f"native_upload_time {seconds:.2f} s (median)")
        print(f"native_upload_time_ratio_to_curl {ratio:.2f} x (target at most {arguments.client_ratio_target})")
        print(f"native_rss_before {max(run['native_rss_before'] for run in client_runs):.1f} MiB")
        print(f"native_rss_growth {client_growth:.1f} MiB (target at most {arguments.client_target_mib})")
        print(f"native_temporary_files_left {left} files")
        ok = (ok and ratio <= arguments.client_ratio_target and client_growth <= arguments.client_target_mib
              and left == 0)
    print(f"sandbox_upload_result {'pass' if ok else 'fail'}")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
