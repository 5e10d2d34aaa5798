#!/usr/bin/env python3
"""Scans a large tree and a large directory with a store, is killed again and again, and goes on each time.

Makes a tree of N small files (a thousand to a directory) and one directory of N entries, and scans each:
  alone      in one run without a store: rate, time to the first record, peak memory; sorted and unsorted
  killed     with a store, killed by SIGKILL at ten random moments, each time gone on with; then to the end
  again      with the store, once more: nothing is new
  queries    each query of the store
What comes out is held against what was made: every file once, in the order of the walk, with the answer of its content, also
in the store itself. Ends with status 1 when anything differs."""
import argparse
import json
import os
import random
import shutil
import signal
import sqlite3
import subprocess
import sys
import tempfile
import time

# What the files hold, and the answers to it; told by the program itself for one file of each before all else.
CONTENTS = [
    ("gif", b"GIF89a\x01\x00\x01\x00\x00\x00\x00;"),
    ("png", b"\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\0\0\0\0"),
    ("pdf", b"%PDF-1.7\n1 0 obj\n<<>>\nendobj\n%%EOF\n"),
    ("rtf", b"{\\rtf1\\ansi text}"),
    ("txt", b"Some lines of text,\nof which there are many in a large archive.\n"),
    ("json", b'{"name": "value", "list": [1, 2, 3]}\n'),
    ("html", b"<!DOCTYPE html><html><head><title>a</title></head><body>b</body></html>\n"),
    ("eml", b"From: a@example.org\nTo: b@example.org\nSubject: c\nDate: Mon, 1 Jan 2024 00:00:00 +0000\n\nText.\n"),
    ("bin", bytes(range(256)) * 2),
    ("doc", b"GIF89a\x01\x00\x01\x00\x00\x00\x00;"),
]
FILES_OF_A_DIRECTORY = 1000
MOST_MEGABYTES = 64  # of memory, whatever the number of files


def make_file(path, number):
    with open(path, "wb", buffering=0) as file:
        file.write(CONTENTS[number % len(CONTENTS)][1])


def name_of(number):
    return "file%07d.%s" % (number, CONTENTS[number % len(CONTENTS)][0])


def make_tree(top, count):
    """Directories of a thousand files, two levels deep; returns the paths below top in the order of the walk."""
    paths = []
    for number in range(count):
        chunk = number // FILES_OF_A_DIRECTORY
        folder = "d%03d/e%03d" % (chunk // 100, chunk % 100)
        if number % FILES_OF_A_DIRECTORY == 0:
            os.makedirs(os.path.join(top, folder))
        path = folder + "/" + name_of(number)
        make_file(os.path.join(top, path), number)
        paths.append(path)
    return paths


def make_directory(top, count):
    os.makedirs(top)
    paths = [name_of(number) for number in range(count)]
    for number, path in enumerate(paths):
        make_file(os.path.join(top, path), number)
    return paths


class Launcher:
    """Runs the program, to its end or killed before, in a small process that measures it."""

    def __init__(self, program, folder):
        self.program = program
        self.output = os.path.join(folder, "output")
        self.messages = os.path.join(folder, "messages")
        path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "launcher.py")
        self.process = subprocess.Popen([sys.executable, "-E", "-S", path], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                        text=True)

    def run(self, arguments, with_output=False, kill_after=None):
        order = {"command": [self.program, *arguments], "output": self.output if with_output else None,
                 "messages": self.messages, "kill_after": kill_after}
        self.process.stdin.write(json.dumps(order) + "\n")
        self.process.stdin.flush()
        run = argparse.Namespace(**json.loads(self.process.stdout.readline()), lines=[])
        with open(self.messages, encoding="utf-8", errors="replace") as stream:
            run.messages = stream.read()
        if with_output:
            with open(self.output, "rb") as stream:
                run.lines = stream.readlines()
            os.unlink(self.output)
        return run


