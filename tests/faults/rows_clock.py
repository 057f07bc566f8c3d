"""The clock of the machine is set while the program runs. The program measures time by a clock that
cannot be set."""

import contextlib
import glob
import os
import subprocess
import sys
import time

from tests.faults.harness import (
    BUILT_IN, EARLIER, FAREWELL, FULL_TIME, RUN, UNINSTALLER_ORDERS, do)
from tests.faults.servers import Exchange

DAY = 86400

# Prints the time of day, and how much of it passed in a number of seconds, whenever it reads one.
WITNESS = """
import sys, time
for line in sys.stdin:
    began, asked = time.time(), time.monotonic()
    while time.monotonic() < asked + float(line):
        pass
    now = time.time()
    print(now, now - began, flush=True)
"""


def remove_leftovers():
    """libfaketime keeps the clock in two files that are named by a process's number. They stay when
    the process is killed, and the next of that number would take them for its own."""
    for file in glob.glob("/dev/shm/*faketime_s*_*"):
        if not os.path.exists("/proc/" + file.rpartition("_")[2]):
            with contextlib.suppress(FileNotFoundError):  # another row did
                os.remove(file)


class Clock:
    """What the program takes for the time of day: the machine's, off by as much as it is set to, or
    what faked says in libfaketime's language. A witness is started in the same way."""

    def __init__(self, fault, faked=None):
        remove_leftovers()
        self._library, = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
        self._fault = fault
        self._file = fault.path("clock")
        settings = {"LD_PRELOAD": self._library, "FAKETIME_DONT_FAKE_MONOTONIC": "1",
                    "DONT_FAKE_MONOTONIC": "1"}
        if faked:
            settings["FAKETIME"] = faked
        else:
            settings.update(FAKETIME_TIMESTAMP_FILE=self._file, FAKETIME_NO_CACHE="1",
                            FAKETIME_DONT_RESET="1")
            self.set(0)
        fault.environment.update(settings)
        self._witness = fault.desktop.start(
            [sys.executable, "-c", WITNESS], encoding="ascii", stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, env={**fault.desktop.environment, **settings})

    def set(self, seconds):
        with open(self._file + ".new", "w", encoding="ascii") as file:
            file.write(f"{seconds:+d}s\n")
        os.replace(self._file + ".new", self._file)

    def told(self, seconds=0.0):
        """The time of day as it is told, and how much of it passes in so many seconds."""
        self._witness.stdin.write(f"{seconds}\n")
        self._witness.stdin.flush()
        time_of_day, passed = self._witness.stdout.readline().split()
        return float(time_of_day), float(passed)

    def expect_in_use(self):
        maps = self._fault.content(f"/proc/{self._fault.process.pid}/maps").decode()
        self._fault.expect(os.path.realpath(self._library) in maps,
                           "the program uses the clock that it was given")

    def expect_told(self, time_of_day):
        """The clock is in use and tells that time, give or take a minute."""
        self.expect_in_use()
        told, _ = self.told()
        self._fault.note(time.strftime("told %Y-%m-%d", time.localtime(told)))
        self._fault.expect(abs(told - time_of_day) < 60,
                           f"the clock tells {told:.0f}, not about {time_of_day:.0f}")


def faked(time_of_day=None):
    """The program lives by a Clock."""
    def prepare(fault):
        fault.clock = Clock(fault, time_of_day)

    return prepare


def jump(seconds):
    def step(fault):
        fault.clock.expect_told(time.time())
        fault.clock.set(seconds)
        fault.clock.expect_told(time.time() + seconds)

    return step


def jumps_while_loading(seconds):
    return [do.put_earlier_document(), faked(), do.serve(accept=Exchange.stall), do.start(),
            do.pause(3), jump(seconds), do.wait_for_main_window(FULL_TIME), do.leave(EARLIER)]


def jumps_in_the_run(seconds):
    return [do.order(UNINSTALLER_ORDERS, delay=0), faked(), do.open(), do.remove_product(),
            do.pause(5), jump(seconds), do.wait_for_result("success", RUN), do.pause(0.7),
            do.close()]


def stands_in(date):
    def expect_told(fault):
        begins = time.mktime(time.strptime(date, "%Y-%m-%d %H:%M:%S"))
        fault.clock.expect_told(begins + time.monotonic() - fault.started)

    return [faked("@" + date), do.serve(), do.open(), expect_told, do.close()]


def expect_race(fault):
    fault.clock.expect_in_use()
    _, passed = fault.clock.told(0.2)
    fault.note(f"{passed:.0f} s told in a fifth of one")
    fault.expect(passed >= 180, f"in 0.2 s {passed:.1f} s passed")


ROWS = {
    "jumps a day ahead while loading": jumps_while_loading(DAY),
    "jumps a day back while loading": jumps_while_loading(-DAY),
    "jumps a year ahead while the uninstaller runs": jumps_in_the_run(365 * DAY),
    "jumps a year back while the uninstaller runs": jumps_in_the_run(-365 * DAY),
    "stands at the beginning of 1970": stands_in("1970-01-01 00:00:10"),
    "stands in 2040": stands_in("2040-01-01 00:00:00"),
    # libfaketime shortens the pause at the end as well.
    "ticks a second for every millisecond": [
        faked("+0 x1000"), do.open(), expect_race, do.leave(BUILT_IN, (0, FAREWELL[1]))],
}
