"""Files that are made to be measured: the same head in front of ever more nothing, and inputs that were cliffs."""
import os
import random

KIB, MIB, GIB = 1 << 10, 1 << 20, 1 << 30
SIZES = {"4 KiB": 4 * KIB, "1 MiB": MIB, "1 GiB": GIB, "10 GiB": 10 * GIB}
HEAD_SIZE = 4 * KIB
LINE = b"The quick brown fox jumps over the lazy dog, and tells nobody.\n"


def noise(seed, size):
    """Bytes that look like nothing, the same each time."""
    return random.Random(seed).randbytes(size)


def heads():
    """4 KiB of an early row, of text, of what nothing claims, and of an archive without a directory."""
    return {
        "GIF": (b"GIF89a\x00\x10\x00\x10\x80\x00\x00" + noise(1, HEAD_SIZE))[:HEAD_SIZE],
        "lines of text": (LINE * HEAD_SIZE)[:HEAD_SIZE],
        "`PK` 03 04": (b"PK\x03\x04" + noise(2, HEAD_SIZE))[:HEAD_SIZE],
        "random bytes": noise(3, HEAD_SIZE),
    }


def sparse_files(folder):
    """Yields (head, size, path) for each head in front of holes."""
    os.makedirs(folder)
    for head, content in heads().items():
        for size, length in SIZES.items():
            path = os.path.join(folder, f"{len(os.listdir(folder)):02}.bin")
            with open(path, "wb") as stream:
                stream.write(content)
                stream.truncate(length)
            yield head, size, path


def printable(size):
    """Printable characters without a line end."""
    return bytes(random.Random(4).choices(range(0x20, 0x7F), k=size))


def cliffs(folder):
    """Yields (name, path) of inputs that cost, or once cost, far more than others of their kind."""
    contents = {
        "1 MiB of printable characters without a line end": printable(MIB),
        "1 MiB of random bytes": noise(5, MIB),
        "`PK` 03 04 and no directory, 64 KiB": (b"PK\x03\x04" + noise(6, 64 * KIB))[:64 * KIB],
    }
    os.makedirs(folder)
    for index, (name, content) in enumerate(contents.items()):
        path = os.path.join(folder, f"{index:02}.bin")
        with open(path, "wb") as stream:
            stream.write(content)
        yield name, path
