#!/usr/bin/python3
"""Compares the list of tests on both sides and names what was skipped under Wine, with its reason:
report.py NATIVE-BUILD-FOLDER WINDOWS-JUNIT-FILE. Exits with 1 when the lists differ."""

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
    native = names_in(sys.argv[1])
    tests = ElementTree.parse(sys.argv[2]).getroot().findall("testcase")
    here = {test.get("name"): test for test in tests}
    print(f"Natively {len(native)} tests, under Wine {len(here)}")
    for name in sorted(native ^ here.keys()):
        print(f"  only {'natively' if name in native else 'under Wine'}: {name}")

    passed = functions = 0
    skipped = []
    for name, test in here.items():
        output = test.findtext("system-out") or ""
        if test.find("skipped") is not None:
            reason = re.search(r"SKIPPED: (.*)", output)
            skipped.append((name, reason.group(1) if reason else "no reason given"))
            continue
        passed += test.get("status") == "run"
        for totals in re.findall(r"Totals: (\d+) passed", output):
            functions += int(totals)
        for function, reason in re.findall(r"^SKIP\s+: (\S+\([^\n]*\)) (.*)$", output, re.M):
            skipped.append((function, reason))
    print(f"Under Wine {passed} tests passed, with {functions} test functions that passed; skipped:")
    for name, reason in skipped:
        print(f"  {name}: {reason}")
    return 1 if native != here.keys() else 0


if __name__ == "__main__":
    sys.exit(main())