class Bench:
    def __init__(self, program, files, kills, seed, folder):
        self.program = program
        self.launcher = Launcher(program, folder)
        self.files = files
        self.kills = kills
        self.random = random.Random(seed)
        self.failures = 0

    def require(self, holds, what):
        if not holds:
            self.failures += 1
            print("WRONG: %s" % what)

    def say(self, label, run, extra=""):
        first = "" if run.first_record is None else ", first record after %.3f s" % run.first_record
        print("  %-22s %8.0f files/s, %6.1f s, %6.1f us of processor a file, peak %5.1f MB%s%s" % (
            label, self.files / run.seconds, run.seconds, 1e6 * run.processor_seconds / self.files, run.peak_megabytes, first,
            extra))
        sys.stdout.flush()
        self.require(run.peak_megabytes < MOST_MEGABYTES, "%s: more than %d MB of memory" % (label, MOST_MEGABYTES))

    def answers(self, folder):
        told = {}
        for number, (extension, content) in enumerate(CONTENTS):
            path = os.path.join(folder, "one." + extension)
            with open(path, "wb") as file:
                file.write(content)
            out = subprocess.run([self.program, "--format", "ndjson", path], check=True, capture_output=True).stdout
            record = json.loads(out)
            told[number] = (record["fiid"], record.get("further"))
            os.unlink(path)
        return told

    def expected(self, top, paths):
        lines = []
        for path in paths:
            fiid, further = self.told[int(os.path.basename(path)[4:11]) % len(CONTENTS)]
            lines.append("%s/%s\t%d\t%s\n" % (top, path, fiid, further or ""))
        return lines

    def compare(self, what, expected, lines):
        lines = [line.decode() for line in lines]
        self.require(lines[:1] == ["path\tfiid\tfurther\n"], what + ": header")
        self.require(lines[1:] == expected, "%s: %d lines of %d, or another order or answer" % (what, len(lines) - 1, len(expected)))

    def scan_alone(self, top, expected):
        fields = ["--format", "tsv", "--fields", "path,fiid,further", top]
        for jobs in ("1", "2"):
            run = self.launcher.run(["-j", jobs] + fields, with_output=True)
            self.say("-j %s" % jobs, run)
            self.compare("-j " + jobs, expected, run.lines)
        run = self.launcher.run(["-j", "2", "--unsorted"] + fields, with_output=True)
        self.say("-j 2 --unsorted", run)
        self.compare("--unsorted", sorted(expected), run.lines[:1] + sorted(run.lines[1:]))
        return run.seconds

    def scan_killed(self, top, store, expected, whole_seconds):
        peak = kept = 0
        started = time.monotonic()
        for _ in range(self.kills):
            after = self.random.uniform(0.05, min(2, whole_seconds))
            run = self.launcher.run(["--store", store, top], kill_after=after)
            self.require(run.exit_status in (-signal.SIGKILL, 0), "killed run: %d %s" % (run.exit_status, run.messages))
            peak = max(peak, run.peak_megabytes)
            before, kept = kept, self.count(store)
            self.require(kept >= before, "files were lost")
            ended = "killed" if run.exit_status != 0 else "through, not to be killed,"
            print("  %s after %.2f s: %d files in the store" % (ended, after, kept))
            sys.stdout.flush()
        run = self.launcher.run(["--store", store, top])
        self.require(run.exit_status == 0, "last run: %d %s" % (run.exit_status, run.messages))
        print("  %s" % run.messages.strip())
        run.peak_megabytes = max(peak, run.peak_megabytes)
        run.seconds = time.monotonic() - started
        self.say("killed %d times" % self.kills, run)
        self.check_store(store, expected)

    @staticmethod
    def count(store):
        try:
            with sqlite3.connect("file:%s?mode=ro" % store, uri=True) as database:
                return database.execute("SELECT count(*) FROM files").fetchone()[0]
        except sqlite3.OperationalError:
            return 0  # killed before there was a table

    def check_store(self, store, expected):
        database = sqlite3.connect("file:%s?mode=ro" % store, uri=True)
        self.require(database.execute("PRAGMA integrity_check").fetchone()[0] == "ok", "integrity of the store")
        rows = database.execute("SELECT path, fiid, further FROM records").fetchall()
        database.close()
        lines = sorted("%s\t%d\t%s\n" % (path, fiid, further or "") for path, fiid, further in rows)
        self.require(lines == sorted(expected), "the store has %d files of %d, or other answers" % (len(lines), len(expected)))
        out = subprocess.run([self.program, "--store", store, "--query", "files", "--format", "tsv", "--fields",
                              "path,fiid,further"], check=True, capture_output=True).stdout.splitlines(keepends=True)
        self.compare("--query files", expected, out)

    def scan_again(self, top, store, expected):
        run = self.launcher.run(["--store", store, top])
        self.say("again, nothing new", run, "; size of the store %.0f bytes a file" % (os.path.getsize(store) / self.files))
        self.require(run.exit_status == 0 and " 0 new, 0 changed" in run.messages, "second scan: " + run.messages)
        run = self.launcher.run(["--store", store, "--format", "tsv", "--fields", "path,fiid,further", top], with_output=True)
        self.say("again, with records", run)
        self.compare("records from the store", expected, run.lines)

    def ask(self, store):
        for query in ("summary", "mismatch", "changes", "errors", "duplicates", "files"):
            run = self.launcher.run(["--store", store, "--query", query, "--format", "ndjson"], with_output=True)
            print("  --query %-12s %6.2f s, peak %5.1f MB, %d lines" % (query, run.seconds, run.peak_megabytes, len(run.lines)))
            self.require(run.exit_status == 0, "--query %s: %s" % (query, run.messages))
            self.require(run.peak_megabytes < MOST_MEGABYTES, "--query %s: more than %d MB" % (query, MOST_MEGABYTES))

    def run(self, folder, what, make):
        top = os.path.join(folder, what)
        started = time.monotonic()
        expected = self.expected(top, make(top, self.files))
        print("%s: %d files, made in %.0f s" % (what, self.files, time.monotonic() - started))
        seconds = self.scan_alone(top, expected)
        store = os.path.join(folder, what + ".db")
        self.scan_killed(top, store, expected, seconds)
        self.scan_again(top, store, expected)
        run = self.launcher.run(["--store", store, "--rescan", "--hash", "xxh3", top])
        self.say("--rescan --hash xxh3", run)
        self.ask(store)
        shutil.rmtree(top)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", required=True, help="the program fiid")
    parser.add_argument("--files", type=int, default=1000000, help="how many files, in the tree and in the directory")
    parser.add_argument("--kills", type=int, default=10, help="how often a scan is killed")
    parser.add_argument("--seed", type=int, default=14, help="of the random moments")
    parser.add_argument("--directory", help="where the files are made; by default where temporary files lie")
    options = parser.parse_args()
    with tempfile.TemporaryDirectory(prefix="fiid-scan-", dir=options.directory) as folder:
        bench = Bench(os.path.abspath(options.program), options.files, options.kills, options.seed, folder)
        bench.told = bench.answers(folder)
        bench.run(folder, "tree", make_tree)
        bench.run(folder, "directory", make_directory)
    print("%d wrong" % bench.failures if bench.failures else "all files once, in order, with their answers")
    return 1 if bench.failures else 0


if __name__ == "__main__":
    sys.exit(main())
