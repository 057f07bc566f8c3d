"""Breaks one statement of the product at a time and asks the tests whether they notice.

usage: python3 -m tools.mutants [N] [SEED] [--only REGEX] [--quick | --nearest]

Takes N places at random (100 unless told otherwise), each with one change: a call dropped, a
condition negated, a comparison or a constant shifted. Works on a copy of the sources in
build/mutants, so that the tree stays as it is. The tests that concern the changed file run
first, the quickest before the others, then those that concern the files that use it, those of units
and components, and all; a mutant is a survivor when every test passes.
Survivors that change nothing that can be observed stand with the reason in tools/mutants.toml, and
do not count.
"""

import argparse
import functools
import os
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
COSTS = BUILD / "tests" / "Testing" / "Temporary" / "CTestCostData.txt"  # seconds of each test
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
NO_CODE = re.compile(r"^\s*(//|#|\*|template|static_assert|Q_DECLARE|Q_LOGGING|namespace|using"
                     r"|Q_UNUSED)")


class Mutant:
    """One change to one file: lines first to last (from 0) become the new text."""

    def __init__(self, file, first, last, old, new):
        self.file, self.first, self.last, self.old, self.new = file, first, last, old, new

    def key(self):
        """File, old and new text, as printed and as in the list of those that change nothing."""
        old, new = (" ".join(text.split()) for text in (self.old, self.new))
        return self.file, old, "(dropped)" if new == ";" else new

    def __str__(self):
        file, old, new = self.key()
        return f"{file}:{self.first + 1}: {old}  =>  {new}"


def mutants_of(file):
    lines = (ROOT / file).read_text(encoding="utf-8").splitlines()
    for first, line in enumerate(lines):
        if NO_CODE.match(line) or not line.strip():
            continue
        code = without_comment(line)

        def change(new, last=first, old=line):
            return Mutant(file, first, last, old, new)

        last = end_of_statement(lines, first)
        statement = "\n".join([*lines[first:last], without_comment(lines[last])])
        if CALL.match(statement) and begins_statement(lines, first):
            yield change(";", last, statement)  # it may be all that an "if" guards
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


def without_comment(line):
    return line.partition(" // ")[0]


def end_of_statement(lines, first):
    for last in range(first, min(first + 8, len(lines))):
        if without_comment(lines[last]).endswith((";", "{", "}")):
            return last
    return first


def begins_statement(lines, number):
    before = next((line for line in reversed(lines[:number]) if line.strip()), "")
    return (without_comment(before).endswith((";", "{", "}", ":", ")"))
            or before.strip().startswith("//"))


def sources():
    """The product's files that the native build compiles."""
    listed = subprocess.run(["git", "ls-files", "src/*.cpp"], cwd=ROOT, check=True,
                            stdout=subprocess.PIPE, encoding="utf-8").stdout.split()
    return [file for file in listed if "/win32/" not in file]


