"""The clock of the machine is set while the program runs. All its waiting goes by a clock that
nobody sets."""

import glob
import os
import time

from bench import BUILT_IN, EARLIER, Skipped
from servers import FaultyServer
from table import row

GROUP = "clock"

DAY = 86400


class Clock:
    """What the program takes for the time of day."""

    def __init__(self, fault):
        found = glob.glob("/usr/lib/*/faketime/libfaketimeMT.so.1")
        if not found:
            raise Skipped("no libfaketime here")
        self.library = found[0]
        self._file = fault.path("clock")
        self.set(0)
        self.environment = {"FAKETIME_TIMESTAMP_FILE": self._file, "FAKETIME_NO_CACHE": "1",
                            "FAKETIME_DONT_FAKE_MONOTONIC": "1", "DONT_FAKE_MONOTONIC": "1",
                            "FAKETIME_DONT_RESET": "1"}

    def set(self, seconds):
        with open(self._file + ".new", "w", encoding="ascii") as file:
            file.write(f"{seconds:+d}s\n")
        os.replace(self._file + ".new", self._file)


def jumps_while_loading(name, seconds):
    @row(GROUP, name)
    def play(fault):
        clock = Clock(fault)
        fault.put_earlier_document()
        with FaultyServer(accept=lambda exchange: exchange.stall()) as server:
            fault.start(preload=[clock.library], CLIPWRIGHT_SANDBOX_SERVICE=server.url,
                        **clock.environment)
            time.sleep(3)
            clock.set(seconds)
            fault.wait_for_main_window(9.9, 16.0)
            fault.leave(EARLIER)


jumps_while_loading("jumps a day ahead while loading", DAY)
jumps_while_loading("jumps a day back while loading", -DAY)


def jumps_in_the_run(name, seconds):
    @row(GROUP, name)
    def play(fault):
        clock = Clock(fault)
        fault.order_uninstaller(delay=0)
        fault.start(preload=[clock.library], **clock.environment)
        fault.wait_for_main_window()
        fault.confirm_removal()
        pressed = time.monotonic()
        time.sleep(5)
        clock.set(seconds)
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
        clock = Clock(fault)
        with FaultyServer() as server:
            fault.start(preload=[clock.library], FAKETIME=date, FAKETIME_DONT_FAKE_MONOTONIC="1",
                        DONT_FAKE_MONOTONIC="1", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window()
            fault.close_by_keys()


starts_in("stands at the beginning of 1970", "@1970-01-01 00:00:10")
starts_in("stands in 2040", "@2040-01-01 00:00:00")


@row(GROUP, "ticks a second for every millisecond")
def races(fault):
    clock = Clock(fault)
    fault.start(preload=[clock.library], FAKETIME="+0 x1000", FAKETIME_DONT_FAKE_MONOTONIC="1",
                DONT_FAKE_MONOTONIC="1")
    fault.wait_for_main_window()
    fault.leave(BUILT_IN)
