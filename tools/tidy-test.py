#!/usr/bin/env python3
"""Tests when tools/tidy.py runs clang-tidy again, in a small project with a clang-tidy that only counts its runs."""
import json
import os
import shutil
import subprocess
import tempfile
import unittest
from pathlib import Path

TIDY = Path(__file__).resolve().with_name("tidy.py")

CLANG_TIDY = """#!/bin/sh
if [ "$1" = --version ]; then echo "LLVM version ${FAKE_VERSION-14}"; exit; fi
echo run >>"$RUNS"
printf '%s' "${FAKE_FINDING-}"
exit "${FAKE_STATUS-0}"
"""


class TidyTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.home = Path(folder.name)
        self.runs = self.home / "runs"
        self.write("bin/clang-tidy", CLANG_TIDY).chmod(0o755)
        self.write("bin/ninja", "#!/bin/sh\n").chmod(0o755)  # nothing was built
        self.environment = {
            **os.environ,
            "PATH": f"{self.home / 'bin'}:{os.environ['PATH']}",
            "XDG_CACHE_HOME": str(self.home / "cache"),
            "RUNS": str(self.runs),
        }
        self.make_clone("one")

    def write(self, name, text):
        path = self.home / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text)
        return path

    def make_clone(self, name, flags=""):
        self.write(f"{name}/.clang-tidy", "Checks: bugprone-*\n")
        self.write(f"{name}/src/value.h", "const int value = 1;\n")
        self.write(f"{name}/src/a.cpp", '#include "value.h"\n')
        root = self.home / name
        (root / "tools").mkdir(exist_ok=True)
        shutil.copy(TIDY, root / "tools")
        command = f"c++ -I{root}/src {flags} -o a.o -c {root}/src/a.cpp"
        entries = [{"directory": str(root), "command": command, "file": f"{root}/src/a.cpp"}]
        self.write(f"{name}/build/compile_commands.json", json.dumps(entries))

    def tidy(self, name="one", folder="src", **environment):
        """How often clang-tidy ran, and the exit status."""
        self.runs.write_text("")
        run = subprocess.run(
            [self.home / name / "tools" / "tidy.py", self.home / name / "build", folder],
            env={**self.environment, **environment},
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
        )
        return len(self.runs.read_text().splitlines()), run.returncode

    def test_runs_once_for_the_same_source(self):
        self.assertEqual(self.tidy(), (1, 0))
        self.assertEqual(self.tidy(), (0, 0))

    def test_shares_results_with_a_clone(self):
        self.tidy()
        self.make_clone("two")
        self.assertEqual(self.tidy("two"), (0, 0))

    def test_runs_again_after_a_change_of_the_source(self):
        self.tidy()
        self.write("one/src/a.cpp", '#include "value.h"\nint more;\n')
        self.assertEqual(self.tidy(), (1, 0))

    def test_runs_again_after_a_change_of_a_header(self):
        self.tidy()
        self.write("one/src/value.h", "const int value = 2;\n")
        self.assertEqual(self.tidy(), (1, 0))

    def test_runs_again_after_a_change_of_the_configuration(self):
        self.tidy()
        self.write("one/.clang-tidy", "Checks: performance-*\n")
        self.assertEqual(self.tidy(), (1, 0))

    def test_runs_again_after_a_configuration_was_added_below(self):
        self.tidy()
        self.write("one/src/.clang-tidy", "Checks: performance-*\n")
        self.assertEqual(self.tidy(), (1, 0))

    def test_runs_again_with_another_flag(self):
        self.tidy()
        self.make_clone("one", "-DOTHER")
        self.assertEqual(self.tidy(), (1, 0))

    def test_runs_again_with_another_clang_tidy(self):
        self.tidy()
        self.assertEqual(self.tidy(FAKE_VERSION="15"), (1, 0))

    def test_asks_the_compiler_when_the_object_is_older_than_its_sources(self):
        source = self.home / "one" / "src" / "a.cpp"
        ninja = f"#!/bin/sh\necho 'a.o: #deps 2, deps mtime 1 (VALID)'\necho '    {source}'\necho '    /gone.h'\n"
        self.write("bin/ninja", ninja)
        self.write("one/a.o", "")
        self.assertEqual(self.tidy(), (1, 0))  # a header is gone
        self.write("bin/ninja", ninja.replace("/gone.h", str(source)))
        os.utime(self.home / "one" / "a.o", (0, 0))
        self.tidy()
        self.write("one/src/value.h", "const int value = 2;\n")  # Ninja does not know it yet
        self.assertEqual(self.tidy(), (1, 0))

    def test_fails_and_keeps_nothing_when_clang_tidy_does(self):
        for _ in range(2):
            self.assertEqual(self.tidy(FAKE_STATUS="1"), (1, 1))

    def test_keeps_nothing_that_was_not_silent(self):
        for _ in range(2):
            self.assertEqual(self.tidy(FAKE_FINDING="a warning"), (1, 0))

    def test_fails_where_nothing_is_compiled(self):
        self.assertEqual(self.tidy(folder="tests"), (0, 1))


if __name__ == "__main__":
    unittest.main()
