#!/usr/bin/env python3
"""Mutation testing: changes src/ in one place at a time, rebuilds, and runs tests until one fails.

A mutant survives if all tests pass; it shows a line without a test. Each job changes its own copy of
the tree under build/mutate. Not a part of CI, because a full run takes more than an hour.

    tools/mutate.py [--file REGEX] [--sample N] [--seed N] [--again LOG] [--jobs N] [--list]
"""

import argparse
import os
import queue
import random
import re
import resource
import shutil
import signal
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
COPIES = ROOT / "build" / "mutate"
# Tests of at most a second; they run first.
TESTS = ["check 3-4", "tst_helpers", "tst_records", "tst_records_de", "check 2"]
SLOW_TESTS = ["check 6", "check 5", "tst_referencemodel", "tst_allocation", "tst_schedules"]
PROGRAMS = {"tst_records_de": "tst_records", "check 2": "tessaline-check", "check 3-4": "tessaline-check",
            "check 5": "tessaline-check", "check 6": "tessaline-check"}
LIBRARY = "plugins/Tessaline.so"
# A test that exceeds a limit counts as failed. The limit is the processor time of each process, which a busy machine
# does not use up; by the clock a test may take ten times as long.
TIME_LIMIT = 10  # seconds
SLOW_TIME_LIMIT = 60
MEMORY_LIMIT = 4 << 30  # bytes
COPIED = ["host", "standin", "src", "driver", "tests", "cmake", "CMakeLists.txt", "stations", "workbench", "benchmark",
          "check"]

ARGUMENTS = {
    # Only the schedules with up to three stations; the others take too long.
    "tst_schedules": [f"everyOrderEqualsTheModel:{kind}, {n}" for kind in ("add", "delete", "query") for n in (1, 2, 3)]
                     + ["randomSchedulesEqualTheModel"],
    "check 2": ["--include", "^2", LIBRARY], "check 3-4": ["--include", "^[34]", LIBRARY],
    "check 5": ["--include", "^5", LIBRARY], "check 6": ["--include", "^6", LIBRARY]}
ENVIRONMENT = {"TESSALINE_SCHEDULES": "300", "QTEST_DISABLE_STACK_DUMP": "1", "QT_QPA_PLATFORM": "offscreen",
               "TZ": "Europe/Berlin", "LC_ALL": "en_US.UTF-8"}
VARIABLES = {"tst_records_de": {"LC_ALL": "de_DE.UTF-8"}}

OPERATORS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "&&": "||", "||": "&&", "++": "--",
             " + ": " - ", " - ": " + ", " < ": " <= ", " > ": " >= ", " ? ": " ? !", "+= ": "-= "}
CONSTANTS = {"true": "false", "false": "true"}
# No build that is shipped or tested here executes an assertion, and a line that only reserves memory changes no result.
NOT_MUTATED = re.compile(r"\b(Q_ASSERT|reserve(More)?|capacity)\(")
# A declaration, which has a type in front of the name. No program compiles without it.
DECLARATION = re.compile(r"\s+(?=\S)(?!Q_EMIT |delete )[\w:<>, *&]+[\w>][ *&]+[\w:]+(\{.*\}| =.*|\(.*\)( const)?)?;$")


def code_part(line):
    """Returns the line with string literals and comments replaced by NUL, at the same positions."""
    line = re.sub(r'"(\\.|[^"\\])*"|(?<!\d)\'(\\.|[^\'\\])+\'', lambda m: "\0" * len(m[0]), line)
    return re.sub(r"//.*", lambda m: "\0" * len(m[0]), line)


def line_mutants(line):
    """Yields pairs of a kind of mutant and the changed line."""
    code = code_part(line)
    if not code.strip() or code.lstrip().startswith(("#", "namespace", "using", "template", "static_assert")):
        return
    if NOT_MUTATED.search(code):
        return
    for old, new in OPERATORS.items():
        for match in re.finditer(re.escape(old), code):
            yield "operator", line[:match.start()] + new + line[match.end():]
    for match in re.finditer(r"\b(true|false)\b", code):
        yield "constant", line[:match.start()] + CONSTANTS[match[0]] + line[match.end():]
    for match in re.finditer(r"(?<![\w.\"'])\d[\d']*(?![\w.])", code):
        number = int(match[0].replace("'", ""))
        yield "constant", line[:match.start()] + str(number + 1) + line[match.end():]
    match = re.match(r"(\s*(?:\} else )?(?:if|while) \()(.*)(\)(?: \{)?)$", line)
    if match and ";" not in code:
        for value in ("true", "false"):
            yield "condition", match[1] + value + match[3]
    # A call, an assignment or a return that fills a line.
    if re.match(r"\s+[\w:>.\-*\[\]()]+.*;$", code) and not re.match(r"\s+(const |auto |static |return\b)", code) \
            and not DECLARATION.match(code):
        yield "statement", re.match(r"\s*", line)[0] + ";"
    if re.match(r"\s+return .*;$", code) and not re.search(r"return (\{\}|false|true|nullptr|std::nullopt);", code):
        yield "statement", re.match(r"\s*", line)[0] + "return {};"
    # Swap adjacent simple arguments, but not the names of a structured binding or elements of a list.
    if "(" not in code or "auto [" in code or "] = " in code:
        return
    for match in re.finditer(r"(?<=[(, ])([\w:.*&]+), ([\w:.*&]+)(?=[,)])", code):
        if match[1] != match[2]:
            yield "arguments", line[:match.start()] + match[2] + ", " + match[1] + line[match.end():]


