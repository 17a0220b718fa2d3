#!/usr/bin/env python3
"""Measures the window against what it has to reach; prints a Markdown table.

    bench/window.py TREE                 TREE as bench/run DIR --keep leaves it, such as DIR/1m
    bench/window.py TREE --rounds 5 --only scan,start,clicks,looks,rows,lists,files,analyse,preview,operations,printing,map,others
    bench/window.py TREE --wide FOLDER    FOLDER holds 500,000 files, such as DIR/wide: for "files"

Everything except "others" runs on no screen (Qt's "offscreen"), with the module of the built program. "others" starts
the whole program, and qdirstat and baobab if they are installed, on a screen of Xvfb with openbox; a scan has ended
when their processes use no CPU any more. The commands run in turn, round after round, so that other work on the
machine affects all alike. The table shows medians.
"""
import argparse
import os
import pathlib
import shutil
import signal
import statistics
import subprocess
import sys
import tempfile
import time

import removing

ROOT = pathlib.Path(__file__).resolve().parent.parent
STARTS = 15
IDLE_SECONDS = 1.5
LONGEST_SECONDS = 120
# Smaller shares of a processor are due to a blinking cursor, not to a scan.
BUSY_SHARE = 0.2
LOOK_SECONDS = 0.05
# The CPU time in seconds; a program that used less has not read the tree.
LEAST_SCAN_SECONDS = 1


def say(text):
    print(text, file=sys.stderr, flush=True)


