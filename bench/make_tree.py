#!/usr/bin/env python3
"""Makes a tree of folders and sparse files whose totals are known, and prints them as JSON.

    make_tree.py tree DIR [--files N] [--folders N] [--hardlinks PERCENT] [--symlinks PERCENT] [--names MEAN] [--seed N]
    make_tree.py wide DIR [--files N] ...      all files in DIR itself
    make_tree.py deep DIR [--folders N]        a chain of folders with one file each

The same arguments make the same tree. DIR must not exist yet. Of the files, the given shares are further names of
an earlier file, and symbolic links to a neighbour (every tenth leads nowhere). With --names the names of files have this
many bytes in the mean, most of them fewer, some up to 60. The totals:

    files        entries that are no folder       folders     folders below DIR
    bytes        apparent sizes, every name of a file in full, a link with the length of its text
    bytes_once   the same, a file with several names once
"""
import argparse
import bisect
import itertools
import json
import math
import os
import random

DEEPEST = 12
LARGEST_FILE = 1 << 32
LONGEST_NAME = 60
NAME_SPREAD = 0.55  # of the logarithm of a name's length, much as the files of a system have it
WORDS = ("report", "photo", "index", "cache", "module", "draft", "invoice", "notes", "layer", "sample", "a", "old")
ENDINGS = ("", ".txt", ".jpg", ".cpp", ".h", ".tar.gz", ".log", ".json", ".o", ".py")


class Totals:
    def __init__(self):
        self.files = self.folders = self.bytes = self.bytes_once = 0

    def add(self, size, seen_before=False):
        self.files += 1
        self.bytes += size
        self.bytes_once += 0 if seen_before else size


def file_size(rng):
    """Returns a log-normal size with a median of 4 KiB: few large files hold most of the bytes. One in 30 is empty."""
    return 0 if rng.random() < 1 / 30 else min(int(rng.lognormvariate(8.3, 2.2)), LARGEST_FILE)


def long_name(rng, mean, end):
    """Returns a name of some words with this end; lengths are log-normal."""
    wanted = rng.lognormvariate(math.log(mean) - NAME_SPREAD ** 2 / 2, NAME_SPREAD)
    length = min(max(int(wanted), len(end) + 1), LONGEST_NAME)
    return "-".join(rng.choices(WORDS, k=LONGEST_NAME // 2))[: length - len(end)] + end


def make_file(folder_fd, name, size):
    fd = os.open(name, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o644, dir_fd=folder_fd)
    os.ftruncate(fd, size)
    os.close(fd)


class Filler:
    """Puts files into folders and counts them."""

    def __init__(self, rng, options, totals):
        self.rng, self.options, self.totals = rng, options, totals
        self.number = 0
        self.linkable = []  # (path, size) of some files that may get another name

    def fill(self, path, count):
        fd = os.open(path, os.O_RDONLY | os.O_DIRECTORY)
        neighbour = None
        for index in range(count):
            self.number += 1
            name = self.name(index)
            dice = self.rng.uniform(0, 100)
            if dice < self.options.symlinks and neighbour is not None:
                target = "nowhere" if self.number % 10 == 0 else neighbour
                os.symlink(target, name, dir_fd=fd)
                self.totals.add(len(target))
            elif dice > 100 - self.options.hardlinks and self.linkable:
                other, size = self.rng.choice(self.linkable)
                os.link(other, name, dst_dir_fd=fd)
                self.totals.add(size, seen_before=True)
            else:
                size = file_size(self.rng)
                make_file(fd, name, size)
                self.totals.add(size)
                neighbour = name
                self.remember(os.path.join(path, name), size)
        os.close(fd)

    def name(self, index):
        if self.options.names:
            return long_name(self.rng, self.options.names, f"{index}{self.rng.choice(ENDINGS)}")
        return f"{self.rng.choice(WORDS)}-{self.number}{self.rng.choice(ENDINGS)}"

    def remember(self, path, size):
        if len(self.linkable) < 1000:
            self.linkable.append((path, size))
        elif self.number % 16 == 0:
            self.linkable[self.rng.randrange(1000)] = (path, size)


def make_folders(rng, top, count, totals):
    """Makes folders of level 1 to 12, most of them at 3 to 6. Returns all of them, DIR first."""
    levels = [[top]]
    folders = [top]
    for number in range(count):
        wanted = min(1 + int(rng.gammavariate(4.5, 1.0)), DEEPEST)
        level = min(wanted, len(levels))
        path = os.path.join(rng.choice(levels[level - 1]), f"{rng.choice(WORDS)}{number}")
        os.mkdir(path)
        if level == len(levels):
            levels.append([])
        levels[level].append(path)
        folders.append(path)
    totals.folders = count
    return folders


def share_out(rng, files, folders):
    """Returns how many files each folder gets: many get none or a few, some get hundreds."""
    bounds = list(itertools.accumulate(rng.lognormvariate(0, 1.2) for _ in range(folders)))
    counts = [0] * folders
    for _ in range(files):
        counts[bisect.bisect(bounds, rng.uniform(0, bounds[-1]), 0, folders - 1)] += 1
    return counts


def make_tree(options, rng, totals):
    os.mkdir(options.dir)
    folders = make_folders(rng, options.dir, options.folders, totals)
    filler = Filler(rng, options, totals)
    for path, count in zip(folders, share_out(rng, options.files, len(folders))):
        filler.fill(path, count)


def make_wide(options, rng, totals):
    os.mkdir(options.dir)
    Filler(rng, options, totals).fill(options.dir, options.files)


def make_deep(options, rng, totals):
    os.mkdir(options.dir)
    fd = os.open(options.dir, os.O_RDONLY | os.O_DIRECTORY)
    for _ in range(options.folders):
        os.mkdir("d", dir_fd=fd)
        below = os.open("d", os.O_RDONLY | os.O_DIRECTORY, dir_fd=fd)
        os.close(fd)
        fd = below
        size = file_size(rng)
        make_file(fd, "f", size)
        totals.folders += 1
        totals.add(size)
    os.close(fd)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("kind", choices=("tree", "wide", "deep"))
    parser.add_argument("dir")
    parser.add_argument("--files", type=int, default=10_000)
    parser.add_argument("--folders", type=int, default=1_000)
    parser.add_argument("--hardlinks", type=float, default=0.5, metavar="PERCENT")
    parser.add_argument("--symlinks", type=float, default=1, metavar="PERCENT")
    parser.add_argument("--names", type=float, metavar="MEAN")
    parser.add_argument("--seed", type=int, default=1)
    options = parser.parse_args()
    totals = Totals()
    {"tree": make_tree, "wide": make_wide, "deep": make_deep}[options.kind](options, random.Random(options.seed), totals)
    print(json.dumps(vars(totals)))


if __name__ == "__main__":
    main()
