"""R2 upload benchmark: one file of 100 MiB put into a bucket of the S3 server of tools/s3server
(@20minutes/s3rver, which verifies signatures) by `curl --aws-sigv4 'aws:amz:auto:s3'`, and by
NorvaneBar's CloudflareR2Provider (bench's r2-upload-client). Curl and the client take turns for
--rounds rounds, and the medians are compared.

  curl               sha256sum of the file (the signature needs the payload's digest, which curl
                     is handed in x-amz-content-sha256), then curl's signed PUT
  r2/curl            the client's median wall time (reading the file, hashing, signing, sending) over
                     curl's (target at most 1.3)
  r2_rss_growth      the client's peak resident memory growth during its upload: the whole file is
                     read into memory, so about the file's size is expected (target under twice it)

Each stored object is checked for its size, then removed. Prints one figure a line as
"name value unit". Exits 1 when an upload fails or a figure misses its target.

usage: r2_upload.py R2_UPLOAD_CLIENT [--rounds N] [--size-mib N]"""

import argparse
import os
import secrets
import statistics
import subprocess
import sys
import tempfile
import time

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "tests", "harness"))
from storage_stand_ins import start_s3server, stop_s3server  # noqa: E402
from random_file import MIB, write_random_file  # noqa: E402

BUCKET = "bench"



def stored_sizes(folder):
    """The sizes of the objects stored, which are then removed to keep the disk free."""
    sizes = []
    bucket = os.path.join(folder, BUCKET)
    for name in os.listdir(bucket):
        path = os.path.join(bucket, name)
        if name.endswith("._S3rver_object"):
            sizes.append(os.path.getsize(path))
        os.remove(path)
    return sizes


def curl_upload(base, key, secret, source, name):
    """The wall time of hashing and curl's PUT, and of the PUT alone, or None if it failed."""
    started = time.monotonic()
    digest = subprocess.run(["sha256sum", source], capture_output=True, text=True, check=True).stdout.split()[0]
    hashed = time.monotonic()
    curl = subprocess.run(
        ["curl", "-s", "-o", "/dev/null", "-w", "%{http_code}", "--aws-sigv4", "aws:amz:auto:s3",
         "--user", f"{key}:{secret}", "-H", f"x-amz-content-sha256: {digest}",
         "-H", "Content-Type: application/octet-stream", "-T", source, f"{base}/{BUCKET}/{name}"],
        capture_output=True, text=True, check=False)
    done = time.monotonic()
    return (done - started, done - hashed) if curl.stdout == "200" else None


def client_upload(client, base, key, secret, source):
    """The client's figures as a dict of name to value, or None when the upload failed."""
    result = subprocess.run([client, base, BUCKET, key, secret, source], capture_output=True, text=True,
                            check=False)
    sys.stderr.write(result.stderr)
    if result.returncode != 0:
        return None
    return {line.split()[0]: float(line.split()[1]) for line in result.stdout.splitlines()
            if line.split()[0] != "r2_public_url"}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("client")
    parser.add_argument("--rounds", type=int, default=3)
    parser.add_argument("--size-mib", type=int, default=100)
    parser.add_argument("--ratio-target", type=float, default=1.3)
    arguments = parser.parse_args()
    size = arguments.size_mib * MIB
    key, secret = "NVBENCH" + secrets.token_hex(6).upper(), secrets.token_hex(20)

    curl_runs, client_runs, ok = [], [], True
    with tempfile.TemporaryDirectory(prefix="norvanebar-bench-") as folder:
        source = os.path.join(folder, "upload.bin")
        objects = os.path.join(folder, "objects")
        write_random_file(source, size)
        process, base = start_s3server(objects, BUCKET, key, secret)
        try:
            for round_number in range(arguments.rounds):
                curl_runs.append(curl_upload(base, key, secret, source, f"curl-{round_number}.bin"))
                ok = ok and curl_runs[-1] is not None and stored_sizes(objects) == [size]
                client_runs.append(client_upload(arguments.client, base, key, secret, source))
                # Besides its own copy, the client's small warm-up upload.
                ok = ok and client_runs[-1] is not None and sorted(stored_sizes(objects))[-1:] == [size]
        finally:
            stop_s3server(process)

    if not ok:
        print("r2_upload_result fail")
        return 1
    curl_seconds = statistics.median(total for total, _ in curl_runs)
    put_seconds = statistics.median(put for _, put in curl_runs)
    seconds = statistics.median(run["r2_upload_time"] for run in client_runs)
    ratio = seconds / curl_seconds
    growth = max(run["r2_rss_growth"] for run in client_runs)
    size_mib = size / MIB
    print(f"r2_upload_size {size} bytes")
    print(f"r2_upload_rounds {arguments.rounds}")
    print(f"curl_sigv4_time {curl_seconds:.3f} s (median, sha256sum and PUT)")
    print(f"curl_sigv4_put_time {put_seconds:.3f} s (median, PUT alone)")
    print(f"r2_upload_time {seconds:.3f} s (median)")
    print(f"r2_upload_time_ratio_to_curl {ratio:.2f} x (target at most {arguments.ratio_target})"
          + ("" if ratio <= arguments.ratio_target else " MISSED"))
    print(f"r2_upload_time_ratio_to_curl_put {seconds / put_seconds:.2f} x")
    print(f"r2_rss_before {max(run['r2_rss_before'] for run in client_runs):.1f} MiB")
    print(f"r2_rss_growth {growth:.1f} MiB (file {size_mib:.0f} MiB; target under {2 * size_mib:.0f})"
          + ("" if growth < 2 * size_mib else " MISSED"))
    ok = ratio <= arguments.ratio_target and growth < 2 * size_mib
    print(f"r2_upload_result {'pass' if ok else 'fail'}")
    return 0 if ok else 1


if __name__ == "__main__":
    sys.exit(main())