class Bench:
    def __init__(self, options, home):
        self.options = options
        self.build = pathlib.Path(options.build).resolve()
        self.modules = self.build / "src"
        self.home = home
        (home / "Harborlantern.ini").write_text("[Allgemein]\r\nLang=7\r\n", newline="")
        self.environment = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "HOME": str(home),
                            "XDG_RUNTIME_DIR": str(home), "HARBORLANTERN_HOME": str(home),
                            "HARBORLANTERN_MODULES": str(self.modules), "QT_QPA_PLATFORM": "offscreen"}

    def inside(self, *arguments):
        """Name -> number of one run of the program that measures from inside."""
        run = subprocess.run([self.build / "bench" / "bench_window", *arguments], env=self.environment, check=True,
                             stdout=subprocess.PIPE, text=True)
        return {name: float(value) for name, value in map(str.split, run.stdout.splitlines())}

    def silent(self):
        """Seconds of the whole program with "-s", from start to end."""
        start = time.monotonic()
        subprocess.run([self.modules / "harborlantern", "-s", self.home / "report.csv", self.options.tree],
                       env=self.environment, check=True)
        return time.monotonic() - start

    def scan(self):
        whole, runs, window, peaks = [], [], [], []
        for _ in range(self.options.rounds):
            whole.append(self.silent())
            runs.append(self.inside("silent", self.options.tree)["silent"])
            shown = self.inside("scan", self.options.tree)
            window.append(shown["scan"])
            peaks.append(shown["peak"])
        seconds = statistics.median(window)
        yield "scan in the window, s", seconds, None
        yield "the same over `-s`, the whole program", ratio(window, whole), 1.15
        yield "the same over the run of `-s` alone, without its report", ratio(window, runs), 1.15
        yield "peak memory of that run, MiB", statistics.median(peaks), 90

    def start(self):
        runs = [self.inside("start", str(time.monotonic_ns())) for _ in range(STARTS)]
        yield "from start to the first painted window, ms", median_of(runs, "start"), 60
        yield "until the drives stand in it and it is ready, ms", median_of(runs, "ready"), None

    def clicks(self):
        runs = [self.inside("clicks", self.options.tree) for _ in range(self.options.rounds)]
        yield "longest wait of a click during the run, ms", median_of(runs, "longest"), 50
        yield "99 of 100 wait less than, ms", median_of(runs, "of100"), None

    def looks(self):
        runs = [self.inside("looks", self.options.tree) for _ in range(self.options.rounds)]
        yield "a click or the wheel during the run until painted, 95 of 100 take less than, ms", median_of(runs, "of20"), 50
        yield "half of them", median_of(runs, "half"), None
        yield "the longest", median_of(runs, "longest"), None

    def rows(self):
        runs = [self.inside("rows") for _ in range(self.options.rounds)]
        for name, key, limit, factor in (
                ("1,000,000 rows: expand all, s", "expand", 0.3, 1),
                ("sort by a title click, numbers, s", "sort_numbers", 0.6, 1),
                ("the same again, the other way round, s", "sort_numbers_again", 0.6, 1),
                ("sort by a title click, texts, s", "sort_texts", 1.2, 1),
                ("the same again, the other way round, s", "sort_texts_again", 1.2, 1),
                ("scroll by a page, ms", "page", 10, 1e3),
                ("a changed cell until painted, ms", "cell", None, 1),
                ("a folder folded or unfolded until painted, ms", "fold", None, 1),
                ("a row added and removed until painted, ms", "add_remove", None, 1),
                ("search that finds nothing, s", "search", 0.3, 1),
                ("memory of the view, bytes a row", "bytes", 16, 1)):
            yield name, median_of(runs, key) * factor, limit

    def lists(self):
        """Five in a hundred names of the tree should be further names: make_tree.py --hardlinks 5."""
        runs = {"lists": [], "nolists": []}
        for _ in range(self.options.rounds):
            for mode, results in runs.items():
                results.append(self.inside(mode, self.options.tree))
        full = runs["lists"]
        yield "scan that fills three lists, s", median_of(full, "scan"), None
        yield "the same over a scan that fills none", ratio(*([run["scan"] for run in each] for each in runs.values())), 1.25
        rows = median_of(full, "hardlinks")
        yield "rows of hardlinks", rows, None
        more = median_of(full, "resident") - median_of(runs["nolists"], "resident")
        yield "memory of a row of theirs with its folder and its view, bytes", more / rows, None

    def files(self):
        if not self.options.wide:
            return say("Needs --wide.")
        runs, floors = [], []
        for _ in range(self.options.rounds):
            floors.append(self.floor(self.options.wide))
            runs.append(self.inside("files", self.options.wide))
        clicks = [self.inside("fileclicks", self.options.wide) for _ in range(self.options.rounds)]
        yield "files of a folder that are listed", median_of(runs, "rows"), None
        yield "until they stand sorted, s", median_of(runs, "list"), None
        yield "the same over the floor", ratio([run["list"] for run in runs], floors), 3
        yield "longest wait of a click meanwhile, ms", median_of(clicks, "longest"), 100
        for what, key, limit in (("numbers", "sort_numbers", 0.5), ("dates", "sort_dates", 0.5), ("names", "sort_names", 1.5),
                                 ("types", "sort_types", 1.5)):
            yield f"sort of them by a title click, {what}, s", median_of(runs, key), limit
            yield "the same again, the other way round, s", median_of(runs, key + "_again"), limit
        yield "memory of a row and its view, bytes", median_of(runs, "bytes"), 150

    def floor(self, folder):
        start = time.monotonic()
        subprocess.run([self.build / "bench" / "bench_floor", folder], check=True, stdout=subprocess.DEVNULL)
        return time.monotonic() - start

    def analyse(self):
        runs = [self.inside("analyse") for _ in range(self.options.rounds)]
        yield "names of hardlinks brought together, 200,000, s", median_of(runs, "analyse"), 0.5

    def preview(self):
        runs = []
        for _ in range(self.options.rounds):
            run = subprocess.run([self.build / "bench" / "bench_preview", self.home, self.modules],
                                 env=self.environment, check=True, stdout=subprocess.PIPE, text=True)
            runs.append({name: float(value) for name, value in map(str.split, run.stdout.splitlines())})
        for name, what, limit in (("text", "a text of 1 MB", 100), ("picture", "a JPEG of 12 megapixels", 300),
                                  ("pages", "a PDF of 20 pages", 300)):
            yield f"preview of {what} until drawn, ms", median_of(runs, name), limit
            yield "the first of its kind, ms", median_of(runs, f"{name}_first"), None

    def operations(self):
        """Makes and removes trees of 200,000 files beside the home of the run."""
        runs = []
        for _ in range(self.options.rounds):
            tree = self.home / "deleting" / "tree"
            removing.make(tree, 20000)
            os.sync()
            runs.append(self.inside("delete", tree))
        yield "200,000 files deleted in the window, s", median_of(runs, "delete"), None
        yield "longest wait of a click meanwhile, ms", median_of(runs, "longest"), 100
        yield "99 of 100 wait less than, ms", median_of(runs, "of100"), None
        yield "the process grew by, MiB", median_of(runs, "grown"), 16
        tree.mkdir(parents=True)
        (tree / "file.txt").write_text("text")
        menus = [self.inside("menus", tree) for _ in range(self.options.rounds)]
        for name in ("report", "drives", "files"):
            yield f"menu of the {name}, from the click until it is painted, ms", median_of(menus, name), 100
            yield "the first of its kind, ms", median_of(menus, f"{name}_first"), 100

    def printing(self):
        def run(*arguments):
            output = subprocess.run([self.build / "bench" / "bench_print", *arguments, self.home / "out.pdf"],
                                    env=self.environment, check=True, stdout=subprocess.PIPE, text=True).stdout
            return {name: float(value) for name, value in map(str.split, output.splitlines())}

        for rows, limit, memory in (("10000", 1, 200), ("1000000", None, None)):
            runs = [run("preview", rows) for _ in range(self.options.rounds)]
            yield f"preview of {int(rows):,} rows until the first page is painted, s", median_of(runs, "first"), limit
            yield "memory that it takes, MiB", median_of(runs, "memory"), memory
            yield "the last page of it, s", median_of(runs, "last"), None
        runs = [run("pdf", "100000") for _ in range(self.options.rounds)]
        yield "PDF of 100,000 rows, s", median_of(runs, "seconds"), 20
        yield "pages of it", median_of(runs, "pages"), None
        yield "its size, MiB", median_of(runs, "bytes") / 2**20, None
        yield "peak memory of that run, rows and all, MiB", median_of(runs, "peak"), None

    def map(self):
        runs = [self.inside("map", self.options.tree) for _ in range(self.options.rounds)]
        yield "entries of the map, and files that have tiles of their own", median_of(runs, "entries"), None
        yield "the latter", median_of(runs, "kept"), None
        for width, limit in ((1600, 60), (3840, 150)):
            at = f"{width} pixels wide"
            yield f"the map, {at}: laid out, ms", median_of(runs, f"layout_{width}"), None
            yield f"its colours chosen, {at}, ms", median_of(runs, f"colours_{width}"), None
            yield f"painted, {at}, ms", median_of(runs, f"paint_{width}"), None
            yield f"all of that, {at}, ms", median_of(runs, f"whole_{width}"), limit
            yield f"its tiles, {at}", median_of(runs, f"tiles_{width}"), None
        yield "another row selected, until the map is painted, ms", median_of(runs, "select"), 16
        yield "a size changed, until the map is painted, ms", median_of(runs, "change"), 16

    def others(self):
        with Screen() as display:
            programs = {"harborlantern": self.modules / "harborlantern"}
            programs |= {name: shutil.which(name) for name in ("qdirstat", "baobab") if shutil.which(name)}
            times = {name: [] for name in programs}
            environment = self.environment | {"DISPLAY": display, "QT_QPA_PLATFORM": "xcb", "GDK_BACKEND": "x11"}
            times["with the map"] = []
            settings = self.home / "Harborlantern.ini"
            without = settings.read_bytes()
            for _ in range(self.options.rounds):
                for name, program in programs.items():
                    times[name].append(until_idle([program, self.options.tree], environment))
                # qdirstat shows its map, too.
                settings.write_bytes(without + b"[Optionen]\r\nMapVisible=1\r\n")
                times["with the map"].append(until_idle([programs["harborlantern"], self.options.tree], environment))
                settings.write_bytes(without)
        yield "whole program on a screen until idle, s", statistics.median(times["harborlantern"]), None
        yield "the same with the map, s", statistics.median(times["with the map"]), None
        for name, limit in (("qdirstat", 0.35), ("baobab", 0.15)):
            if name not in times:
                say(f"{name} is not installed.")
                continue
            yield f"`{name}` until idle, s", statistics.median(times[name]), None
            yield f"the window over `{name}`", ratio(times["harborlantern"], times[name]), limit


