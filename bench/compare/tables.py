"""The tables in Markdown that docs/PERFORMANCE.md shows."""
import math

from file_list import CLASSES, SHUFFLED, START
from measure import FORMATS, JOBS, median

IN_LAPS = "the mix, in laps"
IN_DISORDER = "the mix, shuffled"
WHO = ["floor", "library", "detect", "text", "ndjson", "libmagic", "GLib"]
TITLES = {"text": "program, text", "ndjson": "program, ndjson"}


def table(titles, rows):
    """Prints a table and a blank line."""
    print("| " + " | ".join(titles) + " |")
    print("|" + "---|" * len(titles))
    for row in rows:
        print("| " + " | ".join(row) + " |")
    print()


def number(value):
    """Three digits, or all in front of the point."""
    return f"{value:,.0f}" if abs(value) >= 100 else f"{value:.1f}" if abs(value) >= 10 else f"{value:.2f}"


def spread(values):
    return f"{number(median(values))} ({number(min(values))} to {number(max(values))})"


def weighted(by_class, classes, counts):
    """The mean over classes, weighted by their numbers of files, element by element."""
    total = sum(counts[name] for name in classes)
    rows = [[value * counts[name] / total for value in by_class[name]] for name in classes]
    return [sum(column) for column in zip(*rows)]


def all_times(result, clock):
    """{row of the table: {contestant: [one a round]}}: the classes, the mix in laps, and the mix shuffled."""
    times, counts = result["times"], result["files"]
    classes = [name for name in CLASSES if name in counts]
    rows = {name: {who: entry[clock] for who, entry in times[name].items()} for name in classes}
    rows[IN_LAPS] = {who: weighted({name: rows[name][who] for name in classes}, classes, counts)
                     for who in times[SHUFFLED]}
    rows[IN_DISORDER] = {who: entry[clock] for who, entry in times[SHUFFLED].items()}
    return rows


def ratios(row, who, base="floor"):
    """The ratio of two contestants, round by round."""
    return [one / other for one, other in zip(row[who], row[base])]


def files_of(result, name):
    return str(result["files"].get(name, sum(result["files"].values())))


def print_times(result, clock, title):
    rows = all_times(result, clock)
    there = [who for who in WHO if who in rows[IN_LAPS]]
    titles = [TITLES.get(who, who) for who in there]
    print(f"{title}, us a file: median (least to most)\n")
    table(["class", "files", *titles],
          [[name, files_of(result, name), *(spread(row[who]) for who in there)] for name, row in rows.items()])
    print(f"{title}, ratio to the floor, median of the rounds, and of the library's least to the floor's least:\n")
    faster = ["libmagic / library"] if "libmagic" in there else []
    body = []
    for name, row in rows.items():
        cells = [number(median(ratios(row, who))) for who in there[1:]]
        cells.append(number(min(row["library"]) / min(row["floor"])))
        cells += [number(median(ratios(row, "libmagic", "library"))) for _ in faster]
        body.append([name, *cells])
    table(["class", *titles[1:], "library, least", *faster], body)


def print_start(result):
    start = result["times"][START]
    told = "; ".join(f"{name} {median(start[name]['cpu']) / 1e3:.2f} ms CPU, {median(start[name]['wall']) / 1e3:.2f} ms wall"
                     for name in FORMATS)
    print(f"Starting the program, over an empty list, is subtracted from its times: {told}.\n")


def print_program(result):
    one, two = JOBS
    print("The program over trees, `--format ndjson`, with one thread and with two; ratios round by round:\n")
    body = []
    for name, row in result["program"].items():
        cpu, wall = ({jobs: row[jobs][clock] for jobs in JOBS} for clock in ("cpu", "wall"))
        rates = [f"{1e6 / median(wall[jobs]):,.0f}" for jobs in JOBS]
        body.append([name, f"{result['trees'][name]:,}", *rates, spread(ratios(wall, one, two)),
                     number(min(wall[one]) / min(wall[two])), *(number(median(cpu[jobs])) for jobs in JOBS),
                     spread(ratios(cpu, two, one)), number(min(cpu[two]) / min(cpu[one]))])
    table(["tree", "files", "files/s, -j 1", "files/s, -j 2", "times as fast", "of the least times", "CPU us a file, -j 1", "-j 2",
           "ratio", "of the least times"], body)


