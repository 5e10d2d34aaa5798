"""What is measured: times in interleaved rounds, and counts that noise cannot touch."""
import os
import random
import re
import subprocess
import time

from file_list import START

FORMATS = ["text", "ndjson"]
JOBS = ["1", "2"]
CALL = re.compile(r"^(?:\d+ +)?(\w+)\((.*)= (-?\d+)")
MARK = "fiid: a counted lap begins or ends"


class Tools:
    """The programs that are run: fiid_compare, fiid_heap and fiid itself."""

    def __init__(self, build):
        self.compare = f"{build}/bench/fiid_compare"
        self.heap = f"{build}/bench/fiid_heap"
        self.program = f"{build}/fiid"

    def program_command(self, output_format, listed):
        return [self.program, "--format", output_format, "--files-from", listed]

    def walk_command(self, jobs, tree):
        return [self.program, "-j", jobs, "--format", "ndjson", tree]


def rounds(tools, number, laps, with_program):
    """Microseconds a file, {lap: {contestant: {"cpu": [one a round], "wall": [...]}}}; starting the program is in START."""
    command = [tools.compare, "rounds", str(number), tools.program if with_program else ""]
    command += [f"{name}={path}" for name, (path, _) in laps.items()]
    output = subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout
    times = {}
    for line in output.splitlines():
        _, lap, who, cpu, wall = line.split("\t")
        entry = times.setdefault(lap, {}).setdefault(who, {"cpu": [], "wall": []})
        entry["cpu"].append(int(cpu) / 1e3)
        entry["wall"].append(int(wall) / 1e3)
    for lap, (_, files) in laps.items():
        if lap == START:
            continue
        for who, entry in times[lap].items():
            for clock in entry:
                start = median(times[START][who][clock]) if who in FORMATS else 0
                entry[clock] = [(time - start) / files for time in entry[clock]]
    return times


def timed(command):
    """Microseconds of a command's processors and of the clock on the wall, its output to /dev/null."""
    began = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    wall = time.perf_counter() - began
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        raise subprocess.CalledProcessError(process.returncode, command)
    return {"cpu": (usage.ru_utime + usage.ru_stime) * 1e6, "wall": wall * 1e6}


def by_file(started, times, files):
    """Times by file: less the median of what starting takes."""
    return [(time_of_all - median(started)) / files for time_of_all in times]


def program_rounds(tools, number, trees, empty):
    """Microseconds a file, {tree: {jobs: {"cpu": [one a round], "wall": [...]}}}: rounds in which every tree takes its turn
    with every number of jobs, in an order drawn anew, and one in front that does not count."""
    runs = [(name, jobs) for name in [START, *trees] for jobs in JOBS]
    times = {run: {"cpu": [], "wall": []} for run in runs}
    draw = random.Random(3)
    for counted in [False] + [True] * number:
        for name, jobs in draw.sample(runs, len(runs)):
            told = timed(tools.walk_command(jobs, empty if name == START else trees[name][0]))
            for clock in told:
                times[name, jobs][clock] += [told[clock]] if counted else []
    return {name: {jobs: {clock: by_file(times[START, jobs][clock], values, files)
                          for clock, values in times[name, jobs].items()} for jobs in JOBS}
            for name, (_, files) in trees.items()}


def median(values):
    """The middle value, or the mean of the two in the middle."""
    ordered = sorted(values)
    middle = len(ordered) // 2
    return ordered[middle] if len(ordered) % 2 else (ordered[middle - 1] + ordered[middle]) / 2


def traced(command, unless):
    """The system calls of a command as (name, result), without those that name the path given."""
    trace = subprocess.run(["strace", "-f", "-qq", "-y", "-s", "0", "-o", "/dev/stderr", *command], check=True,
                           stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, errors="replace").stderr
    calls = []
    for line in trace.splitlines():
        found = CALL.match(line)
        if found and unless not in line:
            calls.append(("mark" if MARK in line else found[1], int(found[3])))
    return calls


def sums(calls):
    """Calls, preads and bytes read."""
    return {"calls": len(calls), "preads": sum(name == "pread64" for name, _ in calls),
            "bytes": sum(max(0, result) for name, result in calls if name in ("pread64", "read"))}


def library_calls(tools, listed, files, who="library"):
    """Calls, preads and bytes a file of the library, between the two marks of the counted lap."""
    calls = traced([tools.compare, "lap", who, listed], listed)
    begin, end = [index for index, (name, _) in enumerate(calls) if name == "mark"]
    return {key: value / files for key, value in sums(calls[begin + 1:end]).items()}


def program_calls(tools, output_format, listed, files, empty):
    """The same of the program, less those of an empty list; the reading of the list does not count."""
    whole = sums(traced(tools.program_command(output_format, listed), listed))
    start = sums(traced(tools.program_command(output_format, empty), empty))
    return {key: (whole[key] - start[key]) / files for key in whole}


def instructions(command, *options):
    """The instructions of a command in user space."""
    told = subprocess.run(["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *options, *command],
                          check=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True, errors="replace")
    return int(re.search(r"Collected : (\d+)", told.stderr)[1])


def library_instructions(tools, listed, files, who="library"):
    """Instructions a file of open, identify and close together, when each file has been seen once."""
    return instructions([tools.compare, "lap", who, listed], "--toggle-collect=RunCountedLap") / files


def program_instructions(tools, output_format, listed, files, empty):
    """Instructions a file of the program, less those of an empty list."""
    whole = instructions(tools.program_command(output_format, listed))
    return (whole - instructions(tools.program_command(output_format, empty))) / files


def heap_blocks(tools, listed):
    """Heap blocks a file, and the bytes asked for."""
    output = subprocess.run([tools.heap, listed], check=True, capture_output=True, text=True).stdout
    files, blocks, size = (int(field) for field in output.split("\t"))
    return {"blocks": blocks / files, "heap bytes": size / files}


def costs(tools, listed):
    """The CPU time of the library for each path of a list, by path."""
    output = subprocess.run([tools.compare, "costs", listed], check=True, capture_output=True, text=True).stdout
    return {path: int(time) for time, path in (line.split("\t") for line in output.splitlines())}
