#!/usr/bin/env python3
"""Measures removing a tree against "rm -rf" on its twin; prints a Markdown table.

    bench/removing.py DIR                      200,000 files in 20,000 folders, made anew in DIR for each round
    bench/removing.py DIR --folders 100000 --rounds 3

The two take turns in coming first, so that other work on the machine, and pending writes of the file system, affect
both alike. The table shows medians.
"""
import argparse
import os
import pathlib
import shutil
import statistics
import subprocess
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
FILES_OF_A_FOLDER = 10
FOLDERS_OF_A_GROUP = 100


def make(root, folders):
    for number in range(folders):
        folder = root / f"g{number // FOLDERS_OF_A_GROUP}" / f"d{number}"
        folder.mkdir(parents=True)
        for file in range(FILES_OF_A_FOLDER):
            os.close(os.open(folder / f"file{file:04d}.dat", os.O_CREAT | os.O_WRONLY, 0o644))


def ours(program, tree):
    out = subprocess.run([program, tree], check=True, stdout=subprocess.PIPE, text=True).stdout
    return {name: float(value) for name, value in map(str.split, out.splitlines())}


def theirs(tree):
    start = time.monotonic()
    subprocess.run(["rm", "-rf", tree], check=True)
    return time.monotonic() - start


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("dir", type=pathlib.Path)
    parser.add_argument("--folders", type=int, default=20000)
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--build", type=pathlib.Path, default=ROOT / "build" / "release")
    options = parser.parse_args()
    program = options.build / "bench" / "bench_removing"
    work = options.dir / "removing"
    shutil.rmtree(work, ignore_errors=True)
    runs, rm = [], []
    for number in range(options.rounds):
        for name in ("ours", "twin"):
            make(work / name, options.folders)
        os.sync()
        steps = [lambda: runs.append(ours(program, work / "ours")), lambda: rm.append(theirs(work / "twin"))]
        for step in steps if number % 2 == 0 else reversed(steps):
            step()
            os.sync()
    shutil.rmtree(work)
    middle = {name: statistics.median(run[name] for run in runs) for name in runs[0]}
    ratio = statistics.median(run["seconds"] / other for run, other in zip(runs, rm))
    files = options.folders * FILES_OF_A_FOLDER
    print(f"| {files:,} files in {options.folders:,} folders | ours, s | rm -rf, s | ratio | logic waits at most, ms |"
          " grew by, MiB |")
    print("|---|---|---|---|---|---|")
    print(f"| medians of {options.rounds} | {middle['seconds']:.2f} | {statistics.median(rm):.2f} | {ratio:.2f} |"
          f" {middle['longest_ms']:.0f} | {middle['memory_kib'] / 1024:.1f} |")


if __name__ == "__main__":
    main()