COUNTS = [("calls", "system calls"), ("preads", "preads"), ("bytes", "bytes read"), ("instructions", "instructions"),
          ("blocks", "heap blocks"), ("detect preads", "detect: preads"),
          ("detect bytes", "detect: bytes read"), ("detect instructions", "detect: instructions"),
          ("text calls", "program, text: calls"),
          ("text instructions", "program, text: instructions"), ("ndjson instructions", "program, ndjson: instructions")]


def mix_of_counts(result):
    classes = list(result["counts"])
    return {key: weighted({name: [result["counts"][name][key]] for name in classes}, classes, result["files"])[0]
            for key, _ in COUNTS if key in result["counts"][classes[0]]}


def print_counts(result):
    rows = dict(result["counts"])
    rows["the mix"] = mix_of_counts(result)
    print("Counts of the library a file, and of the program:\n")
    table(["class", *(title for _, title in COUNTS)],
          [[name, *(number(row[key]) for key, _ in COUNTS)] for name, row in rows.items()])


def print_flat(result):
    print("Sparse files with the same 4 KiB in front, library:\n")
    sizes = list(next(iter(result["flat"].values())))
    body = []
    for head, by_size in result["flat"].items():
        cells = [f"{by_size[size]['calls']:.0f} / {by_size[size]['preads']:.0f} / {by_size[size]['bytes']:,.0f}"
                 for size in sizes]
        body.append([head, *cells])
    table(["head", *(f"{size}: calls / preads / bytes" for size in sizes)], body)


def print_cliffs(result):
    print("Inputs that cost more than others of their kind, CPU time and counts of the library:\n")
    body = []
    for name, row in result["cliffs"].items():
        cpu = {who: entry["cpu"] for who, entry in row["times"].items()}
        told = f"{name}: {row['file']}" if row["file"] else name
        body.append([told, f"{row['size']:,}", spread(cpu["library"]), number(median(ratios(cpu, "library"))),
                     *(number(row[key]) for key in ("calls", "preads", "bytes", "instructions")),
                     number(median(ratios(cpu, "libmagic", "library"))) if "libmagic" in cpu else "-"])
    table(["input", "size", "us", "ratio to the floor", "system calls", "preads", "bytes read", "instructions",
           "libmagic / library"], body)


def print_change(before, after):
    """What changed since another run, each figure before and after."""
    print("Before and after, of the library: ratio to the floor by CPU time, and counts:\n")
    body = []
    if "times" in before and "times" in after:
        old, new = all_times(before, "cpu"), all_times(after, "cpu")
        for name in new:
            if name in old:
                body.append([name, *(f"{number(median(ratios(old[name], who)))} / {number(median(ratios(new[name], who)))}"
                                     for who in ("library", *FORMATS))])
        table(["class", "library", "program, text", "program, ndjson"], body)
    if "counts" in before and "counts" in after:
        old = {**before["counts"], IN_LAPS: mix_of_counts(before)}
        new = {**after["counts"], IN_LAPS: mix_of_counts(after)}
        table(["class", *(title for _, title in COUNTS)],
              [[name, *(f"{number(old[name].get(key, math.nan))} / {number(new[name][key])}" for key, _ in COUNTS)]
               for name in new if name in old])
    if "program" in before and "program" in after:
        table(["tree", *(f"CPU us a file, -j {jobs}" for jobs in JOBS), "times as fast"],
              [[name, *(" / ".join(number(median(run["program"][name][jobs]["cpu"])) for run in (before, after))
                        for jobs in JOBS),
                " / ".join(number(median(ratios({jobs: run["program"][name][jobs]["wall"] for jobs in JOBS}, *JOBS)))
                           for run in (before, after))]
               for name in after["program"] if name in before["program"]])
    if "cliffs" in before and "cliffs" in after:
        table(["input", "ratio to the floor"],
              [[name, " / ".join(number(median(ratios({who: entry["cpu"] for who, entry in row["times"].items()},
                                                      "library"))) for row in (before["cliffs"][name], after["cliffs"][name]))]
               for name in after["cliffs"] if name in before["cliffs"]])
