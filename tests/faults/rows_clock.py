"""The clock of the machine is set while the program runs. All its waiting goes by a clock that
nobody sets."""

import glob
import os
import subprocess
import sys
import time

from tests.faults.harness import BUILT_IN, EARLIER, Skipped
from tests.faults.servers import FaultyServer
from tests.faults.table import row

GROUP = "clock"

DAY = 86400


# Tells the time of day, and how long that took, as often as it is asked.
WITNESS = """
import sys, time
for line in sys.stdin:
    began, asked = time.time(), time.monotonic()
    while time.monotonic() < asked + float(line):
        pass
    now = time.time()
    print(now, now - began, flush=True)
"""


class Clock:
    """What the program takes for the time of day: the machine's, as far off as it is set, or what is
    given. Beside the program runs a witness that was started in the same way."""

    def __init__(self, fault, faked=None):
        found = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
        if not found:
            raise Skipped("no libfaketime here")
        self._fault = fault
        self._file = fault.path("clock")
        self._environment = {"LD_PRELOAD": found[0], "FAKETIME_DONT_FAKE_MONOTONIC": "1",
                             "DONT_FAKE_MONOTONIC": "1"}
        if faked:
            self._environment["FAKETIME"] = faked
        else:
            self._environment.update(FAKETIME_TIMESTAMP_FILE=self._file, FAKETIME_NO_CACHE="1",
                                     FAKETIME_DONT_RESET="1")
            self.set(0)
        self._witness = None

    def __enter__(self):
        self._witness = subprocess.Popen([sys.executable, "-c", WITNESS], encoding="ascii",
                                         env={**os.environ, **self._environment},
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE)
        return self

    def __exit__(self, *exception):
        self._witness.kill()
        self._witness.communicate()

    def start(self, **environment):
        self._fault.start(**environment, **self._environment)

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
        """The program lives by this clock, too."""
        with open(f"/proc/{self._fault.process.pid}/maps", encoding="utf-8") as maps:
            self._fault.expect(os.path.realpath(self._environment["LD_PRELOAD"]) in maps.read(),
                               "the program has not the clock that it was given")

    def expect_told(self, time_of_day):
        """The clock is in use and tells that time, give or take a minute."""
        self.expect_in_use()
        told, _ = self.told()
        self._fault.note(time.strftime("told %Y-%m-%d", time.localtime(told)))
        self._fault.expect(abs(told - time_of_day) < 60,
                           f"the clock tells {told:.0f}, not about {time_of_day:.0f}")


def jumps_while_loading(name, seconds):
    @row(GROUP, name)
    def play(fault):
        fault.put_earlier_document()
        with Clock(fault) as clock, \
                FaultyServer(accept=lambda exchange: exchange.stall()) as server:
            clock.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            time.sleep(3)
            clock.expect_told(time.time())
            clock.set(seconds)
            clock.expect_told(time.time() + seconds)
            fault.wait_for_main_window(9.9, 16.0)
            fault.leave(EARLIER)


jumps_while_loading("jumps a day ahead while loading", DAY)
jumps_while_loading("jumps a day back while loading", -DAY)


def jumps_in_the_run(name, seconds):
    @row(GROUP, name)
    def play(fault):
        fault.order_uninstaller(delay=0)
        with Clock(fault) as clock:
            clock.start()
            fault.wait_for_main_window()
            fault.confirm_removal()
            pressed = time.monotonic()
            time.sleep(5)
            clock.expect_told(time.time())
            clock.set(seconds)
            clock.expect_told(time.time() + seconds)
            fault.wait_for_result("success", 40)
            took = time.monotonic() - pressed
            fault.expect(29.5 <= took <= 34, f"the run was shown for {took:.1f} s")
            time.sleep(0.7)
            fault.close_by_keys()


jumps_in_the_run("jumps a year ahead while the uninstaller runs", 365 * DAY)
jumps_in_the_run("jumps a year back while the uninstaller runs", -365 * DAY)


def starts_in(name, date):
    @row(GROUP, name)
    def play(fault):
        with Clock(fault, "@" + date) as clock, FaultyServer() as server:
            clock.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window()
            clock.expect_told(time.mktime(time.strptime(date, "%Y-%m-%d %H:%M:%S")))
            fault.close_by_keys()


starts_in("stands at the beginning of 1970", "1970-01-01 00:00:10")
starts_in("stands in 2040", "2040-01-01 00:00:00")


@row(GROUP, "ticks a second for every millisecond")
def races(fault):
    with Clock(fault, "+0 x1000") as clock:
        clock.start()
        fault.wait_for_main_window()
        clock.expect_in_use()
        _, passed = clock.told(0.2)
        fault.note(f"{passed:.0f} s told in a fifth of one")
        fault.expect(passed >= 180, f"in 0.2 s {passed:.1f} s passed")
        fault.leave(BUILT_IN)
