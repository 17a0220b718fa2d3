#!/usr/bin/env python3
"""Runs clang-tidy over src/ for a build folder, two groups of files at a time; prints findings, and has status 1 then.

    tools/tidy.py build/release
    tools/tidy.py build/release --deep    with the static analyzer, which takes as long again

A file is checked again only if it, a header of ours that it includes, .clang-tidy or clang-tidy itself changed:
a clean file leaves an empty mark build/tidy/HASH. It reads the included headers from the record of a finished build.
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
# Options that only g++ knows are no finding, and g++ checks warnings already.
checks = [] if "--deep" in sys.argv else ["--checks=-clang-analyzer-*"]
most_in_group = 10
Job = collections.namedtuple("Job", "source mark options")
Group = collections.namedtuple("Group", "jobs names options")
extra = ["--extra-arg=-Wno-unknown-warning-option", "--extra-arg=-Wno-error"]


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


def own_names(source):
    """Returns the names that a source defines for itself. Sources that share one cannot be one translation unit."""
    names, inside = set(), False
    for line in source.read_text().splitlines():
        inside = inside and line != "}  // namespace" or line == "namespace {"
        if inside or line.startswith("static "):
            names.update(re.findall(r"^\S.*?\b(\w+)(?= ?[({=;\[])", line))
            names.update(re.findall(r"^(?:class|struct|enum|enum class|using) (\w+)", line))
    return names


def grouped(jobs):
    """Groups a few sources with the same options: most of the time goes into the headers, once for each group."""
    groups = []
    for job in jobs:
        names = own_names(job.source)
        for group in groups:
            if group.options == job.options and len(group.jobs) < most_in_group and not names & group.names:
                group.jobs.append(job)
                group.names.update(names)
                break
        else:
            groups.append(Group([job], names, job.options))
    return groups


def clang_tidy(source, *arguments):
    return subprocess.run(["clang-tidy", "--quiet", *checks, *extra, str(source), *arguments],
                          capture_output=True, text=True, check=False)


def look(group):
    """Returns the findings in the files of a group, each with its lines of explanation. If the group has any, or does
    not compile as one, its files are checked one at a time."""
    if len(group.jobs) > 1:
        whole = marks / f"{group.jobs[0].mark.name}.cpp"
        # Most files of the window have a guard of this name.
        whole.write_text("".join(f'#define kGuard kGuard{number}\n#include "{job.source}"  // NOLINT\n#undef kGuard\n'
                                 for number, job in enumerate(group.jobs)))
        clean = clang_tidy(whole, "--", *group.options).returncode == 0
        whole.unlink()
    findings = []
    for job in group.jobs:
        found = None if len(group.jobs) > 1 and clean else clang_tidy(job.source, "--", *group.options)
        if found is None or found.returncode == 0:
            job.mark.touch()
        else:
            findings += re.split(r"\n(?=/\S+: (?:error|warning): )", found.stdout.strip() or found.stderr.strip())
    return findings


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
        options, built = re.search(r" (-.*) -o (\S+) -c ", command["command"]).groups()
        mark = marks / key_of(source, headers[built], common + options.encode())
        keys.add(mark.name)
        if not mark.exists():
            jobs.append(Job(source, mark, shlex.split(options)))
    with concurrent.futures.ThreadPoolExecutor(2) as pool:
        # A fault in a header is found once for each file that includes the header.
        findings = dict.fromkeys(text for found in pool.map(look, grouped(jobs)) for text in found)
    for mark in marks.iterdir():
        if mark.name not in keys:
            mark.unlink()
    print("\n".join(findings))
    sys.exit(1 if findings else 0)


main()
