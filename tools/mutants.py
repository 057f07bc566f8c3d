"""Breaks one statement of the product at a time and asks the tests whether they notice.

usage: python3 -m tools.mutants [N] [SEED]

Takes N places at random (100 unless told otherwise), each with one change: a call dropped, a
condition negated, a comparison or a constant shifted. Works on a copy of the sources in
build/mutants, so that the tree stays as it is. The tests nearest to the change run first; a mutant
is a survivor when every test of the native build passes. Survivors that change nothing that can be
observed stand, with the reason, in tools/mutants.toml, and do not count.
"""

import argparse
import pathlib
import random
import re
import shutil
import subprocess
import sys
import time
import tomllib

ROOT = pathlib.Path(__file__).resolve().parents[1]
WORK = ROOT / "build" / "mutants"
TREE = WORK / "tree"
BUILD = WORK / "build"
EQUIVALENT = ROOT / "tools" / "mutants.toml"

# A whole statement that is a call: nothing is declared, assigned or returned by it.
CALL = re.compile(r"^(\s+)(?!return\b|throw\b|delete\b|emit\b)[\w:]+(?:<[\w:]+>)?"
                  r"(?:(?:\([^()]*\))?(?:->|\.)\w+)*\(.*\);$", re.DOTALL)
CONDITION = re.compile(r"^(\s*(?:\} else )?(?:if|while) \()(.*)(\)(?: \{)?)$")
SHIFTS = [(re.compile(pattern), replacement) for pattern, replacement in (
    (r" == ", " != "), (r" != ", " == "), (r" && ", " || "), (r" \|\| ", " && "),
    (r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"))]
NUMBER = re.compile(r"(?<![\w.\"'%])(\d+)(?![\w.\"'])")
NO_CODE = re.compile(r"^\s*(//|#|\*|template|static_assert|Q_DECLARE|Q_LOGGING|namespace|using)")


class Mutant:
    """One change to one file: lines first to last (from 0) become the new text."""

    def __init__(self, file, first, last, old, new):
        self.file, self.first, self.last, self.old, self.new = file, first, last, old, new

    def __str__(self):
        def flat(text):
            return " ".join(text.split())
        new = flat(self.new) or "(dropped)"
        return f"{self.file}:{self.first + 1}: {flat(self.old)}  =>  {new}"


def mutants_of(file):
    lines = (ROOT / file).read_text(encoding="utf-8").splitlines()
    for first, line in enumerate(lines):
        if NO_CODE.match(line) or not line.strip():
            continue
        code = line.split("  //")[0]

        def change(new, last=first, old=line):
            return Mutant(file, first, last, old, new)

        last = end_of_statement(lines, first)
        statement = "\n".join(lines[first:last + 1])
        if CALL.match(statement) and begins_statement(lines, first):
            yield change("", last, statement)
        condition = CONDITION.match(code)
        if condition:
            yield change(condition.expand(r"\1!(\2)\3"))
        for pattern, replacement in SHIFTS:
            for found in pattern.finditer(code):
                yield change(code[:found.start()] + replacement + code[found.end():])
        for found in NUMBER.finditer(code):
            value = int(found.group())
            shifted = value + 1 if value < 10 else value + value // 2
            yield change(code[:found.start()] + str(shifted) + code[found.end():])


def end_of_statement(lines, first):
    for last in range(first, min(first + 8, len(lines))):
        if lines[last].endswith((";", "{", "}")):
            return last
    return first


def begins_statement(lines, number):
    before = next((line for line in reversed(lines[:number]) if line.strip()), "")
    return before.rstrip().endswith((";", "{", "}", ":", ")")) or before.strip().startswith("//")


def sources():
    """The product's files that the native build compiles."""
    listed = subprocess.run(["git", "ls-files", "src/*.cpp"], cwd=ROOT, check=True,
                            stdout=subprocess.PIPE, encoding="utf-8").stdout.split()
    return [file for file in listed if "/win32/" not in file]


def prepare():
    """A copy of the tree, built without optimisation, since every mutant is linked many times."""
    WORK.mkdir(parents=True, exist_ok=True)
    shutil.rmtree(TREE, ignore_errors=True)
    files = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                           cwd=ROOT, check=True, stdout=subprocess.PIPE).stdout
    TREE.mkdir()
    archive = subprocess.Popen(["tar", "-C", ROOT, "--null", "-T", "-", "--ignore-failed-read",
                                "-c"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    unpack = subprocess.Popen(["tar", "-C", TREE, "-x"], stdin=archive.stdout)
    archive.stdin.write(files)
    archive.stdin.close()
    if unpack.wait() or archive.wait():
        sys.exit("cannot copy the sources")
    if not quiet(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=",
                  "-DCMAKE_CXX_FLAGS=-O0 -w -fuse-ld=lld"]) or not quiet(["ninja", "-C", BUILD]):
        sys.exit(f"the unchanged sources do not build: {WORK / 'log.txt'}")
    if not passes(""):
        sys.exit(f"the unchanged sources fail {failing_test()}: {WORK / 'log.txt'}")


def quiet(command, seconds=None):
    """Tells whether a command succeeds; what it says is in the log."""
    with open(WORK / "log.txt", "wb") as log:
        try:
            return subprocess.run(command, check=False, stdin=subprocess.DEVNULL, stdout=log,
                                  stderr=log, timeout=seconds).returncode == 0
        except subprocess.TimeoutExpired:
            return False


def passes(folder):
    return quiet(["ctest", "--test-dir", BUILD / folder, "-j3", "--stop-on-failure",
                  "--no-tests=error"], 3600)


def stages(file):
    """Folders of tests, the nearest to the changed file first."""
    folder = pathlib.PurePath(file).parts[1]
    near = {"app": ["unit/app", "component/app"], "config": ["unit/config", "component/download"],
            "ui": ["unit/ui", "component/wizard"], "wizard": ["component/wizard"]}
    return [f"tests/{part}" for part in near.get(folder, [f"unit/{folder}"])] + [""]


def failing_test():
    failed = re.search(r"(?:\d+ - |Test +#\d+: )(\S+)[ .]*(?:\*\*\*|\()(?:Failed|Timeout|Exception|"
                       r"SEGFAULT|Subprocess)", (WORK / "log.txt").read_text(errors="replace"))
    return failed.group(1) if failed else "a test"


def outcome(mutant):
    """"does not build", "survived", or the name of the test that failed."""
    target = TREE / mutant.file
    whole = target.read_text(encoding="utf-8")
    lines = whole.splitlines(keepends=True)
    lines[mutant.first:mutant.last + 1] = [mutant.new + "\n"]
    target.write_text("".join(lines), encoding="utf-8")
    try:
        for folder in stages(mutant.file):
            goal = f"{folder}/all" if folder else "all"
            if not quiet(["ninja", "-C", BUILD, goal]):
                return "does not build"
            if not passes(folder):
                return failing_test()
        return "survived"
    finally:
        target.write_text(whole, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("number", type=int, nargs="?", default=100)
    parser.add_argument("seed", type=int, nargs="?", default=1)
    parser.add_argument("--only", default="", help="files whose path contains this")
    arguments = parser.parse_args()

    equivalent = tomllib.loads(EQUIVALENT.read_text(encoding="utf-8")).get("mutant", [])
    reasons = {(entry["file"], " ".join(entry["old"].split()), " ".join(entry["new"].split())):
               entry["reason"] for entry in equivalent}
    places = [mutant for file in sources() if arguments.only in file
              for mutant in mutants_of(file)]
    chosen = random.Random(arguments.seed).sample(places, min(arguments.number, len(places)))
    print(f"{len(chosen)} of {len(places)} mutants, seed {arguments.seed}", flush=True)
    prepare()

    survivors, killed, known = [], 0, 0
    for number, mutant in enumerate(chosen, 1):
        began = time.monotonic()
        key = (mutant.file, " ".join(mutant.old.split()), " ".join(mutant.new.split()))
        result = "equivalent: " + reasons[key] if key in reasons else outcome(mutant)
        known += key in reasons
        if result == "survived":
            survivors.append(mutant)
        elif key not in reasons and result != "does not build":
            killed += 1
        print(f"{number}/{len(chosen)} {time.monotonic() - began:4.0f} s  {result}  {mutant}",
              flush=True)
    judged = killed + len(survivors)
    print(f"\n{killed} of {judged} mutants noticed ({100 * killed / max(judged, 1):.1f} %); "
          f"{known} known to change nothing, {len(chosen) - judged - known} did not build")
    print("\n".join(["Survivors:", *map(str, survivors)] if survivors else ["No survivors"]))


if __name__ == "__main__":
    main()