def all_mutants(pattern):
    for path in sorted((ROOT / "src").iterdir()):
        if path.suffix not in (".cpp", ".h") or "_win" in path.name or not re.search(pattern, path.name):
            continue
        for number, line in enumerate(path.read_text().splitlines()):
            for kind, changed in line_mutants(line):
                yield path.relative_to(ROOT), number, kind, line, changed


def set_limits(seconds):
    resource.setrlimit(resource.RLIMIT_AS, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))


class Copy:
    """A copy of the tree in which a mutant is built and tested."""

    def __init__(self, number):
        self.root = COPIES / str(number)
        self.orders = [list(TESTS), list(SLOW_TESTS)]  # the test that failed last runs first

    def prepare(self):
        """Copies and builds the tree, at -O1 and without warnings to save time."""
        for name in COPIED:
            target = self.root / name
            if (ROOT / name).is_dir():
                shutil.copytree(ROOT / name, target, dirs_exist_ok=True)
            else:
                target.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy2(ROOT / name, target)
        for path in (self.root / "src").iterdir():
            path.touch()  # the last run may have left object files of a mutant
        # ccache restores the object file of the unchanged source after a mutant.
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        subprocess.run(["cmake", "-S", self.root, "-B", self.root / "build", "-G", "Ninja", *launcher,
                        "-DCMAKE_BUILD_TYPE=None", "-DCMAKE_CXX_FLAGS=-O1 -w -DNDEBUG -DQT_NO_DEBUG"],
                       check=True, stdout=subprocess.DEVNULL)
        self.build([PROGRAMS.get(test, test) for test in TESTS + SLOW_TESTS], check=True)

    def build(self, targets=("tst_helpers",), check=False):
        return subprocess.run(["cmake", "--build", self.root / "build", "-j1", "--target", "Tessaline", *targets],
                              check=check, capture_output=True).returncode == 0

    def fails(self, test):
        """Returns the name of the test if it fails, with "(no end)" if it exceeds the time limit; else an empty text."""
        name = PROGRAMS.get(test, test)
        program = self.root / "build" / ("check" if name == "tessaline-check" else "tests/plugin") / name
        limit = SLOW_TIME_LIMIT if test in SLOW_TESTS else TIME_LIMIT
        process = subprocess.Popen([program, *ARGUMENTS.get(test, [])], cwd=self.root / "build",
                                   env=os.environ | ENVIRONMENT | VARIABLES.get(test, {}), start_new_session=True,
                                   preexec_fn=lambda: set_limits(limit), stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL)
        try:
            return test if process.wait(10 * limit) != 0 else ""
        except subprocess.TimeoutExpired:
            os.killpg(process.pid, signal.SIGKILL)  # the checker has processes of its own
            process.wait()
            return f"{test} (no end)"

    def run_tests(self):
        """Returns the name of the test that fails in this copy, "SURVIVED" or "not compiled"."""
        if not self.build():
            return "not compiled"
        for order in self.orders:
            for test in list(order):
                if failure := self.fails(test):
                    order.remove(test)
                    order.insert(0, test)
                    return failure
        return "SURVIVED"

    def test_mutant(self, mutant):
        path, number, _, _, changed = mutant
        lines = (ROOT / path).read_text().splitlines()
        lines[number] = changed
        (self.root / path).write_text("\n".join(lines) + "\n")
        result = self.run_tests()
        shutil.copyfile(ROOT / path, self.root / path)
        return result


def describe(mutant):
    path, number, kind, line, changed = mutant
    return f"{path}:{number + 1}: {kind}: {line.strip()}  ->  {changed.strip()}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--file", default="", help="change only files whose name matches REGEX", metavar="REGEX")
    parser.add_argument("--sample", type=int, default=0, metavar="N",
                        help="test N mutants, chosen at random; default: all")
    parser.add_argument("--seed", type=int, default=1, metavar="N", help="seed of --sample; default: 1")
    parser.add_argument("--again", metavar="LOG", help="test the mutants that survived in the run with output LOG")
    parser.add_argument("--jobs", type=int, default=2, metavar="N", help="mutants to test in parallel; default: 2")
    parser.add_argument("--list", action="store_true", help="list the mutants and exit")
    options = parser.parse_args()

    mutants = list(all_mutants(options.file))
    if options.again:
        survivors = re.findall(r"SURVIVED: (\S+):\d+: (.*)", Path(options.again).read_text())
        mutants = [m for m in mutants if (str(m[0]), describe(m).split(": ", 1)[1]) in survivors]
    if options.sample and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    if options.list:
        print("\n".join(map(describe, mutants)))
        return
    copies = [Copy(number) for number in range(options.jobs)]
    with ThreadPoolExecutor(options.jobs) as pool:
        list(pool.map(Copy.prepare, copies))
        for result in pool.map(Copy.run_tests, copies):
            if result != "SURVIVED":
                sys.exit(f"The unchanged tree fails: {result}. Repair it before mutation testing.")

        start, free = time.time(), queue.SimpleQueue()
        for copy in copies:
            free.put(copy)

        def test(mutant):
            copy = free.get()
            result = copy.test_mutant(mutant)
            free.put(copy)
            return result

        results = []
        for mutant, result in zip(mutants, pool.map(test, mutants)):
            results.append(result)
            print(f"{len(results)}/{len(mutants)} {result}: {describe(mutant)}", flush=True)

    survivors = [describe(mutant) for mutant, result in zip(mutants, results) if result == "SURVIVED"]
    total = len(results) - results.count("not compiled")
    killed = total - len(survivors)
    print(f"\n{total} mutants compiled, {killed} killed ({100 * killed / max(total, 1):.1f} %), "
          f"{time.time() - start:.0f} s, seed {options.seed}. Survivors:")
    print("\n".join(survivors))


if __name__ == "__main__":
    main()
