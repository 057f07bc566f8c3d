"""The program is ended from outside, or loses its display, at every stage. It ends at once, starts
no child process, leaves a running one alone, and leaves no document in part."""

import json
import signal
import time

from tests.faults.harness import (
    AT_ONCE, CACHED, CANCEL, EARLIER, FEED_ORDERS, INSTALLER_ORDERS, MAIN, MESSAGE, RUN, SOON,
    SPLASH, UNINSTALLER_ORDERS, do)
from tests.faults.servers import SERVED


def wait_for_request(fault):
    fault.wait_until(lambda: fault.server.requests, SOON, "the first request")


UPGRADING = [do.open(), do.take_offer()]
REMOVING = [do.open(), do.remove_product()]
HANGING = [do.order(UNINSTALLER_ORDERS, end="hang"), do.order(INSTALLER_ORDERS, end="hang")]

# How each stage is reached.
STAGES = {
    "while loading": [do.start(), do.wait_for_window(SPLASH), wait_for_request],
    "on the feedback page": [do.open()],
    "at the last question": [do.open(), do.ask_to_remove()],
    "while the uninstaller runs": [
        *HANGING, *REMOVING, do.wait_for_uninstaller(), do.let_child_go_on()],
    "in the failure view": [
        do.order(UNINSTALLER_ORDERS, delay=0, exit=3), *REMOVING, do.wait_for_result("failure")],
    "in the success view": [
        do.order(UNINSTALLER_ORDERS, delay=0), *REMOVING, do.wait_for_result("success", RUN)],
    "while a check waits for its answer": [
        do.order(FEED_ORDERS, never_return="check"), *UPGRADING,
        do.wait_for_library_call("check_upgrade_c")],
    "while a message is shown": [
        do.write("Feed/check.json", '{"errcode": "7"}'), *UPGRADING,
        do.wait_for_window(MESSAGE)],
    "while the update is downloaded": [
        do.order(FEED_ORDERS, never_return="download"), *UPGRADING,
        do.wait_for_library_call("download_package_c")],
    "while the update installer runs": [
        *HANGING, *UPGRADING, do.wait_for_installer(), do.let_child_go_on()],
}


def lose_display(fault):
    fault.expect_output("X11 connection broke|XIO:|after .* requests|Connection reset")
    fault.acted = time.monotonic()
    fault.desktop.vanish()
    fault.wait_for_exit(1, AT_ONCE)


def ended(end, stage):
    def reset_picture(exchange):
        time.sleep(0.3 if stage == "while loading" else 0)  # the splash is to be seen
        exchange.reset()

    def play(fault):
        for step in STAGES[stage]:
            step(fault)
        started = fault.uninstallers_started()
        end(fault)
        reasons = json.loads(fault.content(CACHED))["problem_type"]["list"]
        fault.expect({int(SERVED), int(EARLIER)} & {reason["value"] for reason in reasons},
                     "a whole document is on the disk")
        if fault.child_goes_on:
            fault.expect_equal(len(fault.processes_left()), 1, "the child that goes on")
        fault.expect_started(started)

    return [do.put_earlier_document(), do.serve(picture=reset_picture), play]


def stop_at_once(fault):
    fault.process.terminate()
    fault.process.wait(timeout=5)
    fault.expect(fault.process.returncode in (0, -signal.SIGTERM), "ended by itself or at once")


def kill(fault):
    fault.process.kill()
    fault.process.wait()


def start_hundred(fault):
    copies = []
    for _ in range(100):
        fault.start()
        copies.append(fault.process)

    def running():
        return [copy for copy in copies if copy.poll() is None]

    fault.wait_until(lambda: len(running()) <= 1, 60, "all copies but one ended")
    fault.note(f"99 ended {time.monotonic() - fault.started:.1f} s after the last start")
    left = running()
    fault.expect_equal(len(left), 1, "copies that run")
    fault.expect_equal({copy.returncode for copy in copies if copy not in left}, {0},
                       "exit codes of the others")
    fault.process = left[0]


def expect_one_of_all(fault):
    fault.expect_equal(len(fault.desktop.windows(*MAIN)), 1, "windows")
    fault.leave(SERVED)
    fault.expect_equal(sum(call["call"] == "data_init" for call in fault.calls()), 1,
                       "sessions that were opened")
    fault.expect_equal(sum(".json" in path for path in fault.server.requests), 1,
                       "documents fetched")


ROWS = {f"{how} {stage}": ended(end, stage) for stage in STAGES
        for how, end in (("SIGTERM", do.terminate()), ("the display goes away", lose_display))}
ROWS.update({
    "no display at all": [
        do.expect_output("could not connect to display|Qt platform plugin|Available platform"),
        lambda fault: fault.environment.update(DISPLAY=":65000"), do.start(),
        do.wait_for_exit(-signal.SIGABRT, (0, SOON)),
        lambda fault: fault.expect_equal(fault.calls(), [], "calls of the analytics library")],
    "the window manager goes away": [
        do.serve(), do.open(), lambda fault: fault.desktop.lose_manager(), do.pause(0.5),
        do.click(MAIN, CANCEL), do.wait_for_exit()],
    "SIGTERM during the last pause": [
        do.serve(), do.open(), do.press(MAIN, "alt+F4"), stop_at_once],
    "a hundred copies started at once": [
        do.serve(), start_hundred, do.wait_for_window(MAIN), do.pause(1), expect_one_of_all],
    "a copy that was killed does not block the next": [
        do.serve(), do.open(), kill, do.open(), do.leave(SERVED)],
})
