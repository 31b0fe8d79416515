"""Files of random bytes for the upload benchmarks, so that nothing on the way can make an upload
cheaper by compressing it."""

import os

MIB = 1024 * 1024


def write_random_file(path, size):
    """Writes `size` bytes, a whole number of MiB, to `path`."""
    with open(path, "wb") as file:
        for _ in range(size // MIB):
            file.write(os.urandom(MIB))
