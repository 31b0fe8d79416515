#!/usr/bin/python3
"""Signs an S3 PUT with botocore (python3-botocore), a SigV4 signer independent of NorvaneBar's, and
prints the Authorization header it makes.

    sigv4_botocore.py URL ACCESS_KEY_ID SECRET CONTENT_TYPE AMZ_DATE PAYLOAD_FILE

The request carries the headers that R2 uploads sign (Content-Type, Host, X-Amz-Content-SHA256 and
X-Amz-Date, the last given as AMZ_DATE, "yyyymmddThhmmssZ"), for the region "auto" and the
service "s3".
"""
import hashlib
import sys
from urllib.parse import urlsplit

from botocore.auth import S3SigV4Auth
from botocore.awsrequest import AWSRequest
from botocore.credentials import Credentials


def main():
    url, access_key, secret, content_type, amz_date, payload_file = sys.argv[1:7]
    with open(payload_file, "rb") as f:
        payload = f.read()
    request = AWSRequest(method="PUT", url=url, data=payload, headers={
        "Content-Type": content_type,
        "Host": urlsplit(url).hostname,
        "X-Amz-Content-SHA256": hashlib.sha256(payload).hexdigest(),
    })
    signer = S3SigV4Auth(Credentials(access_key, secret), "s3", "auto")
    # What add_auth does, with the time given instead of the clock's.
    request.context["timestamp"] = amz_date
    request.headers["X-Amz-Date"] = amz_date
    canonical = signer.canonical_request(request)
    signature = signer.signature(signer.string_to_sign(request, canonical), request)
    headers = signer.signed_headers(signer.headers_to_sign(request))
    scope = signer.credential_scope(request)
    print(f"AWS4-HMAC-SHA256 Credential={access_key}/{scope}, SignedHeaders={headers}, Signature={signature}")


if __name__ == "__main__":
    main()
