#!/usr/bin/env python3
"""Changes src/ in one place at a time, rebuilds, and runs the tests of tests/plugin until one fails.

A mutant that no test notices survives: a line that nothing holds in place. The changes are made in a
copy of the tree under build/mutate. Not part of CI: a mutant takes some ten seconds.

    tools/mutate.py [--file REGEX] [--sample N] [--seed N] [--list]
"""

import argparse
import os
import random
import re
import shutil
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
COPY = ROOT / "build" / "mutate"
TESTS = ["tst_requests", "tst_dispatch", "tst_interface", "tst_helpers", "tst_batches", "tst_queries",
         "tst_viewcells", "tst_bookmarklists", "tst_records", "tst_logging_use", "tst_unload",
         "tst_reentrancy", "tst_allocation", "tst_schedules"]
TIME_LIMIT = 120  # seconds for a test; one that runs longer has noticed

OPERATORS = {"==": "!=", "!=": "==", "<=": "<", ">=": ">", "&&": "||", "||": "&&", "++": "--",
             " + ": " - ", " - ": " + ", " < ": " <= ", " > ": " >= ", " ? ": " ? !", "+= ": "-= "}
CONSTANTS = {"true": "false", "false": "true"}


def code_part(line):
    """The line with texts, comments and template brackets blanked, at the same places."""
    line = re.sub(r'"(\\.|[^"\\])*"|\'(\\.|[^\'\\])+\'', lambda m: "\0" * len(m[0]), line)
    return re.sub(r"//.*", lambda m: "\0" * len(m[0]), line)


def line_mutants(line):
    """Pairs of a kind and a changed line."""
    code = code_part(line)
    if not code.strip() or code.lstrip().startswith(("#", "namespace", "using", "template", "static_assert")):
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
    # A call, an assignment or a return as a statement of its own line.
    if re.match(r"\s+[\w:>.\-*\[\]()]+.*;$", code) and not re.match(
            r"\s+(const |auto |static |return\b|using |[\w:<>, *&]+ \w+(\{.*\}| =.*)?;)", code):
        yield "statement", re.match(r"\s*", line)[0] + ";"
    if re.match(r"\s+return .*;$", code) and not re.search(r"return (\{\}|false|true|nullptr);", code):
        yield "statement", re.match(r"\s*", line)[0] + "return {};"
    # Neighbouring plain arguments change places.
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


def build():
    targets = ["Tessaline", "tst_helpers"]
    return subprocess.run(["cmake", "--build", COPY / "build", "-j1", "--target", *targets],
                          capture_output=True, text=True)


def prepare():
    """A copy that is built at -O0 and without warnings; a mutant rebuilds the one object it is in."""
    for name in ("host", "standin", "src", "tests", "cmake", "CMakeLists.txt", "workbench", "benchmark", "check"):
        copy = shutil.copytree if (ROOT / name).is_dir() else shutil.copy2
        options = {"dirs_exist_ok": True} if (ROOT / name).is_dir() else {}
        COPY.mkdir(parents=True, exist_ok=True)
        copy(ROOT / name, COPY / name, **options)
    subprocess.run(["cmake", "-S", COPY, "-B", COPY / "build", "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
                    "-DCMAKE_CXX_FLAGS=-O0 -w -DNDEBUG"], check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", COPY / "build", "-j2", "--target", "Tessaline", *TESTS],
                   check=True, stdout=subprocess.DEVNULL)


def noticed_by(test):
    limits = {"TESSALINE_SCHEDULES": "300", "QTEST_DISABLE_STACK_DUMP": "1"}
    environment = os.environ | limits | {"QT_QPA_PLATFORM": "offscreen", "TZ": "Europe/Berlin",
                                         "LC_ALL": "en_US.UTF-8"}
    # Of the schedules, those of up to three stations: the others take too long for this.
    rows = ([f"everyOrder:{kind}, {n}" for kind in ("add", "delete", "query") for n in (1, 2, 3)] + ["atRandom"]
            if test == "tst_schedules" else [])
    try:
        return subprocess.run([COPY / "build" / "tests" / "plugin" / test, *rows], env=environment,
                              timeout=TIME_LIMIT, capture_output=True).returncode != 0
    except subprocess.TimeoutExpired:
        return True


def fate(order):
    """What becomes of the mutant that the copy holds now. The test that kills most goes first."""
    if build().returncode != 0:
        return "not compiled"
    for test in list(order):
        if noticed_by(test):
            order.remove(test)
            order.insert(0, test)
            return test
    return "SURVIVED"


def describe(mutant):
    path, number, kind, line, changed = mutant
    return f"{path}:{number + 1}: {kind}: {line.strip()}  ->  {changed.strip()}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--file", default="", help="only files whose name matches")
    parser.add_argument("--sample", type=int, default=0, help="so many, drawn by chance; all without it")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--list", action="store_true", help="show the mutants, build nothing")
    options = parser.parse_args()

    mutants = list(all_mutants(options.file))
    if options.sample and options.sample < len(mutants):
        mutants = random.Random(options.seed).sample(mutants, options.sample)
    if options.list:
        print("\n".join(map(describe, mutants)))
        return
    prepare()
    order = list(TESTS)
    if fate(order) != "SURVIVED":
        sys.exit(f"{order[0]} fails without any change")

    start, survivors, killed = time.time(), [], 0
    for count, mutant in enumerate(mutants, 1):
        path, number, kind, _, changed = mutant
        lines = (ROOT / path).read_text().splitlines()
        lines[number] = changed
        (COPY / path).write_text("\n".join(lines) + "\n")
        result = fate(order)
        shutil.copyfile(ROOT / path, COPY / path)
        killed += result not in ("SURVIVED", "not compiled")
        if result == "SURVIVED":
            survivors.append(describe(mutant))
        print(f"{count}/{len(mutants)} {path}:{number + 1} {kind}: {result}", flush=True)

    total = killed + len(survivors)
    print(f"\n{total} mutants compiled, {killed} killed ({100 * killed / max(total, 1):.1f} %), "
          f"{time.time() - start:.0f} s, seed {options.seed}. Survivors:")
    print("\n".join(survivors))


if __name__ == "__main__":
    main()
