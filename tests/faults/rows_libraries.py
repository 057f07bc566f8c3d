"""The maker's closed libraries are slow, silent, answer garbage or never return."""

import json
import os

from tests.faults.harness import (
    BUILT_IN, FAREWELL, INSTALLER_ORDERS, MAIN, MESSAGE, PROMPT, SOON, SPLASH, UNINSTALLER_ORDERS,
    WATCHDOG, do)
from tests.faults.servers import SERVED, Exchange

SLOW = 2.0  # seconds that a slow call takes longer
LATER = (SLOW + PROMPT[0], SLOW + PROMPT[1])
SLOWLY = (SLOW + FAREWELL[0], SLOW + FAREWELL[1])


def faulty(calls):
    """Calls of the libraries fail, as libraries/faulty_libraries.cpp says."""
    def prepare(fault):
        fault.environment.update(FAULTY_CALLS=calls, LD_PRELOAD=os.path.join(
            fault.binaries, "libfaulty-libraries.so"))

    return prepare


def message_comes(prepared):
    """The answer to the check offers no update: a message says so, and nothing is downloaded."""
    return [prepared, do.serve(), do.open(), do.take_offer(), do.press(MESSAGE, "space"),
            do.note("a message"), do.close(),
            lambda fault: fault.expect_equal(fault.library_calls().count("download_package_c"), 0,
                                             "downloads")]


def answered(content):
    return message_comes(do.write("Feed/check.json", content))


def upgrades(prepared):
    """The upgrade succeeds in spite of the fault."""
    return [prepared, do.order(INSTALLER_ORDERS, delay=0), do.serve(), do.open(),
            do.take_offer(), do.wait_for_event("UpgradeCompleted", SOON + SLOW),
            do.note("upgraded"), do.close()]


def no_window(fault):
    fault.expect_equal(fault.desktop.windows(*SPLASH) + fault.desktop.windows(*MAIN), [],
                       "windows")


def wait_for_session(fault):
    fault.wait_until(fault.calls, SOON, "the session")


def was_stopped(fault):
    fault.expect_equal(fault.calls()[-1]["call"], "data_stop", "the last call")


ROWS = {
    "analytics slow to begin": [
        faulty("data_init=slow"), do.open(limits=LATER), do.leave(BUILT_IN)],
    "analytics slow with each event": [
        faulty("data_event=slow"), do.open(limits=LATER), do.close()],
    # The library is called from the thread of the windows, which waits for it. The program can be
    # ended.
    "analytics never takes its first event": [
        faulty("data_event=never"), do.start(), wait_for_session, do.pause(3), do.terminate(),
        do.expect_started(0)],
    "analytics slow to end": [
        faulty("data_stop=slow"), do.open(), do.leave(BUILT_IN, SLOWLY), was_stopped],
    # It is called first of all: not even a window comes.
    "analytics never begins": [
        faulty("data_init=never"), do.start(), do.pause(3), no_window, do.terminate()],
    "analytics never ends": [faulty("data_stop=never"), do.open(), do.close(WATCHDOG)],
    "analytics never ends, and the splash was closed": [
        faulty("data_stop=never"), do.serve(accept=Exchange.stall), do.start(),
        do.press(SPLASH, "Escape"), do.wait_for_exit(limits=WATCHDOG)],
    "check answers without an end, in no characters": message_comes(
        faulty("check_upgrade_c=garbage")),
    "check answers nothing": answered(b""),
    "check answers no JSON": answered(b"<html>503</html>"),
    "check answers a hundred thousand brackets": answered(b"[" * 100_000),
    "check answers a number beyond all numbers": answered(
        b'{"errcode": "99999999999999999999999999"}'),
    "check answers an offer of the wrong kinds": answered(
        b'{"errcode":"0","result":{"needupgrade":[],"path":{},"upgradeVersion":7}}'),
    "check answers in half a character": answered(b'{"errcode":"1","errmsg":"\xf0\x9f'),
    "check slow": upgrades(faulty("check_upgrade_c=slow")),
    "check never answers": [
        faulty("check_upgrade_c=never"), do.serve(), do.open(), do.take_offer(), do.pause(1.5),
        do.close(), was_stopped],
    "check offers a version as long as its answer may be": upgrades(
        do.write("Feed/check.json", json.dumps({"errcode": "0", "result": {
            "needupgrade": "1", "upgradeVersion": "7" * 600, "path": "/"}}))),
    "download never returns: the removal is still possible": [
        do.order(UNINSTALLER_ORDERS, delay=0, exit=3), faulty("download_package_c=never"),
        do.serve(), do.open(), do.take_offer(), do.pause(1.5),
        do.press(MAIN, "Tab", "space"),  # Cancel, on the upgrade page
        do.wait_for_event("UninstallPopUp"), do.ask_to_remove(choose=False),
        do.confirm_removal(), do.wait_for_result("failure"), do.close()],
    "download reports impossible progress and answers garbage": upgrades(
        faulty("download_package_c=garbage")),
    "download reports progress after its end, until the program's": upgrades(
        faulty("download_package_c=late")),
    "the library does not stop when it is told to": [
        faulty("stop=never"), do.serve(), do.open(), do.leave(SERVED, WATCHDOG)],
}
