"""Ends a command in the clean root of a release in each way there is, and looks for what it left.

usage: python3 -m tests.clean_root SUITE

Needs root, and the native build in that root: ./dev in SUITE test
"""

import os
import pathlib
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
STEPS = f"1{os.getpid():010}"  # never done, and found among the processes by its number
BUSY = 60


def left_over(before):
    """What can still be seen of the command: processes by their arguments, mounts anywhere."""
    found = []
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            if STEPS in process.joinpath("cmdline").read_text():
                found.append("process " + process.name)
            if process.name not in before and \
                    "/root-" in process.joinpath("mountinfo").read_text():
                found.append("mounts of process " + process.name)
        except OSError:
            continue  # ended in between
    return found


def processes():
    return {process.name for process in pathlib.Path("/proc").glob("[0-9]*")}


def wait_until(condition):
    until = time.monotonic() + BUSY
    while not condition() and time.monotonic() < until:
        time.sleep(0.1)
    return condition()


def is_walking():
    return any(STEPS.encode() in process.read_bytes() and b"bin/monkey" in process.read_bytes()
               for process in pathlib.Path("/proc").glob("[0-9]*/cmdline") if process.exists())


def end(suite, name, send, expected):
    before, mounts = processes(), pathlib.Path("/proc/self/mountinfo").read_text()
    command = subprocess.Popen(["./dev", "in", suite, "monkey", STEPS], cwd=ROOT,
                               start_new_session=True, stdin=subprocess.DEVNULL,
                               stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        if not wait_until(is_walking):
            return [f"{name}: the command did not start within {BUSY} s"]
        send(command)
        code = command.wait(BUSY)
    finally:
        command.kill()
    wait_until(lambda: not left_over(before))
    failures = [f"{name}: left {what}" for what in left_over(before)]
    if code != expected:
        failures.append(f"{name}: exit code {code}, not {expected}")
    if pathlib.Path("/proc/self/mountinfo").read_text() != mounts:
        failures.append(f"{name}: mounts outside")
    print(f"{name}: " + ("FAILED" if failures else "nothing left"))
    return failures


def main():
    suite = sys.argv[1]
    failures = [
        # As a terminal does it: to every process of the foreground.
        *end(suite, "Ctrl-C", lambda command: os.killpg(command.pid, signal.SIGINT), 130),
        *end(suite, "SIGTERM", lambda command: command.terminate(), 143),
        *end(suite, "SIGKILL", lambda command: command.kill(), -signal.SIGKILL)]
    print("\n".join(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
