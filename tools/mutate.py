#!/usr/bin/env python3
"""Changes the library's sources in one small place at a time and lists the changes that no contract test notices.

Works in a copy below build/mutate; the sources themselves are never written to. `./dev mutate --help` explains the use.
"""

import argparse
import difflib
import hashlib
import json
import os
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

sys.dont_write_bytecode = True
from mutations import Source  # noqa: E402

ROOT = Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutate"
BUILD = COPY / "build" / "dev"  # as deep as that of the working tree, so that ccache knows the tests' objects
COPIED = ["CMakeLists.txt", "CMakePresets.json", "cmake", "src", "tests"]
RESULTS = COPY / "build" / "results.json"

# Which folders' contract tests a change in a folder of src meets: its own first, then those of the folders that use it.
TESTS = {
    "bridge": ["bridge"],
    "common": ["common", "dataservice", "trade", "msgcenter", "bridge"],
    "dataservice": ["dataservice", "msgcenter", "bridge"],
    "msgcenter": ["msgcenter", "dataservice", "bridge"],
    "trade": ["trade", "bridge"],
}
# Their tests are in the executable that is linked with the library's objects too.
TESTED_BY_OBJECTS = {"bridge", "common"}

MEMORY_LIMIT = 8 << 30  # a mutant that takes memory for ever is stopped before the machine suffers
COMPILE_SECONDS = 600
TEST_SECONDS = 300  # for all tests of a folder; CTest stops a single one that hangs sooner

KILLED, SURVIVED, BROKEN = "killed", "survived", "did not compile"


def limited(command, seconds):
    """Runs the command with all that it starts in a group of its own; its status and output, or None after the time."""

    def limit():
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    process = subprocess.Popen(
        command,
        stdin=subprocess.DEVNULL,
        stdout=subprocess.PIPE,
        stderr=subprocess.STDOUT,
        text=True,
        errors="replace",
        process_group=0,
        preexec_fn=limit,
    )
    try:
        output, _ = process.communicate(timeout=seconds)
        return process.returncode, output
    except subprocess.TimeoutExpired:
        return None, ""
    finally:  # also on Ctrl-C
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.communicate()


def must(what, command, seconds=3600):
    print(f"{what} …", flush=True)
    start = time.monotonic()
    status, output = limited(command, seconds)
    if status != 0:
        sys.exit(f"{output[-6000:]}\nmutate: {what} failed")
    return time.monotonic() - start


def refresh_copy():
    """Makes the copy what the working tree is; a file that is the same already keeps its time, for the build."""
    listed = subprocess.run(
        ["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard", *COPIED],
        cwd=ROOT,
        check=True,
        capture_output=True,
        text=True,
    ).stdout.split("\0")
    wanted = {name for name in listed if name and (ROOT / name).is_file()}
    for name in wanted:
        write_if_other(COPY / name, (ROOT / name).read_bytes())
    for folder in COPIED:
        for path in (COPY / folder).rglob("*"):
            if path.is_file() and str(path.relative_to(COPY)) not in wanted:
                path.unlink()


def write_if_other(path, content):
    if path.is_file() and path.read_bytes() == content:
        return
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content)


def suites_of(folder):
    """The test suites in a folder of tests/contract."""
    names = set()
    for path in (ROOT / "tests" / "contract" / folder).glob("*.cpp"):
        names.update(re.findall(r"^TEST(?:_F|_P)?\((\w+),", path.read_text(encoding="utf-8"), re.MULTILINE))
    return sorted(names)


def build_command(targets):
    return ["cmake", "--build", str(BUILD), "--target", *targets]


def tests_of(folder):
    return rf"^(contract|common)_test\.({'|'.join(suites_of(folder))})\."


def test_command(pattern, jobs):
    return ["ctest", "--test-dir", str(BUILD), "-R", pattern, "--stop-on-failure", "--parallel", str(jobs)]


def prepare(folders, jobs):
    """Builds the unchanged library and sees that its tests pass: otherwise nothing could be said about a change."""
    refresh_copy()
    settings = {
        "CMAKE_PROJECT_VarnelWebSDK_INCLUDE": ROOT / "tools" / "mutate.cmake",
        "VARNEL_BUILD_SIMULATOR": "OFF",
    }
    definitions = [f"-D{name}={value}" for name, value in settings.items()]
    must("configure", ["cmake", "--preset", "dev", "-S", str(COPY), "-B", str(BUILD), *definitions])
    must("build", [*build_command(["contract_test", "common_test", "settings_process"]), "--parallel", str(jobs)])
    for folder in sorted({each for folder in folders for each in TESTS[folder]}):
        seconds = must(f"test {folder} without a change", test_command(tests_of(folder), jobs))
        print(f"  passes in {seconds:.0f} s")


