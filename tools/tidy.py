#!/usr/bin/env python3
"""Runs clang-tidy over the sources of a build, and leaves out what it found clean before.

usage: tools/tidy.py [-j JOBS] BUILD FOLDER…

FOLDER is below the root: src, tests. A result is kept by what it depends on: the clang-tidy that ran, its
configuration, the compile commands, the source and every header that it includes. The root's path does not count, so
that clones share their results. Only clean results are kept, in ${XDG_CACHE_HOME:-~/.cache}/varnel/clang-tidy.
"""
import argparse
import hashlib
import json
import os
import re
import shlex
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor, as_completed
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
DAYS_KEPT = 60  # of a result that nobody asks for


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def read_ninja_deps(build):
    """The headers of each object, as the compiler named them when Ninja last ran it."""
    deps, headers = {}, None
    for line in output_of("ninja", "-C", build, "-t", "deps").splitlines():
        start = re.match(r"(\S.*): #deps \d+, .*\((VALID|STALE)\)$", line)
        if start:
            headers = []
            if start[2] == "VALID":
                deps[start[1]] = headers
        elif line.startswith("    "):
            headers.append(line[4:])
    return deps


def deps_of(entry, ninja_deps):
    command = shlex.split(entry["command"])
    output = command.index("-o")
    object_file = Path(entry["directory"], command[output + 1])
    deps = absolute(entry, ninja_deps.get(command[output + 1], []))
    if not deps or not is_newer(object_file, deps):  # not built, or not built again: the compiler tells
        del command[output : output + 2]
        rule = output_of(*command, "-M", cwd=entry["directory"])
        deps = absolute(entry, rule.replace("\\\n", " ").split(": ", 1)[1].split())
    return deps


def absolute(entry, headers):
    return {os.path.realpath(os.path.join(entry["directory"], header)) for header in headers}


def is_newer(object_file, sources):
    """False also when one of the files is gone."""
    try:
        built = object_file.stat().st_mtime_ns
        return all(os.stat(source).st_mtime_ns <= built for source in sources)
    except FileNotFoundError:
        return False


def configurations_of(source):
    for folder in source.parents:
        if (folder / ".clang-tidy").exists():
            yield str(folder / ".clang-tidy")
        if folder == ROOT:
            return


class Digests:
    """Hashes each file once."""

    def __init__(self):
        self.known = {}

    def of(self, path):
        if path not in self.known:
            self.known[path] = hashlib.sha256(Path(path).read_bytes()).hexdigest()
        return self.known[path]


class Source:
    def __init__(self, path, entries, ninja_deps):
        self.path = Path(path)
        self.commands = sorted(entry["command"].replace(str(ROOT), "") for entry in entries)
        self.files = {path, *configurations_of(self.path)}
        for entry in entries:
            self.files |= deps_of(entry, ninja_deps)

    def key(self, tool, digests):
        facts = [tool, *self.commands]
        facts += sorted(f"{path.replace(str(ROOT), '')} {digests.of(path)}" for path in self.files)
        return hashlib.sha256("\n".join(facts).encode()).hexdigest()


class Cache:
    def __init__(self):
        home = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
        self.folder = Path(home, "varnel", "clang-tidy")

    def has(self, key):
        entry = self.folder / key
        if not entry.exists():
            return False
        os.utime(entry)
        return True

    def add(self, key):
        self.folder.mkdir(parents=True, exist_ok=True)
        (self.folder / key).touch()

    def forget_old(self):
        oldest = time.time() - DAYS_KEPT * 24 * 3600
        for entry in self.folder.glob("*"):
            if entry.stat().st_mtime < oldest:
                entry.unlink(missing_ok=True)


def run_clang_tidy(build, source):
    start = time.monotonic()
    run = subprocess.run(
        ["clang-tidy", "-quiet", "-p", build, source.path],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
    )
    # Without the counts of what was found, and meant to be ignored, in the headers of others.
    text = re.sub(r"^\d+ warnings? generated\.\n", "", run.stdout, flags=re.MULTILINE)
    return run.returncode == 0, text, time.monotonic() - start


def read_sources(build, folders):
    prefixes = tuple(f"{ROOT}/{folder}/" for folder in folders)
    entries = {}
    for entry in json.loads(Path(build, "compile_commands.json").read_text()):
        if entry["file"].startswith(prefixes):
            entries.setdefault(entry["file"], []).append(entry)
    ninja_deps = read_ninja_deps(build)
    return [Source(path, entries[path], ninja_deps) for path in entries]


def main():
    parser = argparse.ArgumentParser(usage=__doc__)
    parser.add_argument("-j", type=int, default=os.cpu_count())
    parser.add_argument("build")
    parser.add_argument("folders", nargs="+")
    options = parser.parse_args()

    tool = re.search(r".*version.*", output_of("clang-tidy", "--version"))[0] + Digests().of(__file__)
    cache, digests = Cache(), Digests()
    sources = read_sources(options.build, options.folders)
    if not sources:
        sys.exit(f"tidy: {options.build} compiles nothing in {' '.join(options.folders)}")
    waiting = [source for source in sources if not cache.has(source.key(tool, digests))]
    waiting.sort(key=lambda source: source.path.stat().st_size, reverse=True)  # none that takes long is left for the end
    print(f"{len(sources)} sources, {len(sources) - len(waiting)} of them found clean before", flush=True)

    failed = 0
    with ThreadPoolExecutor(options.j) as pool:
        runs = {pool.submit(run_clang_tidy, options.build, source): source for source in waiting}
        for count, run in enumerate(as_completed(runs), 1):
            source = runs[run]
            clean, text, seconds = run.result()
            failed += not clean
            name = source.path.relative_to(ROOT)
            print(f"{text}[{count}/{len(waiting)}] {name}: {'clean' if clean else 'FAILED'} ({seconds:.1f} s)", flush=True)
            # The files are read again: one of them may have changed while clang-tidy ran.
            if clean and not text.strip() and source.key(tool, Digests()) == source.key(tool, digests):
                cache.add(source.key(tool, digests))
    cache.forget_old()
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main()
