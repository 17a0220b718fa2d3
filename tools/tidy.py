#!/usr/bin/env python3
"""Runs clang-tidy over src/ of a build folder, two files at a time; prints what it finds, status 1 if anything.

    tools/tidy.py build/release
    tools/tidy.py build/release --deep    with the static analyzer, which takes as long again

A file is looked at again only if it, a header of ours that it includes, .clang-tidy or clang-tidy itself changed:
a file that was clean leaves an empty mark build/tidy/HASH. Needs a finished build, whose record of included
headers it reads.
"""
import concurrent.futures
import hashlib
import json
import pathlib
import re
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
marks = root / "build" / "tidy"
# Options that g++ alone knows are no finding, and g++ judges warnings already.
checks = [] if "--deep" in sys.argv else ["--checks=-clang-analyzer-*"]
extra = ["--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-Wno-error"]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def included_headers(folder):
    """Object file -> files of this project that were read for it."""
    headers, current = {}, None
    for line in output("ninja", "-C", str(folder), "-t", "deps").splitlines():
        if line and not line.startswith((" ", "ninja:")):
            current = headers.setdefault(line.split(":")[0], [])
        elif line.strip() and current is not None:
            path = (folder / line.strip()).resolve()
            if path.is_relative_to(root):
                current.append(path)
    return headers


def key_of(source, headers, common):
    digest = hashlib.sha256(common)
    for path in sorted({source, *headers}):
        digest.update(str(path.relative_to(root)).encode() + b"\0" + path.read_bytes() + b"\0")
    return digest.hexdigest()


def look(job):
    """The findings in one file, each with its lines of explanation."""
    source, mark, folder = job
    found = subprocess.run(["clang-tidy", "--quiet", "-p", str(folder), *checks, *extra, str(source)],
                           capture_output=True, text=True, check=False)
    if found.returncode == 0:
        mark.touch()
        return []
    return re.split(r"\n(?=/\S+: (?:error|warning): )", found.stdout.strip() or found.stderr.strip())


def main():
    folder = pathlib.Path(sys.argv[1]).resolve()
    marks.mkdir(parents=True, exist_ok=True)
    common = (root / ".clang-tidy").read_bytes() + output("clang-tidy", "--version").encode() + "".join(checks).encode()
    headers = included_headers(folder)
    jobs, keys = [], set()
    for command in json.loads((folder / "compile_commands.json").read_text()):
        source = pathlib.Path(command["file"])
        if not source.is_relative_to(root / "src"):
            continue
        built = re.search(r" -o (\S+) ", command["command"])[1]
        mark = marks / key_of(source, headers[built], common + command["command"].encode())
        keys.add(mark.name)
        if not mark.exists():
            jobs.append((source, mark, folder))
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        # What is wrong in a header is found once for each file that includes it.
        findings = dict.fromkeys(text for found in pool.map(look, jobs) for text in found)
    for mark in marks.iterdir():
        if mark.name not in keys:
            mark.unlink()
    print("\n".join(findings))
    sys.exit(1 if findings else 0)


main()
