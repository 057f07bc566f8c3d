"""Ends a command in the clean root of a release in each way there is, and looks for what it left;
makes a root, and looks which roots of earlier recipes are left.

usage: python3 -m tests.clean_root SUITE

Needs root, and the native build in that root: ./dev in SUITE test
"""

import fcntl
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[1]
STEPS = f"1{os.getpid():08}"  # hours of work, and found among the processes by its number
BUSY = 60


def spaces():
    """The mount namespaces that processes are in, and their processes' arguments."""
    found = {}
    for process in pathlib.Path("/proc").glob("[0-9]*"):
        try:
            space = os.readlink(process / "ns/mnt")
            found.setdefault(space, []).append((process / "cmdline").read_text(errors="replace"))
        except OSError:
            continue  # ended in between
    return found


def walking():
    """The namespace in which the command runs; None when it does not."""
    def is_walk(command):
        return STEPS in command and "bin/monkey" in command

    return next((space for space, commands in spaces().items() if any(map(is_walk, commands))),
                None)


def wait_until(condition):
    until = time.monotonic() + BUSY
    while not condition() and time.monotonic() < until:
        time.sleep(0.1)
    return condition()


def heed_interrupts():
    """Jobs in the background of a shell ignore them, and so do their children."""
    signal.signal(signal.SIGINT, signal.SIG_DFL)


def end(suite, name, send, expected):
    mounts = pathlib.Path("/proc/self/mountinfo").read_text()
    command = subprocess.Popen(["./dev", "in", suite, "monkey", STEPS], cwd=ROOT,
                               start_new_session=True, stdin=subprocess.DEVNULL,
                               preexec_fn=heed_interrupts)
    try:
        wait_until(lambda: walking() or command.poll() is not None)
        if not walking():
            return [f"{name}: the command did not start within {BUSY} s, or ended at once"]
        space = walking()
        send(command)
        code = command.wait(BUSY)
    finally:
        command.kill()
    failures = []
    if not wait_until(lambda: space not in spaces()):
        failures.append(f"{name}: left {spaces().get(space)}")
    if any(STEPS in line for lines in spaces().values() for line in lines):
        failures.append(f"{name}: left processes outside")
    if code != expected:
        failures.append(f"{name}: exit code {code}, not {expected}")
    if pathlib.Path("/proc/self/mountinfo").read_text() != mounts:
        failures.append(f"{name}: left mounts outside")
    print(f"{name}: " + ("FAILED" if failures else "nothing left"))
    return failures


def make_beside_earlier_roots(suite):
    """In a cache of its own, which shares the newest empty system with the user's."""
    cache = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache")
    system = max(cache.glob(f"clipwright-uninstaller/root-{suite}-*.tar"), key=os.path.getmtime)
    with tempfile.TemporaryDirectory(dir=cache) as other:
        folder = pathlib.Path(other, "clipwright-uninstaller")
        folder.mkdir()
        os.link(system, folder / system.name)
        idle, busy = (folder / f"root-{suite}-{name}" for name in ("idle", "busy"))
        for earlier in (idle, busy):
            earlier.mkdir()
            for suffix in (".tar", ".lock"):
                earlier.with_suffix(suffix).touch()
        with open(busy.with_suffix(".lock")) as lock:
            fcntl.flock(lock, fcntl.LOCK_SH)
            code = subprocess.run(["./dev", "in", suite], cwd=ROOT, stdout=subprocess.DEVNULL,
                                  env={**os.environ, "XDG_CACHE_HOME": other}).returncode
        left = sorted(path.name for path in folder.glob("root-*") if path.suffix != ".lock")
    expected = sorted([system.name, system.stem, f"{busy.name}.tar", busy.name])
    print("Earlier roots: " + ("removed, but the busy one" if left == expected else "FAILED"))
    return [] if code == 0 and left == expected else [f"exit code {code}, roots left: {left}"]


def main():
    suite = sys.argv[1]
    failures = [
        # As a terminal does it: to every process of the foreground.
        *end(suite, "Ctrl-C", lambda command: os.killpg(command.pid, signal.SIGINT), 130),
        *end(suite, "SIGTERM", lambda command: command.terminate(), 143),
        *end(suite, "SIGKILL", lambda command: command.kill(), -signal.SIGKILL),
        *make_beside_earlier_roots(suite)]
    print("\n".join(failures))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
