"""scripts/bench compare: what identification costs beside the floor, libmagic and GLib, in times and in counts."""
import argparse
import json
import os
import sys
import tempfile

import made_files
import measure
import tables
from file_list import FileList

PARTS = ["times", "counts", "flat", "cliffs", "program"]
DEAREST_OF = ["storage", "unclaimed storage", "package", "text"]
CLIFF_LOOKS = 30


def parse_arguments():
    parser = argparse.ArgumentParser(
        prog="scripts/bench compare",
        description="Times the floor (open, fstat, pread of 4 KiB, close), the library, the program, libmagic and GLib over "
        "one list of real files, interleaved, and counts what noise cannot touch. Prints Markdown.")
    parser.add_argument("directories", nargs="*", metavar="DIRECTORY", help="where the files are (default: samples)")
    parser.add_argument("--rounds", type=int, default=7, help="rounds that count (default: 7)")
    parser.add_argument("--files", type=int, default=5000,
                        help="files are repeated under fresh names until there are so many (default: 5000)")
    parser.add_argument("--lap", type=int, default=1500, help="a class goes round until so many looks (default: 1500)")
    parser.add_argument("--trees", type=int, default=50000,
                        help="files of the trees that the program walks with one thread and with two (default: 50000)")
    parser.add_argument("--only", choices=PARTS, action="append", help="measure this part alone; may be repeated")
    parser.add_argument("--json", metavar="FILE", help="also write all figures to FILE")
    parser.add_argument("--against", metavar="FILE", help="also print the figures beside those of an earlier --json")
    parser.add_argument("--build", required=True, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    arguments.directories = arguments.directories or [os.path.join(os.path.dirname(__file__), "../../samples")]
    return arguments


def count(tools, files):
    """The counts by class."""
    empty = files.write("empty", [])
    counts = {}
    for name in files.by_class:
        print(f"counting: {name}", file=sys.stderr)
        listed, different = files.different(name)
        sample, sampled = files.sample(name)
        row = counts[name] = measure.library_calls(tools, listed, different)
        row.update(measure.heap_blocks(tools, listed))
        row["instructions"] = measure.library_instructions(tools, sample, sampled)
        calls = measure.library_calls(tools, listed, different, "detect")
        row.update({f"detect {key}": value for key, value in calls.items()})
        row["detect instructions"] = measure.library_instructions(tools, sample, sampled, "detect")
        for output_format in measure.FORMATS:
            calls = measure.program_calls(tools, output_format, listed, different, empty)
            row.update({f"{output_format} {key}": value for key, value in calls.items()})
            row[f"{output_format} instructions"] = measure.program_instructions(tools, output_format, sample, sampled,
                                                                               empty)
    return counts


def count_flat(tools, files):
    """Calls, preads and bytes by head and size."""
    flat = {}
    for head, size, path in made_files.sparse_files(os.path.join(files.folder, "sparse")):
        flat.setdefault(head, {})[size] = measure.library_calls(tools, files.write("sparse", [path]), 1)
    return flat


def dearest(tools, files):
    """Yields (name, path) of the file of each class with cliffs that takes the library longest."""
    for name in DEAREST_OF:
        if name not in files.by_class:
            continue
        costs = measure.costs(tools, files.different(name)[0])
        path = max(costs, key=costs.get)
        yield f"dearest {name}", path


def measure_cliffs(tools, files, rounds):
    """Times and counts of single inputs."""
    inputs = dict(made_files.cliffs(os.path.join(files.folder, "cliffs")))
    inputs.update(dearest(tools, files))
    laps = {str(index): (files.write(f"cliff {index}", [path] * CLIFF_LOOKS), CLIFF_LOOKS)
            for index, path in enumerate(inputs.values())}
    times = measure.rounds(tools, rounds, laps, with_program=False)
    cliffs = {}
    for index, (name, path) in enumerate(inputs.items()):
        listed = files.write("one", [path])
        cliffs[name] = {"file": files.real_names.get(path, ""), "size": os.path.getsize(path),
                        "times": times[str(index)],
                        "instructions": measure.library_instructions(tools, listed, 1),
                        **measure.library_calls(tools, listed, 1)}
    return cliffs


def measure_all(arguments, folder):
    """All figures that were asked for."""
    tools = measure.Tools(arguments.build)
    parts = arguments.only or PARTS
    files = FileList(arguments.directories, arguments.files, folder)
    files.sort_into_classes(tools.compare)
    result = {"files": {name: len(members) for name, members in files.by_class.items()}}
    if "times" in parts:
        result["times"] = measure.rounds(tools, arguments.rounds, files.laps(arguments.lap), with_program=True)
    if "counts" in parts:
        result["counts"] = count(tools, files)
    if "flat" in parts:
        result["flat"] = count_flat(tools, files)
    if "cliffs" in parts:
        result["cliffs"] = measure_cliffs(tools, files, arguments.rounds)
    if "program" in parts:
        trees = files.trees(arguments.trees)
        empty = os.path.join(folder, "empty")
        os.makedirs(empty)
        result["trees"] = {name: count_of for name, (_, count_of) in trees.items()}
        result["program"] = measure.program_rounds(tools, arguments.rounds, trees, empty)
    return result


def print_all(result):
    if "times" in result:
        tables.print_times(result, "cpu", "CPU time")
        tables.print_times(result, "wall", "Wall time")
        tables.print_start(result)
    if "counts" in result:
        tables.print_counts(result)
    if "flat" in result:
        tables.print_flat(result)
    if "cliffs" in result:
        tables.print_cliffs(result)
    if "program" in result:
        tables.print_program(result)


def main():
    arguments = parse_arguments()
    with tempfile.TemporaryDirectory(prefix="fiid-bench-") as folder:
        result = measure_all(arguments, folder)
    if arguments.json:
        with open(arguments.json, "w", encoding="utf-8") as stream:
            json.dump(result, stream, indent=1)
    print_all(result)
    if arguments.against:
        with open(arguments.against, encoding="utf-8") as stream:
            tables.print_change(json.load(stream), result)


main()
