"""Compares two exports of ncdu: the same tree, whatever the order of entries; an absent key is 0.

Usage: same_ncdu.py A B [KEY...]: the keys that are compared; without any, all but those of the header.
Prints the first differences; the exit status is 0 if there are none.
"""
import json
import sys

sys.setrecursionlimit(100000)


def load(path):
    with open(path, encoding="latin-1") as file:
        return json.load(file, strict=False)


def entries(tree, path, found, dev):
    """Puts each entry into `found`, by its path; the device is that of the folder above unless it is told."""
    info, below = (tree[0], tree[1:]) if isinstance(tree, list) else (tree, None)
    path = path + "/" + info["name"]
    dev = info.get("dev", dev)
    facts = {key: value for key, value in info.items() if key != "name"}
    facts["dev"] = dev
    facts["folder"] = below is not None
    found[path] = facts
    for child in below or []:
        entries(child, path, found, dev)


def main():
    trees = []
    for path in sys.argv[1:3]:
        content = load(path)
        assert content[0] == 1, content[0]
        found = {}
        entries(content[3], "", found, 0)
        trees.append(found)
    keys = sys.argv[3:] or ["folder", "dev", "asize", "dsize", "ino", "nlink", "hlnkc", "notreg", "read_error", "excluded", "uid", "mtime"]
    differences = 0
    for path in sorted(set(trees[0]) | set(trees[1])):
        sides = [tree.get(path) for tree in trees]
        views = [side and {key: side.get(key) or 0 for key in keys} for side in sides]
        if views[0] != views[1]:
            differences += 1
            if differences <= 5:
                print(repr(path), sides[0], sides[1], sep="\n  ")
    print(len(trees[0]), "entries,", differences, "differences")
    return 1 if differences else 0


sys.exit(main())
