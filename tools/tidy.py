#!/usr/bin/env python3
"""Runs clang-tidy over src/ for a build folder, two compilations at a time; prints findings, and has status 1 then.

    tools/tidy.py build/release
    tools/tidy.py build/release --deep    with the static analyzer, which takes as long again

What the build compiles as one is checked as one. It is checked again only if a file of ours in it, .clang-tidy or
clang-tidy itself changed: what is clean leaves an empty mark build/tidy/HASH. The build must be finished, since its
record tells the included files.
"""
import collections
import concurrent.futures
import hashlib
import json
import pathlib
import re
import shlex
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
marks = root / "build" / "tidy"
# What is compiled as one includes sources. Without --deep the analyzer is off.
checks = ["--checks=-bugprone-suspicious-include" + ("" if "--deep" in sys.argv else ",-clang-analyzer-*")]
# Options that only g++ knows are no finding, and g++ checks warnings already.
extra = ["--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-Wno-error"]
Job = collections.namedtuple("Job", "source mark options")


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def included_headers(folder):
    """Maps each object file to the files of this project that were read for it."""
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


def clang_tidy(source, *arguments):
    return subprocess.run(["clang-tidy", "--quiet", *checks, *extra, str(source), *arguments],
                          capture_output=True, text=True, check=False)


def look(job):
    """Returns the findings in a source and in what it includes, each with its lines of explanation."""
    found = clang_tidy(job.source, "--", *job.options)
    if found.returncode == 0:
        job.mark.touch()
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
        if not any(source.is_relative_to(sources) for sources in (root / "src", folder / "src")):
            continue
        options, built = re.search(r" (-.*) -o (\S+) -c ", command["command"]).groups()
        mark = marks / key_of(source, headers[built], common + options.encode())
        keys.add(mark.name)
        if not mark.exists():
            jobs.append(Job(source, mark, shlex.split(options)))
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        # A fault in a header is found once for each file that includes the header.
        findings = dict.fromkeys(text for found in pool.map(look, jobs) for text in found)
    for mark in marks.iterdir():
        if mark.name not in keys:
            mark.unlink()
    print("\n".join(findings))
    sys.exit(1 if findings else 0)


main()