def judge(folder, killers, jobs):
    """What becomes of the change that the copy has now, and how that was found out. killers are the tests that noticed
    changes of the same file: most changes are noticed by one that noticed another."""
    targets = ["VarnelWebSDK"] + ["common_test"] * (folder in TESTED_BY_OBJECTS)
    status, _ = limited(build_command(targets), COMPILE_SECONDS)
    if status != 0:
        return BROKEN, ""
    stages = [f"^({'|'.join(map(re.escape, killers))})$"] if killers else []
    for pattern in stages + [tests_of(tested) for tested in TESTS[folder]]:
        status, output = limited(test_command(pattern, jobs), TEST_SECONDS)
        if status is None:
            return KILLED, "time"
        if status != 0:
            failed = re.search(r"Test +#\d+: (\S+) .*?\*\*\*", output)
            return KILLED, failed.group(1) if failed else "unknown test"
    return SURVIVED, ""


def short_diff(name, before, after):
    lines = difflib.unified_diff(before.splitlines(), after.splitlines(), lineterm="", n=0)
    return "\n".join("    " + line for line in lines if not line.startswith(("---", "+++", "@@")))


def place(name, source, mutation):
    line = source.text.count("\n", 0, mutation.begin) + 1
    function = source.function_at(mutation.begin)
    return f"{name}:{line}: " + (f"{function}: " if function else "") + mutation.what


def sources(names):
    """The files below src that are changed, as paths from the root."""
    if not names:
        found = sorted((ROOT / "src").rglob("*.cpp")) + sorted((ROOT / "src").rglob("*.h"))
        return [str(path.relative_to(ROOT)) for path in found if path.parent.name in TESTS]
    for name in names:
        path = Path(name)
        if not (ROOT / path).is_file() or path.parts[0] != "src" or path.parent.name not in TESTS:
            sys.exit(f"mutate: no source file of the library: {name}")
    return [str(Path(name)) for name in names]


def key_of(name, changed):
    return hashlib.sha256(f"{name}\0{changed}".encode()).hexdigest()


def save(results):
    new = RESULTS.with_suffix(".new")
    new.write_text(json.dumps(results))
    new.replace(RESULTS)


def arguments():
    parser = argparse.ArgumentParser(prog="./dev mutate", description=__doc__.split("\n", 1)[0])
    parser.add_argument("files", nargs="*", metavar="FILE", help="a file below src; without one, all but src/host")
    parser.add_argument("--limit", type=int, metavar="N", help="try N of the changes, chosen at random")
    parser.add_argument("--seed", type=int, default=1, metavar="N", help="of that choice (default: 1)")
    resume = "leave out what an earlier run killed or could not compile; survivors are tried again"
    parser.add_argument("--resume", action="store_true", help=resume)
    parser.add_argument("--list", action="store_true", help="only list the changes")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), metavar="N", help="tests that run at once")
    return parser.parse_args()


def main():
    options = arguments()
    read = {name: Source((ROOT / name).read_text(encoding="utf-8")) for name in sources(options.files)}
    tries = [(name, mutation) for name, source in read.items() for mutation in source.mutations()]
    if options.limit is not None and options.limit < len(tries):
        chosen = sorted(random.Random(options.seed).sample(range(len(tries)), options.limit))
        tries = [tries[index] for index in chosen]
    if options.list:
        for name, mutation in tries:
            print(place(name, read[name], mutation))
            print(short_diff(name, read[name].text, mutation.apply(read[name].text)))
        print(f"{len(tries)} changes")
        return

    signal.signal(signal.SIGTERM, signal.default_int_handler)  # ends as Ctrl-C does
    RESULTS.parent.mkdir(parents=True, exist_ok=True)
    known = json.loads(RESULTS.read_text()) if RESULTS.is_file() else {}
    prepare({Path(name).parent.name for name, _ in tries}, options.jobs)

    counts = {KILLED: 0, SURVIVED: 0, BROKEN: 0}
    survivors = []
    killers = {name: [] for name in read}
    tried = 0
    try:
        for name, mutation in tries:
            source = read[name]
            changed = mutation.apply(source.text)
            key = key_of(name, changed)
            outcome, how = known.get(key, (SURVIVED, ""))
            if not options.resume or outcome == SURVIVED:
                write_if_other(COPY / name, changed.encode())
                outcome, how = judge(Path(name).parent.name, killers[name], options.jobs)
                known[key] = outcome, how
                save(known)
                # The next change may be in another file.
                write_if_other(COPY / name, source.text.encode())
            if "_test." in how and how not in killers[name]:
                killers[name].append(how)
            tried += 1
            counts[outcome] += 1
            print(f"[{tried}/{len(tries)}] {place(name, source, mutation)}: {outcome}{how and f' ({how})'}", flush=True)
            if outcome == SURVIVED:
                survivors.append((name, mutation))
                print(short_diff(name, source.text, changed), flush=True)
    except KeyboardInterrupt:
        print("\nmutate: stopped; --resume goes on")

    if survivors:
        print("\nSurvivors:")
    for name, mutation in survivors:
        print(place(name, read[name], mutation))
        print(short_diff(name, read[name].text, mutation.apply(read[name].text)))
    print(f"\n{tried} of {len(tries)} changes: {', '.join(f'{n} {outcome}' for outcome, n in counts.items())}")


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:  # before the first change
        sys.exit(130)
