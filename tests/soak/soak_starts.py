#!/usr/bin/python3
"""Starts the whole program and closes it again, many times, and looks whether anything grows.

usage: python3 -m tests.soak.soak_starts --bin DIR --out DIR [--starts N]

Each start fetches document and pictures, shows the window, chooses a reason and closes by the
window system's key. After each tenth of the starts it prints the memory and the descriptors
that a copy had in use, and the files in its folders. Exits with 1 when one of them has grown since
the first tenth: memory by 2 % or more, the others at all; or when a copy did not end well.
"""

import argparse
import contextlib
import os
import re
import statistics
import sys

from tests.faults.harness import SPLASH, Fault
from tests.kit.desktop import Desktop

TENTHS = 10
ALLOWED_GROWTH = 1.02


def kilobytes(process):
    """Memory that this process uses, shared or not."""
    with open(f"/proc/{process}/smaps_rollup", encoding="ascii") as file:
        return int(re.search(r"^Rss:\s+(\d+)", file.read(), re.MULTILINE).group(1))


def descriptors(process):
    """How many a process has open, without TCP connections: how many of them the framework keeps
    for another request depends on which answer comes first."""
    with open(f"/proc/{process}/net/tcp", encoding="ascii") as file:
        connections = {f"socket:[{line.split()[9]}]" for line in file}
    opened = 0
    for descriptor in os.scandir(f"/proc/{process}/fd"):
        with contextlib.suppress(OSError):  # just closed
            opened += os.readlink(descriptor) not in connections
    return opened


def files_below(folder):
    return sum(len(files) for _, _, files in os.walk(folder))


def start_and_close(fault):
    """One start to close; returns the memory and the descriptors in use while it is at rest."""
    fault.open()
    fault.choose()
    fault.wait_until(lambda: not fault.desktop.windows(*SPLASH), 5, "the splash gone")
    process = fault.process.pid
    used = kilobytes(process), descriptors(process)
    fault.close()
    if fault.failures:
        raise AssertionError("; ".join(fault.failures))
    return used


def soak(fault, starts):
    tenths = []
    for tenth in range(TENTHS):
        used = [start_and_close(fault)
                for _ in range(starts * tenth // TENTHS, starts * (tenth + 1) // TENTHS)]
        tenths.append((statistics.mean(memory for memory, _ in used),
                       min(count for _, count in used), files_below(fault.root)))
        print("  after {:5}: {:.0f} KiB, {} descriptors, {} files".format(
            starts * (tenth + 1) // TENTHS, *tenths[-1]), flush=True)
    first, last = tenths[0], tenths[-1]
    print(f"  memory grew by {(last[0] / first[0] - 1) * 100:.2f} % after the first tenth")
    fault.expect(last[0] < first[0] * ALLOWED_GROWTH and last[1] <= first[1]
                 and last[2] <= first[2], "something grows")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for the sandbox")
    parser.add_argument("--starts", type=int, default=500)
    arguments = parser.parse_args()
    if arguments.starts < TENTHS:
        parser.error(f"at least {TENTHS} starts, one for each tenth")

    print("Starts of the whole program")
    with Desktop(Desktop.MANAGED) as desktop:
        fault = Fault(os.path.abspath(arguments.bin), os.path.abspath(arguments.out), desktop)
        fault.serve()
        try:
            soak(fault, arguments.starts)
        except AssertionError as wrong:
            fault.expect(False, str(wrong))
        fault.finish()
    for wrong in fault.failures:
        print(f"  {wrong}")
    print("  FAILED" if fault.failures else "  ok")
    return 1 if fault.failures else 0


if __name__ == "__main__":
    sys.exit(main())
