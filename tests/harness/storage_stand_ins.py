"""Local stand-ins of the attachment storage providers, for the end-to-end tests, `make run` and the
benchmarks: norvane-sandbox's Cloudinary and Google (started with `--admin` to read Google's state),
and the S3 server of tools/s3server, which verifies signatures as R2 does, in place of Cloudflare R2."""

import json
import os
import random
import subprocess
import urllib.request

S3SERVER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "tools", "s3server", "s3server.js")

# The one cloud of the sandbox's Cloudinary and its unsigned upload preset.
CLOUDINARY_CLOUD = "norvanebar-demo"
CLOUDINARY_PRESET = "norvanebar_unsigned"


def cloudinary_settings(sandbox):
    """The settings key that sends Cloudinary's uploads to the sandbox."""
    return {"cloudinaryAPIBaseURL": sandbox.web}


def google_settings(sandbox):
    """The settings keys that send every request to Google to the sandbox."""
    base = sandbox.web + "/google"
    return {key: base for key in ("googleAccountsBaseURL", "googleOAuthTokenBaseURL", "googleDriveAPIBaseURL",
                                  "googleDriveUploadBaseURL", "googleDriveWebBaseURL")}


def google_state(sandbox):
    """The sandbox's Google: its grants with their refresh tokens, the access tokens, the files."""
    with urllib.request.urlopen(sandbox.web + "/_sandbox/google", timeout=10) as answer:
        return json.load(answer)


def start_s3server(folder, bucket, key, secret):
    """The S3 server with one bucket and one key pair, on port 80 of a random private loopback address
    (the signature covers the host without a port; binding port 80 needs root), and its endpoint base."""
    for _ in range(4):
        address = f"127.{random.randint(16, 254)}.{random.randint(1, 254)}.{random.randint(1, 254)}"
        process = subprocess.Popen(["node", S3SERVER, address, "80", folder, bucket, key, secret],
                                   stdout=subprocess.PIPE, text=True)
        if process.stdout.readline().startswith("ready "):
            return process, f"http://{address}"
        process.wait(timeout=30)
    raise RuntimeError("the S3 server did not get ready")


def stop_s3server(process):
    process.terminate()
    process.wait(timeout=30)
