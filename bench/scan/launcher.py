"""Starts what bench/scan/scan.py measures, one program after the other, as it is told in lines of JSON on standard input.

It is a process of its own because the peak memory of a program begins with what the process had that started it. So this
one imports little, and keeps nothing of what comes."""
import json
import os
import signal
import sys
import time

PIECE = 1 << 16


def copy_output(source, path, began):
    """Copies what comes out of a pipe into a file; returns when the first record was there, behind a line of heads, in
    seconds."""
    first = None
    lines = 0
    with open(path, "wb", buffering=0) as target:
        while piece := os.read(source, PIECE):
            if first is None:
                lines += piece.count(b"\n")
                first = time.monotonic() - began if lines >= 2 else None
            target.write(piece)
    os.close(source)
    return first


def launch(order):
    """Runs {"command", "output", "messages", "kill_after"}: output is a path or null; killed after so many seconds if that
    is not null."""
    began = time.monotonic()
    reading, writing = os.pipe()
    output = writing if order["output"] else os.open(os.devnull, os.O_WRONLY)
    messages = os.open(order["messages"], os.O_WRONLY | os.O_CREAT | os.O_TRUNC, 0o644)
    process = os.posix_spawn(order["command"][0], order["command"], os.environ,
                             file_actions=[(os.POSIX_SPAWN_DUP2, output, 1), (os.POSIX_SPAWN_DUP2, messages, 2)])
    for descriptor in {writing, output, messages}:
        os.close(descriptor)
    first = copy_output(reading, order["output"] or os.devnull, began)
    if order["kill_after"] is not None:
        time.sleep(order["kill_after"])
        os.kill(process, signal.SIGKILL)
    _, status, usage = os.wait4(process, 0)
    return {"exit_status": os.waitstatus_to_exitcode(status), "seconds": time.monotonic() - began, "first_record": first,
            "processor_seconds": usage.ru_utime + usage.ru_stime, "peak_megabytes": usage.ru_maxrss / 1024}


for line in sys.stdin:
    print(json.dumps(launch(json.loads(line))), flush=True)
