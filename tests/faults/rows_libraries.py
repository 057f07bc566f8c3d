"""The maker's closed libraries are slow, silent, answer garbage or never return."""

import json
import os
import time

from tests.faults.harness import BUILT_IN, MAIN, MESSAGE, SERVED, SPLASH
from tests.faults.servers import FaultyServer
from tests.faults.table import row

GROUP = "libraries"


def start_faulty(fault, calls, **environment):
    fault.start(preload=[os.path.join(fault.binaries, "libfaulty-libraries.so")],
                FAULTY_CALLS=calls, **environment)


@row(GROUP, "analytics slow to begin")
def slow_init(fault):
    start_faulty(fault, "data_init=slow")
    fault.wait_for_main_window(at_least=2.0)
    fault.leave(BUILT_IN)


@row(GROUP, "analytics slow with each event")
def slow_events(fault):
    start_faulty(fault, "data_event=slow")
    fault.wait_for_main_window(at_least=2.0)
    fault.press(MAIN, "alt+F4")
    fault.wait_for_exit()


@row(GROUP, "analytics never takes its first event")
def never_takes_events(fault):
    """It is called from the thread of the windows, which it keeps. The program can be ended."""
    start_faulty(fault, "data_event=never")
    fault.wait_until(lambda: fault.calls(), 10, "the session")
    time.sleep(3)
    fault.note("nothing is answered any more")
    fault.terminate()
    fault.expect_equal(fault.starts_of("uninstaller"), [], "uninstallers started")


@row(GROUP, "analytics slow to end")
def slow_stop(fault):
    start_faulty(fault, "data_stop=slow")
    fault.wait_for_main_window()
    fault.leave(BUILT_IN)
    fault.expect_equal(fault.calls()[-1]["call"], "data_stop", "the last call")


@row(GROUP, "analytics never begins")
def never_begins(fault):
    """The library is called before anything else and from the thread of the windows: there can be
    none. Nor is there anything else, and the program can be ended."""
    start_faulty(fault, "data_init=never")
    time.sleep(3)
    fault.expect_equal(fault.windows(SPLASH) + fault.windows(MAIN), [], "windows")
    fault.note("no window, nothing done")
    fault.terminate()


@row(GROUP, "analytics never ends")
def never_stops(fault):
    """Its time is three seconds; the program is gone a while after them."""
    start_faulty(fault, "data_stop=never")
    fault.wait_for_main_window()
    fault.press(MAIN, "alt+F4")
    fault.wait_for_exit(seconds=12)


@row(GROUP, "analytics never ends, and the splash was closed")
def never_stops_after_splash(fault):
    with FaultyServer(accept=lambda exchange: exchange.stall()) as server:
        start_faulty(fault, "data_stop=never", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.press(SPLASH, "Escape")
        fault.wait_for_exit(seconds=12)


def check_answers(name, answer, what):
    """The answer to a check is judged by what can be read of it."""
    @row(GROUP, name)
    def play(fault):
        if isinstance(answer, bytes):
            fault.write("Feed/check.json", answer)
        with FaultyServer() as server:
            start_faulty(fault, "check_upgrade_c=garbage" if answer is None else "",
                         CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window()
            fault.take_offer()
            fault.press(MESSAGE, "space")
            fault.note(what)
            fault.close_by_keys()
        calls = [json.loads(line)["call"] for line in fault.lines("Feed/calls.jsonl")]
        fault.expect("download_package_c" not in calls, "nothing was downloaded")


check_answers("check answers without an end, in no characters", None, "a message")
check_answers("check answers nothing", b"", "a message")
check_answers("check answers no JSON", b"<html>503</html>", "a message")
check_answers("check answers a hundred thousand brackets", b"[" * 100_000, "a message")
check_answers("check answers a number beyond all numbers",
              b'{"errcode": "99999999999999999999999999"}', "a message")
check_answers("check answers an offer of the wrong kinds",
              b'{"errcode":"0","result":{"needupgrade":[],"path":{},"upgradeVersion":7}}',
              "a message")
check_answers("check answers in half a character", b'{"errcode":"1","errmsg":"\xf0\x9f', "a message")


@row(GROUP, "check slow")
def slow_check(fault):
    fault.order_installer(delay=0)
    with FaultyServer() as server:
        start_faulty(fault, "check_upgrade_c=slow", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: "UpgradeCompleted" in fault.actions(), 10, "the upgrade")
        fault.note("upgraded")
        fault.close_by_keys()


@row(GROUP, "check never answers")
def never_answers(fault):
    with FaultyServer() as server:
        start_faulty(fault, "check_upgrade_c=never", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        time.sleep(1.5)
        fault.close_by_keys()
    fault.expect_equal(fault.calls()[-1]["call"], "data_stop", "the last call")


@row(GROUP, "check offers a version as long as its answer may be")
def long_version(fault):
    version = "7" * 600
    fault.write("Feed/check.json", json.dumps(
        {"errcode": "0", "result": {"needupgrade": "1", "upgradeVersion": version, "path": "/"}}))
    fault.order_installer(delay=0)
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: "UpgradeCompleted" in fault.actions(), 10, "the upgrade")
        fault.close_by_keys()


@row(GROUP, "download never returns: the removal is still possible")
def download_never_returns(fault):
    fault.order_uninstaller(delay=0, exit=3)
    with FaultyServer() as server:
        start_faulty(fault, "download_package_c=never", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        time.sleep(1.5)
        fault.press(MAIN, "Tab", "space")  # Cancel, on the upgrade page
        fault.wait_until(lambda: fault.actions()[-1] == "UninstallPopUp", 5, "the feedback page")
        fault.go_on_to_removal()
        fault.wait_for_result("failure", 5)
        fault.close_by_keys()


@row(GROUP, "download reports impossible progress and answers garbage")
def garbage_progress(fault):
    fault.order_installer(delay=0)
    with FaultyServer() as server:
        start_faulty(fault, "download_package_c=garbage", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: "UpgradeCompleted" in fault.actions(), 15, "the upgrade")
        fault.note("no error reported is none: installed")
        fault.close_by_keys()


@row(GROUP, "download reports progress after its end, until the program's")
def late_progress(fault):
    fault.order_installer(delay=0)
    with FaultyServer() as server:
        start_faulty(fault, "download_package_c=late", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: "UpgradeCompleted" in fault.actions(), 10, "the upgrade")
        fault.close_by_keys()


@row(GROUP, "the library does not stop when it is told to")
def never_stops_work(fault):
    with FaultyServer() as server:
        start_faulty(fault, "stop=never", CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)