def prepare(targets, stages):
    """A copy of the tree, built without optimisation and warnings, whose tests pass. The product's
    libraries are shared ones, so that a change to one of them links that one and no test."""
    shutil.rmtree(TREE, ignore_errors=True)
    TREE.mkdir(parents=True)
    files = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"],
                           cwd=ROOT, check=True, stdout=subprocess.PIPE).stdout
    archive = subprocess.Popen(["tar", "-C", ROOT, "--null", "-T", "-", "--ignore-failed-read",
                                "-c"], stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    # Every file as of now: a change that an interrupted run has compiled must not stay.
    unpack = subprocess.Popen(["tar", "-C", TREE, "-x", "-m"], stdin=archive.stdout)
    archive.stdin.write(files)
    archive.stdin.close()
    if unpack.wait() or archive.wait():
        sys.exit("cannot copy the sources")
    if not quiet(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=",
                  "-DBUILD_SHARED_LIBS=ON", "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                  "-DCMAKE_CXX_FLAGS=-O0 -w -fuse-ld=lld"]) or not builds(targets):
        sys.exit(f"the unchanged sources do not build: {WORK / 'log.txt'}")
    COSTS.unlink(missing_ok=True)
    if not all(map(passes, stages)):
        sys.exit(f"the unchanged sources fail {failing_test()}: {WORK / 'log.txt'}")
    limit_tests()


def seconds():
    """What the tests that have run took."""
    return {name: float(cost) for name, cost in re.findall(
        r"^(\S+) \d+ (\S+)$", COSTS.read_text(encoding="utf-8"), re.MULTILINE)}


def limit_tests():
    """A change may make a test wait for ever: each gets four times what it took, at least 15 s."""
    took = seconds()
    for file in (BUILD / "tests").rglob("CTestTestfile.cmake"):
        file.write_text(re.sub(
            r'(set_tests_properties\(\[=\[(\S+)\]=\] .* TIMEOUT ")(\d+)',
            lambda found: found[1] + str(max(15, round(4 * took[found[2]]))
                                         if found[2] in took else found[3]),
            file.read_text(encoding="utf-8")), encoding="utf-8")


def builds(targets):
    return quiet(["ninja", "-C", BUILD, *targets])


def quiet(command, seconds=None):
    """Tells whether a command succeeds; what it says is in the log."""
    with open(WORK / "log.txt", "wb") as log:
        try:
            return subprocess.run(command, check=False, cwd=TREE, stdin=subprocess.DEVNULL,
                                  stdout=log, stderr=log, timeout=seconds).returncode == 0
        except subprocess.TimeoutExpired:
            return False


class Stage:
    """Tests that run together: a folder of the build, and options that choose."""

    def __init__(self, folder, *options):
        self.folder, self.options = folder, options


# In one language at one scale: a change that only other texts show is seldom worth 47 more runs.
ONE_LANGUAGE = ["-E", "^test_surfaces_([^E]|ES|ENG_1[.]|ENG_2)"]
QUICK = Stage("tests", "-R", "^test_", *ONE_LANGUAGE)
WHOLE = Stage(".")


def passes(stage):
    # A test that fails once may have missed a limit on a busy machine, and noticed nothing.
    return quiet(["ctest", "--test-dir", BUILD / stage.folder, f"-j{os.cpu_count()}",
                  "--stop-on-failure", "--no-tests=error", "--repeat", "until-pass:2",
                  *stage.options], 3600)


@functools.cache
def include_lines():
    """Headers and tests, each with what it includes."""
    return {path: set(re.findall(r'^#include "(.*)"', path.read_text(encoding="utf-8"), re.M))
            for folder in ("src", "tests", "tools") for path in (ROOT / folder).rglob("*.[ch]*")
            if (path.suffix == ".h" or path.match("test_*.cpp")) and "win32" not in path.parts}


def included_by(file):
    return re.findall(r'^#include "(.*)"', (ROOT / file).read_text(encoding="utf-8"), re.M)


def own_header(file):
    """The header that declares what a source defines, if any."""
    first = included_by(file)[0]
    return {first} if pathlib.Path(file).stem.startswith(pathlib.Path(first).stem) else set()


def used_by(file):
    """The headers of others that a source uses, or its form."""
    form = (ROOT / file).with_suffix(".ui")
    widgets = form.read_text(encoding="utf-8") if form.exists() else ""
    return {*included_by(file), *re.findall("<header>(.*)</header>", widgets)} - own_header(file)


@functools.cache
def nearest(file):
    """The tests that have the changed file's name or include its header, be it through others."""
    path = pathlib.Path(file)
    near, headers = {path}, own_header(file)
    while headers:
        found = {user for user, included in include_lines().items() if included & headers} - near
        near |= found
        headers = {str(user.relative_to(ROOT)).removeprefix("src/") for user in found}
    return sorted(user.stem for user in include_lines() if user.suffix == ".cpp"
                  and (user in near or user.stem == f"test_{path.stem}"))


@functools.cache
def next_nearest(file):
    """Those nearest to the sources that use the changed one."""
    users = [user for user in sources() if own_header(file) & used_by(user)]
    return sorted({test for user in users for test in nearest(user)} - set(nearest(file)))


def named(tests):
    """Tests with all their variants."""
    return Stage("tests", "-R", f"^({'|'.join(tests)})(_.*)?$", *ONE_LANGUAGE)


def one_by_one(tests):
    """Those of the last run, with their variants, the quickest first."""
    took = seconds()
    return [Stage("tests", "-R", f"^{re.escape(name)}$") for name in sorted(took, key=took.get)
            if any(name == test or name.startswith(f"{test}_") for test in tests)]


def failing_test():
    failed = re.search(r"(?:\d+ - |Test +#\d+: )(\S+)[ .]*(?:\*\*\*|\()(?:Failed|Timeout|Exception|"
                       r"SEGFAULT|Subprocess)", (WORK / "log.txt").read_text(errors="replace"))
    return failed.group(1) if failed else "a test"


def outcome(mutant, targets, stages):
    """"does not build", "survived", or the name of the test that failed."""
    target = TREE / mutant.file
    whole = target.read_text(encoding="utf-8")
    lines = whole.splitlines(keepends=True)
    lines[mutant.first:mutant.last + 1] = [mutant.new + "\n"]
    target.write_text("".join(lines), encoding="utf-8")
    try:
        if not builds(targets):
            return "does not build"
        for stage in [*one_by_one(nearest(mutant.file)),
                      *one_by_one(next_nearest(mutant.file)), *stages]:
            if not passes(stage):
                return failing_test()
        return "survived"
    finally:
        target.write_text(whole, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("number", type=int, nargs="?", default=100)
    parser.add_argument("seed", type=int, nargs="?", default=1)
    parser.add_argument("--only", default="", help="files whose path matches this expression")
    fewer = parser.add_mutually_exclusive_group()
    fewer.add_argument("--quick", action="store_true",
                       help="ask the tests of units and components alone")
    fewer.add_argument("--nearest", action="store_true",
                       help="ask those alone that concern the changed file and those that use it, "
                            "and change no file without such tests")
    arguments = parser.parse_args()

    equivalent = tomllib.loads(EQUIVALENT.read_text(encoding="utf-8")).get("mutant", [])
    reasons = {(entry["file"], entry["old"], entry["new"]): entry["reason"]
               for entry in equivalent}
    files = [file for file in sources() if re.search(arguments.only, file)
             and (nearest(file) or not arguments.nearest)]
    places = [mutant for file in files for mutant in mutants_of(file)]
    chosen = random.Random(arguments.seed).sample(places, min(arguments.number, len(places)))
    print(f"{len(chosen)} of {len(places)} mutants, seed {arguments.seed}", flush=True)
    stages = [] if arguments.nearest else [QUICK] if arguments.quick else [QUICK, WHOLE]
    near = sorted({test for mutant in chosen
                   for test in nearest(mutant.file) + next_nearest(mutant.file)})
    targets = (near if arguments.nearest else ["all"] if WHOLE in stages
               else ["tests/unit/all", "tests/component/all"])
    prepare(targets, stages or [named(near)])

    survivors, killed, known = [], 0, 0
    for number, mutant in enumerate(chosen, 1):
        began = time.monotonic()
        key = mutant.key()
        result = ("equivalent: " + reasons[key] if key in reasons
                  else outcome(mutant, targets, stages))
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
