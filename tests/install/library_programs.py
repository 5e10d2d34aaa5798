#!/usr/bin/env python3
"""library_programs.py BUILD COMPILER SANITIZERS DOCUMENT...: every program in C of a document, compiled by the lines of
the document against an installed build, must print what the document shows.

A program is a block of C that begins with a comment of its name, or the only one of a document, which is tell.c. A line
"cc NAME.c ..." with the prefix DIR tells how it is compiled; those that have none take the first line for tell.c of the
document. "$ ./NAME ..." and the lines below it, indented alike, are what is run and what is printed."""
import os
import re
import subprocess
import sys
import tempfile

GIVEN = {"a.gif": b"GIF89a", "list.json": b'[{"a": 1}, {"b": [true, null]}]\n'}


def programs_of(text):
    blocks = re.findall(r"^```c\n(.*?)^```$", text, re.M | re.S)
    names = [re.match(r"/\* (\w+)\.c - ", block) for block in blocks]
    return {name.group(1) if name else "tell": block for name, block in zip(names, blocks)}


def flags_of(text, prefix):
    """The words behind the source of each line of the compiler, the lines in their order."""
    lines = re.findall(r"^    cc \w+\.c -o \w+ (.*)$", text, re.M)
    return [line.replace("DIR", prefix).split() for line in lines]


def runs_of(text):
    for run in re.findall(r"^(    \$ .*\./.*\n(?:    (?!\$ ).+\n)*)", text, re.M):
        command, *output = [line[4:] for line in run.splitlines()]
        yield command[2:], "".join(line + "\n" for line in output)


def check(document, prefix, compiler, sanitizers):
    with open(document, encoding="utf-8") as file:
        text = file.read()
    programs, flags = programs_of(text), flags_of(text, prefix)
    assert programs and flags, document
    for name, block in programs.items():
        with open(name + ".c", "w", encoding="utf-8") as file:
            file.write(block)
        contract = "<fiid.h>" in block
        fitting = [words for words in flags if ("-lfiid" in words) == contract]
        assert fitting, name
        for words in fitting:
            subprocess.run([compiler, "-std=c99", "-Wall", "-Wextra", "-Wpedantic", "-Werror", name + ".c", "-o", name,
                            *words, *sanitizers], check=True)
            # Beside a list that leaves out what the program does not call, libfiid finds its sibling by itself.
            subprocess.run([compiler, "-Wl,--as-needed", name + ".c", "-o", name + "_needed", *words, *sanitizers], check=True)
            for command, expected in runs_of(text):
                if not re.search(r"\./%s\b" % name, command):
                    continue
                for variant in (command, command.replace("./" + name, "./" + name + "_needed")):
                    run = subprocess.run(["bash", "-c", variant], stdout=subprocess.PIPE, text=True, check=False)
                    assert run.stdout == expected, "%s: $ %s\n%s" % (document, variant, run.stdout)
                    print("%s: $ %s" % (os.path.basename(document), variant))


def main():
    build, compiler, sanitize, *documents = sys.argv[1:]
    with tempfile.TemporaryDirectory() as work:
        prefix = os.path.join(work, "prefix")
        subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        libraries = os.path.dirname(next(os.path.join(directory, name) for directory, _, names in os.walk(prefix)
                                         for name in names if name == "libfiid.so"))
        if not os.path.exists(os.path.join(prefix, "lib", "libfiid.so")):
            os.symlink(libraries, os.path.join(prefix, "lib", "here"))
        dynamic = subprocess.run(["readelf", "--dynamic", os.path.join(libraries, "libfiid.so")], check=True,
                                 capture_output=True, text=True).stdout
        assert re.search(r"RUNPATH.*\[\$ORIGIN\]", dynamic), "libfiid does not find its sibling beside itself"
        documents = [os.path.abspath(document) for document in documents]
        os.chdir(work)
        for name, content in GIVEN.items():
            with open(name, "wb") as file:
                file.write(content)
        for document in documents:
            check(document, prefix, compiler, ["-fsanitize=" + sanitize] if sanitize else [])


if __name__ == "__main__":
    main()
