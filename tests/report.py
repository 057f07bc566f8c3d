"""Sums up a run of the tests: how many passed, and what was skipped, with its reason.

usage: python3 -m tests.report JUNIT-FILE [--same-as BUILD-FOLDER]

--same-as: exits with 1 unless the tests are those of that build.
"""

import argparse
import collections
import json
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree


def names_in(build_folder):
    listing = subprocess.run(["ctest", "--test-dir", build_folder, "--show-only=json-v1"],
                             check=True, stdout=subprocess.PIPE).stdout
    return {test["name"] for test in json.loads(listing)["tests"]}


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("results")
    parser.add_argument("--same-as")
    arguments = parser.parse_args()
    tests = ElementTree.parse(arguments.results).getroot().findall("testcase")

    passed = functions = 0
    skipped = collections.defaultdict(list)  # by reason
    for test in tests:
        name, output = test.get("name"), test.findtext("system-out") or ""
        if test.find("skipped") is not None:
            reason = re.search(r"SKIPPED[:,] (.*)", output, re.I)
            skipped[reason.group(1) if reason else "no reason given"].append(name)
            continue
        passed += test.get("status") == "run"
        for totals in re.findall(r"Totals: (\d+) passed", output):
            functions += int(totals)
        for function, reason in re.findall(r"^SKIP\s+: (\S+\([^\n]*\)) (.*)$", output, re.M):
            skipped[reason].append(function)
    print(f"{passed} of {len(tests)} tests passed, with {functions} test functions that passed")
    for reason, names in skipped.items():
        print(f"Skipped, {reason}: {', '.join(names)}")

    if arguments.same_as:
        here, there = {test.get("name") for test in tests}, names_in(arguments.same_as)
        for name in sorted(here ^ there):
            print(f"Only {'here' if name in here else 'in ' + arguments.same_as}: {name}")
        return 1 if here != there else 0
    return 0


if __name__ == "__main__":
    sys.exit(main())
