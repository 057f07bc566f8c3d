"""The program is ended from outside, or loses its display, at every stage. It goes at once, it takes
no child along and starts none, and it leaves no document in part."""

import json
import os
import signal
import subprocess
import time

from tests.faults.harness import CONFIRMATION, CONTINUE, EARLIER, MAIN, MESSAGE, SERVED, SPLASH
from tests.faults.servers import FaultyServer
from tests.faults.table import row

GROUP = "ends"


def at_splash(fault, server):
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
    fault.wait_for_window(SPLASH)
    fault.wait_until(lambda: server.requests, 5, "the first request")


def at_feedback(fault, server):
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
    fault.wait_for_main_window()


def at_question(fault, server):
    at_feedback(fault, server)
    fault.choose()
    fault.click(MAIN, CONTINUE)
    fault.wait_for_window(CONFIRMATION)


def at_run(fault, server):
    fault.order_uninstaller(end="hang")
    at_feedback(fault, server)
    fault.confirm_removal()
    fault.wait_until(lambda: fault.starts_of("uninstaller"), 5, "the uninstaller")
    fault.outliving = True


def at_failure(fault, server):
    fault.order_uninstaller(delay=0, exit=3)
    at_feedback(fault, server)
    fault.confirm_removal()
    fault.wait_for_result("failure", 5)


def at_success(fault, server):
    fault.order_uninstaller(delay=0, exit=0)
    at_feedback(fault, server)
    fault.confirm_removal()
    fault.wait_for_result("success", 45)


def at_check(fault, server):
    fault.orders("Feed/orders.txt", never_return="check")
    at_feedback(fault, server)
    fault.take_offer()
    fault.wait_until(lambda: fault.lines("Feed/calls.jsonl"), 5, "the check")


def at_message(fault, server):
    fault.write("Feed/check.json", b'{"errcode": "7"}')
    at_feedback(fault, server)
    fault.take_offer()
    fault.wait_for_window(MESSAGE)


def at_download(fault, server):
    fault.orders("Feed/orders.txt", never_return="download")
    at_feedback(fault, server)
    fault.take_offer()
    fault.wait_until(lambda: len(fault.lines("Feed/calls.jsonl")) > 1, 8, "the download")


def at_installer(fault, server):
    fault.order_installer(end="hang")
    at_feedback(fault, server)
    fault.take_offer()
    fault.wait_until(lambda: fault.starts_of("update-installer"), 8, "the update installer")
    fault.outliving = True


STAGES = {
    "while loading": at_splash,
    "on the feedback page": at_feedback,
    "at the last question": at_question,
    "while the uninstaller runs": at_run,
    "in the failure view": at_failure,
    "in the success view": at_success,
    "while a check waits for its answer": at_check,
    "while a message is shown": at_message,
    "while the update is downloaded": at_download,
    "while the update installer runs": at_installer,
}


def judge_what_is_left(fault, before):
    """The document on the disk is a whole one, and a child goes on with its work."""
    content = fault.content(fault.cached)
    marks = [option["value"] for option in json.loads(content)["problem_type"]["list"]]
    fault.expect({int(SERVED), int(EARLIER)} & set(marks), "a whole document is on the disk")
    if fault.outliving:
        left = fault.processes_left()
        fault.expect_equal(len(left), 1, "the child that goes on")
        fault.note("the child goes on")
    fault.expect_equal(len(fault.starts_of("uninstaller")), before, "uninstallers started")


def ended_at(stage, reach):
    def play(fault, end):
        fault.put_earlier_document()
        # Slow enough for the splash to be seen.
        def picture(exchange):
            time.sleep(0.3 if reach is at_splash else 0)
            exchange.reset()

        with FaultyServer(picture=picture) as server:
            reach(fault, server)
            before = len(fault.starts_of("uninstaller"))
            end(fault)
        judge_what_is_left(fault, before)

    @row(GROUP, "SIGTERM " + stage)
    def by_signal(fault):
        play(fault, lambda fault: fault.terminate())

    @row(GROUP, "the display goes away " + stage)
    def by_display(fault):
        def end(fault):
            fault.screen.vanish()
            fault.wait_for_exit(1, seconds=5)

        fault.expect_said("X11 connection broke|XIO:|after .* requests|Connection reset")
        play(fault, end)


for STAGE, REACH in STAGES.items():
    ended_at(STAGE, REACH)


@row(GROUP, "no display at all")
def no_display(fault):
    """Qt's own way to end: it says so and aborts."""
    fault.expect_said("could not connect to display|Qt platform plugin|Available platform")
    fault.environment["DISPLAY"] = ":65000"
    fault.start()
    fault.wait_for_exit(-signal.SIGABRT, seconds=5)
    fault.expect_equal(fault.calls(), [], "calls of the analytics library")


@row(GROUP, "the window manager goes away")
def no_manager(fault):
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.screen.lose_manager()
        time.sleep(0.5)
        fault.click(MAIN, (624, 436))
        fault.wait_for_exit()


@row(GROUP, "every signal that asks to end, during the last pause")
def signals_at_the_end(fault):
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.press(MAIN, "alt+F4")
        fault.process.terminate()
        fault.process.wait(timeout=5)
    fault.expect(fault.process.returncode in (0, -signal.SIGTERM), "it ended by itself or at once")


@row(GROUP, "a hundred copies started at once", alone=True)
def hundred_copies(fault):
    with FaultyServer() as server:
        command = [os.path.join(fault.binaries, "clipwright-uninstaller-sandbox")]
        environment = {**fault.environment, "CLIPWRIGHT_SANDBOX_SERVICE": server.url}
        with open(os.path.join(fault.folder, "program.log"), "ab") as log:
            fault.started = time.monotonic()
            copies = [subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL,
                                       stdout=log, stderr=log) for _ in range(100)]
        fault.wait_until(lambda: sum(copy.poll() is None for copy in copies) <= 1, 60,
                         "all copies but one ended")
        fault.note(f"99 ended in {fault.elapsed():.1f} s")
        running = [copy for copy in copies if copy.poll() is None]
        fault.expect_equal(len(running), 1, "copies that run")
        fault.expect_equal({copy.returncode for copy in copies if copy not in running}, {0},
                           "exit codes of the others")
        fault.process = running[0]
        fault.wait_for_window(MAIN, 10)
        time.sleep(1)
        fault.expect_equal(len(fault.windows(MAIN)), 1, "windows")
        fault.leave(SERVED)
        fault.expect_equal(sum(call["call"] == "data_init" for call in fault.calls()), 1,
                           "sessions that were opened")
        fault.expect_equal(sum(".json" in path for path in server.requests), 1, "documents fetched")


@row(GROUP, "a copy that was killed leaves the way free")
def killed(fault):
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.process.kill()
        fault.process.wait()
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)