class Screen:
    """A screen of Xvfb, with a window manager that makes windows active, for as long as the block runs."""

    def __enter__(self):
        reader, writer = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writer), "-screen", "0", "1280x900x24"],
                                       pass_fds=[writer], stderr=subprocess.DEVNULL)
        os.close(writer)
        with os.fdopen(reader) as number:
            display = ":" + number.readline().strip()
        self.manager = subprocess.Popen(["openbox"], env=os.environ | {"DISPLAY": display}, stderr=subprocess.DEVNULL)
        time.sleep(1)
        return display

    def __exit__(self, *_):
        for program in (self.manager, self.server):
            program.terminate()
            program.wait()


def cpu_seconds(process):
    """User and system time that a process and its threads have used."""
    fields = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def until_idle(command, environment):
    """Seconds from the start of a program to the moment from which it uses no CPU."""
    start = busy = time.monotonic()
    program = subprocess.Popen(command, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        used = 0.0
        while (now := time.monotonic()) - busy < IDLE_SECONDS:
            if program.poll() is not None or now - start > LONGEST_SECONDS:
                sys.exit(f"{command[0]} ended, or never became idle")
            if (more := cpu_seconds(program)) - used > BUSY_SHARE * LOOK_SECONDS:
                busy = now
            used = more
            time.sleep(LOOK_SECONDS)
        if used < LEAST_SCAN_SECONDS:
            sys.exit(f"{command[0]} read nothing: it used {used} s of CPU")
        return busy - start
    finally:
        program.kill()
        program.wait()


def ratio(values, others):
    return statistics.median(a / b for a, b in zip(values, others))


def median_of(runs, key):
    return statistics.median(run[key] for run in runs)


def parsed():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("tree", metavar="TREE")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--only", default="scan,start,clicks,looks,rows,lists,files,analyse,preview,operations,printing,map,others")
    parser.add_argument("--wide", metavar="FOLDER")
    parser.add_argument("--build", default=str(ROOT / "build" / "release"))
    options = parser.parse_args()
    options.tree = os.path.abspath(options.tree)
    return options


def main():
    options = parsed()
    sys.stdout.reconfigure(line_buffering=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))  # So the folder is removed.
    with tempfile.TemporaryDirectory(prefix="harborlantern-window.") as home:
        bench = Bench(options, pathlib.Path(home))
        print("| what | measured | at most |\n|---|---|---|")
        for part in options.only.split(","):
            say(f"{part} ...")
            for name, value, limit in getattr(bench, part)():
                print(f"| {name} | {value:.3g} | {'' if limit is None else limit} |")


main()
