#!/usr/bin/env python3
"""Measures what is written for other programs and for later, on a tree that is there.

    bench/saved.py TREE [--program PROGRAM] [--rounds N]

The commands run in turn, round after round, so that other work on the machine affects all of them alike. Reading what was
saved before is measured without the scan that made it. The table shows medians of the wall time, and the peak of memory.
Opening is the time of a report of one level; "floor" is the start on an empty folder, which is in each of the times.
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


def compiled_measure(folder):
    """The program made of bench/measure.cpp, which says why it is needed."""
    binary = folder / "measure"
    source = ROOT / "bench/measure.cpp"
    subprocess.run(["g++", "-std=c++20", "-O2", "-D_GNU_SOURCE", "-static", source, "-o", binary], check=True)
    return str(binary)


def run(measure, command, environment):
    """(seconds, MiB) of a command that ends well."""
    done = subprocess.run([measure, *command], env=environment, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    status, wall, _, _, peak = map(int, done.stdout.split())
    if status != 0:
        raise SystemExit(f"{command} ended with {status}")
    return wall / 1e6, peak / 1024


def commands_for(program, tree, folder):
    empty, scan, export = folder / "empty", folder / "x.hlscan", folder / "x.ncdu.json"
    empty.mkdir()
    commands = {
        "floor: -s of an empty folder": [program, "-s", folder / "e.csv", empty],
        "-s": [program, "-s", folder / "x.csv", tree],
        "-s2": [program, "-s2", folder / "x2.csv", tree],
        "-s --format=jsonl": [program, "-s", folder / "x.jsonl", tree],
        "-s --format=scan": [program, "-s", scan, tree],
        "-s --format=ncdu": [program, "-s", export, tree],
        "-s --compare": [program, "-s", "--compare", scan, folder / "g.csv", tree],
        "opening the scan": [program, "-s1", "--open", scan, folder / "o.csv"],
        "opening ncdu's JSON": [program, "-s1", "--open", export, folder / "o.csv"],
    }
    if shutil.which("ncdu"):
        commands["ncdu -0xo /dev/null"] = ["ncdu", "-0xo", "/dev/null", tree]
    return {name: [str(part) for part in command] for name, command in commands.items()}


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("tree")
    parser.add_argument("--program", default=ROOT / "build/release/src/harborlantern")
    parser.add_argument("--rounds", type=int, default=5)
    options = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        environment = {"PATH": os.environ["PATH"], "LC_ALL": "C", "HOME": name, "HARBORLANTERN_HOME": name}
        commands = commands_for(options.program, options.tree, folder)
        results = {each: [] for each in commands}
        measure = compiled_measure(folder)
        for number in range(options.rounds + 1):
            for each, command in commands.items():
                measured = run(measure, command, environment)
                if number > 0:  # The first round fills the caches.
                    results[each].append(measured)
        folders = sum(1 for line in open(folder / "x.jsonl", "rb") if line.startswith(b'{"k":"f"'))
        size = (folder / "x.hlscan").stat().st_size
    print(f"{folders:,} folders; a saved scan of {size:,} bytes, {size / folders:.1f} a folder\n")
    plain = statistics.median(seconds for seconds, _ in results["-s"])
    print("| command | wall, s | ÷ -s | peak, MiB |\n|---|---|---|---|")
    for each, values in results.items():
        seconds = statistics.median(value[0] for value in values)
        print(f"| {each} | {seconds:.3f} | {seconds / plain:.2f} | {max(value[1] for value in values):.1f} |")


main()
