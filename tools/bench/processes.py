"""Whole processes: how long until they paint, what they cost while they are shown, how much memory
they take. Measured from outside, so that any program can be measured."""

import contextlib
import glob
import os
import re
import signal
import subprocess
import tempfile
import time

from Xlib import X, display, error
from Xlib.ext import damage

DEVNULL = subprocess.DEVNULL


class PaintWatch:
    """Tells when a window of the wizard's size, or another, is painted on a desktop, from entry to
    exit."""

    def __init__(self, desktop, least_width=600):
        self._least_width = least_width
        self._name = desktop.environment["DISPLAY"]

    def __enter__(self):
        self._display = display.Display(self._name)
        self._display.set_error_handler(lambda *ignored: None)  # windows go while looked at
        self._display.damage_query_version()
        self._root = self._display.screen().root
        self._root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self._display.sync()
        return self

    def __exit__(self, *exception):
        self._display.close()

    def forget(self):
        """Drops the events of earlier windows."""
        self._display.sync()
        while self._display.pending_events():
            self._display.next_event()

    def wait_for_paint(self, seconds=30):
        """Waits until such a window shows something, and returns the time."""
        watched = set()
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            while self._display.pending_events():
                event = self._display.next_event()
                with contextlib.suppress(error.XError):
                    self._watch_or_look(event, watched)
                    if self._has_paint(event, watched):
                        return time.monotonic()
            time.sleep(0.0005)
        raise TimeoutError(f"nothing was painted within {seconds} s")

    def _watch_or_look(self, event, watched):
        if event.type == X.CreateNotify and event.window.id not in watched:
            watched.add(event.window.id)
            event.window.damage_create(damage.DamageReportRawRectangles)
            self._display.flush()

    def _has_paint(self, event, watched):
        window = getattr(event, "drawable", None) or getattr(event, "window", None)
        identifier = getattr(window, "id", window)
        if identifier not in watched:
            return False
        window = self._display.create_resource_object("window", identifier)
        with contextlib.suppress(error.BadMatch, error.BadDrawable, error.BadWindow):
            place = window.get_geometry()
            if place.width < self._least_width:
                return False
            pixel = window.get_image(place.width // 2, place.height - 20, 1, 1, X.ZPixmap,
                                     0xFFFFFFFF).data
            return any(pixel)
        return False


@contextlib.contextmanager
def running(command, environment, output=DEVNULL):
    """A program that runs until the end of the block, in a session of its own: its children are
    killed with it."""
    process = subprocess.Popen(command, env=environment, stdin=DEVNULL, stdout=output,
                               stderr=DEVNULL, start_new_session=True)
    try:
        yield process
    finally:
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        if process.stdout:
            process.stdout.close()


def time_to_paint(paints, command, environment):
    """Milliseconds from the start to the first picture."""
    paints.forget()
    start = time.monotonic()
    with running(command, environment):
        return (paints.wait_for_paint() - start) * 1000


def processor_ms(pid):
    """Processor time of all threads of a process, in milliseconds."""
    total = 0
    for file in glob.glob(f"/proc/{pid}/task/*/schedstat"):
        with open(file, encoding="ascii") as text:
            total += int(text.read().split()[0])
    return total / 1e6


def processor_per_second(paints, command, environment, seconds, settle=1.0):
    """Milliseconds of processor time for each second that the program is shown."""
    paints.forget()
    with running(command, environment) as process:
        paints.wait_for_paint()
        time.sleep(settle)
        start, before = time.monotonic(), processor_ms(process.pid)
        time.sleep(seconds)
        return (processor_ms(process.pid) - before) / (time.monotonic() - start)


def peak_mib(pid):
    with open(f"/proc/{pid}/status", encoding="ascii") as text:
        return int(re.search(r"VmHWM:\s+(\d+)", text.read()).group(1)) / 1024


def peak_memory(paints, command, environment, seconds):
    """The peak of a program's memory, so many seconds after its first picture."""
    paints.forget()
    with running(command, environment) as process:
        paints.wait_for_paint()
        time.sleep(seconds)
        return peak_mib(process.pid)


def instructions_by_frame(command, environment, frames, seconds=120):
    """Instructions until the first picture is handed to the screen, and between any two pictures
    after that, for so many."""
    flush = "QBackingStore::flush*"
    with tempfile.TemporaryDirectory() as folder:
        profile = os.path.join(folder, "part")
        valgrind = ["valgrind", "--tool=callgrind", f"--callgrind-out-file={profile}",
                    f"--dump-after={flush}"]
        with running([*valgrind, *command], environment) as process:
            deadline = time.monotonic() + seconds
            # A part is written whole before the file of the next one is made.
            while not os.path.exists(f"{profile}.{frames + 2}"):
                if time.monotonic() > deadline or process.poll() is not None:
                    raise TimeoutError(f"{command[0]} did not paint {frames} pictures")
                time.sleep(0.1)
        return [total_of(f"{profile}.{part}") for part in range(1, frames + 2)]


def instructions(command, environment=None):
    """Of the whole life of a process."""
    with tempfile.TemporaryDirectory() as folder:
        profile = os.path.join(folder, "whole")
        subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={profile}",
                        *command], env=environment, check=True, stdin=DEVNULL, stdout=DEVNULL,
                       stderr=DEVNULL)
        return total_of(profile)


def total_of(profile):
    with open(profile, encoding="utf-8", errors="replace") as text:
        for line in text:
            if line.startswith(("totals:", "summary:")):
                return int(line.split()[1])
    raise ValueError(f"{profile} names no total")


def timed(command, environment=None):
    """Milliseconds that a command took, and what it printed."""
    start = time.monotonic()
    result = subprocess.run(command, env=environment, check=True, stdin=DEVNULL,
                            stdout=subprocess.PIPE, stderr=DEVNULL, encoding="utf-8")
    return (time.monotonic() - start) * 1000, result.stdout
