"""Attachment upload benchmark: one file of 1 GiB sent with `curl -F attachment=@FILE` to a demo
task of norvane-sandbox, while the server's resident memory is watched; then, with --client, the
same file sent by NorvaneBar's streaming upload path to the same sandbox.

  peak RSS growth    VmHWM during the upload (reset through clear_refs just before) minus VmRSS
                     before it; the upload is streamed to disk, so the target is under 32 MiB
  throughput         the file's size over curl's total time, on loopback
  native/curl        the client's wall time over curl's (target at most 2.0: the client writes a
                     multipart body file before it sends), the client's own peak RSS growth
                     (target at most 16 MiB), and no temporary file left behind

Prints one figure a line as "name value unit". Exits 1 when the upload fails, the stored file
differs in size, or the growth misses the target.

usage: sandbox_upload.py SANDBOX [--client NATIVE_UPLOAD_CLIENT] [--size-mib N] [--target-mib N]"""

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


def run_client(client, base, token, task, source, folder):
    """The native client's figures as a dict of name to value, or None when the upload failed."""
    temporary = os.path.join(folder, "client-tmp")
    os.mkdir(temporary)
    result = subprocess.run([client, f"{base}/api/v2", token, str(task), source],
                            env=dict(os.environ, TMPDIR=temporary), capture_output=True, text=True, check=False)
    sys.stderr.write(result.stderr)
    if result.returncode != 0:
        return None
    figures = {line.split()[0]: line.split()[1] for line in result.stdout.splitlines()}
    figures["native_temporary_dir_entries"] = str(len(os.listdir(temporary)))
    return figures


def report_client(native, curl_seconds, arguments):
    if native is None:
        print("native_upload_result fail")
        return False
    ratio = float(native["native_upload_time"]) / curl_seconds
    growth = float(native["native_rss_growth"])
    for name in ("native_upload_time", "native_rss_before", "native_rss_peak", "native_rss_growth"):
        unit = "s" if name.endswith("time") else "MiB"
        print(f"{name} {native[name]} {unit}")
    print(f"native_upload_time_ratio_to_curl {ratio:.2f} x (target at most {arguments.client_ratio_target})")
    print(f"native_rss_growth_target {arguments.client_target_mib} MiB")
    print(f"native_temporary_files_left {native['native_temporary_dir_entries']} files")
    print(f"native_upload_stored {native['native_upload_stored']} bytes")
    ok = (native["native_upload_stored"] == str(arguments.size_mib * CHUNK) and ratio <= arguments.client_ratio_target and growth <= arguments.client_target_mib
          and native["native_temporary_dir_entries"] == "0")
    print(f"native_upload_result {'pass' if ok else 'fail'}")
    return ok


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("sandbox")
    parser.add_argument("--size-mib", type=int, default=1024)
    parser.add_argument("--target-mib", type=int, default=32)
    parser.add_argument("--client")
    parser.add_argument("--client-ratio-target", type=float, default=2.0)
    parser.add_argument("--client-target-mib", type=int, default=16)
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
            native = run_client(arguments.client, base, token, task, source, folder) if arguments.client else None
            if native is not None:
                # Besides curl's file and the client's small warm-up, the client's own copy.
                sizes = [os.path.getsize(os.path.join(data, name)) for name in os.listdir(data)]
                native["native_upload_stored"] = str(size if sizes.count(size) == 2 else 0)
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
    if native is not None:
        ok = report_client(native, seconds, arguments) and ok
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
