"""Turns the JSON output of fiid_bench into the table of ratios that docs/PERFORMANCE.md shows."""
import json
import sys


def medians(report):
    """Median real time in nanoseconds, by benchmark name."""
    units = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    return {
        entry["run_name"]: entry["real_time"] * units[entry["time_unit"]]
        for entry in report["benchmarks"]
        if entry.get("aggregate_name") == "median"
    }


def main():
    times = medians(json.load(sys.stdin))
    print("| family | files | floor, us a file | identification, us a file | ratio |")
    print("|---|---|---|---|---|")
    for name in sorted(times):
        if not name.startswith("floor/"):
            continue
        _, family, files = name.split("/")
        count = int(files.split(":")[1])
        floor, cost = times[name] / count, times[name.replace("floor/", "identify/")] / count
        print(f"| {family} | {count} | {floor / 1e3:.2f} | {cost / 1e3:.2f} | {cost / floor:.2f} |")
    walk = times.get("walk/unclaimed")
    if walk is None:
        return
    print(f"\nThe whole walk over 64 KiB in memory that nothing claims: {walk / 1e3:.1f} us. The dearest\nroutines over the same bytes, of which the walk reaches those that their rows let through:\n")
    print("| routine | us | compared with the walk |")
    print("|---|---|---|")
    routines = sorted(((time, name) for name, time in times.items() if name.startswith("routine/")), reverse=True)
    for time, name in routines[:12]:
        print(f"| {name.split('/')[1]} | {time / 1e3:.2f} | {100 * time / walk:.1f} % |")


main()
