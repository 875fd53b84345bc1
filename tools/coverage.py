#!/usr/bin/env python3
"""Which lines and branches of the library its contract tests reach.

usage: tools/coverage.py BUILD [-j JOBS]

BUILD is a build of the preset `coverage` with the contract tests. Runs them, prints the figures of each source, and
compares the lines that no test reaches with tests/contract/uncovered.txt, which has a reason for each. Fails for a line
that is not there, and for one there that is reached or gone.
"""

import argparse
import os
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
KNOWN = ROOT / "tests/contract/uncovered.txt"
PROGRAMS = ("contract_test", "common_test", "settings_killed_test")


def run_tests(build, profiles, jobs):
    """Each test case is a process. All write into a few files, which the runtime of the profiles merges."""
    profiles.mkdir(exist_ok=True)
    for old in profiles.glob("*.profraw"):
        old.unlink()
    log = profiles / "tests.log"
    with log.open("w") as output:
        done = subprocess.run(
            ["ctest", "--test-dir", build, "-R", f"^({'|'.join(PROGRAMS)})\\.", "-j", str(jobs),
             "--output-on-failure", "--no-tests=error"],
            env={**os.environ, "LLVM_PROFILE_FILE": f"{profiles}/%4m.profraw"}, stdout=output, stderr=output)
    if done.returncode:
        sys.exit(f"coverage: tests have failed, see {log}")


def export(build, profiles):
    """The counts of the library's sources as llvm-cov merges them: {source: ({line: count}, [count of each branch])}"""
    merged = profiles / "all.profdata"
    subprocess.run(["llvm-profdata", "merge", "-o", merged, *profiles.glob("*.profraw")], check=True)
    text = subprocess.run(
        ["llvm-cov", "export", "-format=lcov", "-instr-profile", merged, build / "src/libVarnelWebSDK.so",
         "-object", build / "tests/contract/common_test"],
        check=True, stdout=subprocess.PIPE, text=True).stdout
    sources, lines, branches = {}, {}, []
    for key, _, value in (line.partition(":") for line in text.splitlines()):
        if key == "SF":
            lines, branches = {}, []
            path = pathlib.Path(os.path.normpath(ROOT / value)) # the compiler is told to write relative ones
            if ROOT / "src" in path.parents:
                sources[str(path.relative_to(ROOT / "src"))] = (lines, branches)
        elif key == "DA":
            number, count = value.split(",")[:2]
            lines[int(number)] = int(count)
        elif key == "BRDA":
            count = value.split(",")[3]
            branches.append(0 if count == "-" else int(count))
    return sources


def percent(reached, of):
    return f"{reached:5} of {of:5}  {100 * reached / of if of else 100:6.1f} %"


def report(sources):
    totals = [0, 0, 0, 0]
    print(f"{'':45} {'lines':>23}   {'branches':>23}")
    for name, (lines, branches) in sorted(sources.items()):
        figures = [sum(map(bool, lines.values())), len(lines), sum(map(bool, branches)), len(branches)]
        totals = [total + figure for total, figure in zip(totals, figures)]
        print(f"{name:45} {percent(*figures[:2])}   {percent(*figures[2:])}")
    print(f"{'all':45} {percent(*totals[:2])}   {percent(*totals[2:])}")


def uncovered(sources):
    """Each line that no test reaches, with its source and the line above it: texts stay when lines are added before."""
    found = {}
    for name, (lines, _) in sorted(sources.items()):
        texts = (ROOT / "src" / name).read_text().splitlines()
        for number, count in sorted(lines.items()):
            text = texts[number - 1].strip()
            if count == 0 and re.search(r"\w", text):
                found.setdefault(f"{name}: {texts[number - 2].strip()} {text}", number)
    return found


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("-j", dest="jobs", type=int, default=os.cpu_count())
    options = parser.parse_args()
    build = options.build.resolve()
    profiles = build / "profiles"
    run_tests(build, profiles, options.jobs)
    sources = export(build, profiles)
    report(sources)

    found = uncovered(sources)
    known = {line for line in KNOWN.read_text().splitlines() if line and not line.startswith("#")}
    for place in found.keys() - known:
        print(f"no test reaches src/{place}  (line {found[place]})")
    for place in known - found.keys():
        print(f"{KNOWN.relative_to(ROOT)} has a line that is reached or gone: {place}")
    if found.keys() != known:
        sys.exit(1)
    print(f"{len(known)} lines that no test reaches, each with its reason in {KNOWN.relative_to(ROOT)}")


if __name__ == "__main__":
    main()
