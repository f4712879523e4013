#!/usr/bin/python3
"""Draws cost against size, log-log, one panel for each group of operations.

    scripts/bench . --benchmark_out=results.json --benchmark_out_format=json
    bench/plot.py results.json docs/performance.svg

Needs matplotlib (Debian: python3-matplotlib). The same results make the same file.
"""
import io
import json
import sys

import matplotlib

matplotlib.use("svg")
import matplotlib.pyplot as plt

# Title, size, unit, and the measures drawn: label, name in the results, baseline drawn with it.
PANELS = [
    ("Look-up", "directories of 100 files", "ns", [
        ("hit", "lookup/hit", "flat"),
        ("miss", "lookup/miss", None),
        ("name in every directory", "lookup/everywhere", None),
        ("past a private directory", "lookup/visible_path", None),
    ]),
    ("Load, host in memory", "directories of 100 files", "ns a file", [
        ("load", "load", None),
    ]),
    ("Refresh, host in memory", "directories", "ns a directory", [
        ("nothing changed", "refresh/unchanged", "callbacks"),
        ("frozen", "refresh/frozen", None),
    ]),
    ("Directory read again", "files in it", "ns a file", [
        ("host in memory", "refresh/merge", None),
        ("on disk", "disk/merge", "callbacks"),
    ]),
    ("Edit of the path", "directories", "ns a directory", [
        ("add one by one", "edit/add_one_by_one", None),
        ("add in front, searching", "edit/add_in_front_searching", None),
        ("remove from front", "edit/remove_from_front", None),
        ("reverse", "edit/reverse", None),
        ("replace by itself", "edit/replace_by_itself", None),
    ]),
    ("Toolbox cache", "directories of 100 files", "ns a file or look-up", [
        ("read", "cache/read", "fgets"),
        ("write", "cache/write", None),
        ("look-up in random order", "cache/lookup_random", "map"),
    ]),
]


def read(file_name):
    """Counters by measure, then by size."""
    measures = {}
    with open(file_name, encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            name, _, size = run["name"].split("/iterations:")[0].rpartition("/")
            if "library" not in run or not size.isdigit():
                continue
            points = measures.setdefault(name, {})
            points[int(size)] = run
            # An edit is measured at one size and compared with another in the same run.
            if "at 1,000" in run:
                points.setdefault(1000, {"library": run["at 1,000"]})
    return measures


def draw(panel, axes, measures):
    title, size, unit, lines = panel
    for label, name, baseline in lines:
        points = measures[name]
        sizes = sorted(points)
        drawn, = axes.loglog(sizes, [points[at]["library"] for at in sizes], "o-", label=label,
                             markersize=4)
        if baseline:
            axes.loglog(sizes, [points[at][baseline] for at in sizes], "--",
                        color=drawn.get_color(), label=f"{label}: {baseline}")
    axes.set_title(title)
    axes.set_xlabel(size)
    axes.set_ylabel(unit)
    axes.set_ylim(5, 5000)
    axes.grid(True, which="major", alpha=0.3)
    axes.legend(fontsize=8)


def main():
    if len(sys.argv) != 3:
        sys.exit("usage: plot.py RESULTS.json FILE.svg")
    measures = read(sys.argv[1])
    missing = {name for panel in PANELS for _, name, _ in panel[3]} - measures.keys()
    if missing:
        sys.exit("plot.py: not in the results: " + ", ".join(sorted(missing)))
    plt.rcParams.update({"svg.hashsalt": "libvpath", "svg.fonttype": "none", "font.size": 9})
    figure, grid = plt.subplots(3, 2, figsize=(10, 12), layout="constrained")
    for panel, axes in zip(PANELS, grid.flat):
        draw(panel, axes, measures)
    text = io.StringIO()
    figure.savefig(text, metadata={"Date": None})
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        file.writelines(line.rstrip() + "\n" for line in text.getvalue().splitlines())


if __name__ == "__main__":
    main()
