"""The setup uninstaller and the update installer misbehave. Each is started once, after Remove or
the download. The program shows what has become of it, and waits for nothing else."""

import contextlib
import os
import shutil
import signal
import threading

from tests.faults.harness import (
    CONFIRMATION, INSTALLER, INSTALLER_ORDERS, MAIN, MESSAGE, PRODUCT_INI, REMOVE, RUN,
    UNINSTALLER, UNINSTALLER_ORDERS, do)


def fails(*prepared, started=1):
    """The failure view comes as soon as the failure is there."""
    return [*prepared, do.open(), do.remove_product(), do.wait_for_result("failure"), do.close(),
            do.expect_started(started)]


def succeeds(body, *prepared):
    """The success view comes when a run has been shown for half a minute."""
    return [*prepared, do.put_script(UNINSTALLER, body), do.open(), do.remove_product(),
            do.wait_for_result("success", RUN), do.expect_memory_below(200), do.pause(0.7),
            do.close()]


def half_program(fault):
    fault.write(UNINSTALLER, fault.content(UNINSTALLER)[:8000], mode=0o755)


def not_executable(file):
    return lambda fault: os.chmod(fault.path(file), 0o400)


def still_running(fault):
    fault.expect(fault.desktop.windows(*MAIN), "the window stays while the child process runs")
    fault.expect_equal(fault.results(), [], "results shown while it runs")
    fault.note("runs on")


def keep_replacing(fault):
    """The program or the script is run, or neither while it is just being written."""
    target, spare, other = map(fault.path, (UNINSTALLER, "spare.exe", "script.exe"))
    shutil.copy2(target, spare)
    fault.put_script("script.exe", "exit 4")
    over = threading.Event()

    def replace():
        while not over.is_set():
            for source in (other, spare):
                with contextlib.suppress(OSError):
                    shutil.copy2(source, source + ".copy")
                    os.replace(source + ".copy", target)

    replacer = threading.Thread(target=replace)
    replacer.start()
    fault.at_end.callback(replacer.join)
    fault.at_end.callback(over.set)


def press_remove_five_times(fault):
    fault.remove_pressed = True
    window = fault.wait_for_window(CONFIRMATION)
    fault.desktop.run("xdotool", "mousemove", "--window", str(window), *map(str, REMOVE),
                      "click", "--repeat", "5", "--delay", "5", "1")


def not_started_by(key):
    """Anything but Remove starts nothing, and ends the program."""
    return [do.open(), do.ask_to_remove(), do.press(CONFIRMATION, key), do.wait_for_exit(),
            do.expect_started(0)]


def installer_fails(prepared, started=1):
    """A message says so, and the feedback page comes back."""
    def expect_comeback(fault):
        fault.expect_equal(fault.wait_for_event("UninstallPopUp"), {"source": "upgrade_failure"},
                           "why the feedback page came back")

    def expect_not_updated(fault):
        fault.expect_equal(fault.starts_of("update-installer"), started, "installers started")
        fault.expect("Version=7.2.1.4" in fault.lines(PRODUCT_INI), "the version is the old one")

    return [prepared, do.serve(), do.open(), do.take_offer(), do.press(MESSAGE, "space"),
            expect_comeback, do.close(), expect_not_updated]


ROWS = {
    "ends at once with a code": fails(do.order(UNINSTALLER_ORDERS, delay=0, exit=3)),
    "ends after a while with a code": fails(do.order(UNINSTALLER_ORDERS, delay=1500, exit=1)),
    "aborts": fails(do.order(UNINSTALLER_ORDERS, delay=0, end="crash")),
    "is killed": fails(do.put_script(UNINSTALLER, "kill -KILL $$")),
    "dies of an access violation": fails(do.put_script(UNINSTALLER, "kill -SEGV $$")),
    "dies of SIGTERM": fails(do.put_script(UNINSTALLER, "kill -TERM $$")),
    "closes all that it inherited, then fails": fails(
        do.put_script(UNINSTALLER, "exec <&- >&- 2>&-; sleep 0.5; exit 9")),
    "is no program": fails(do.write(UNINSTALLER, "This is no program.\n", 0o755), started=0),
    "is empty": fails(do.write(UNINSTALLER, "", 0o755), started=0),
    "is the first half of a program": fails(half_program, started=0),
    "asks for an interpreter that is not there": fails(
        do.write(UNINSTALLER, "#!/no/such/interpreter\n", 0o755), started=0),
    "may not be run": fails(not_executable(UNINSTALLER), started=0),
    "is a folder": fails(do.replace(UNINSTALLER, os.mkdir), started=0),
    "is a link to nowhere": fails(
        do.replace(UNINSTALLER, lambda file: os.symlink("nowhere", file)), started=0),
    "has no data file": fails(do.remove(UNINSTALLER_ORDERS), started=0),
    "ends at once, all well": succeeds("exit 0"),
    "floods its output, then ends": succeeds("head -c 500000000 /dev/zero | tee /dev/stderr"),
    "leaves a process behind that keeps its output open": succeeds(
        "sleep 300 & disown; exit 0", do.let_child_go_on()),
    "reads its input to the end": succeeds("timeout 5 cat > /dev/null; exit 0"),
    "never ends": [
        do.order(UNINSTALLER_ORDERS, end="hang"), do.open(), do.remove_product(),
        do.wait_for_uninstaller(), do.pause(RUN[0] + 2), do.press(MAIN, "alt+F4"), do.pause(1),
        still_running, do.signal_children(signal.SIGKILL), do.wait_for_result("failure"),
        do.close()],
    "is stopped for a while, then goes on": [
        do.put_script(UNINSTALLER, "kill -STOP $$; exit 4"), do.open(), do.remove_product(),
        do.wait_for_uninstaller(), do.pause(2), still_running,
        do.signal_children(signal.SIGCONT), do.wait_for_result("failure"), do.close()],
    "is replaced all the time while it is started": [
        do.order(UNINSTALLER_ORDERS, delay=0, exit=3), keep_replacing, do.open(),
        do.remove_product(), do.wait_for_result("failure"), do.close()],
    "Remove pressed five times while it is slow to start": [
        do.order(UNINSTALLER_ORDERS, delay=1000, exit=2), do.open(), do.ask_to_remove(),
        press_remove_five_times, do.wait_for_result("failure"), do.close(),
        do.expect_started(1)],
    "is not started by Escape": not_started_by("Escape"),
    "is not started by Space on the last question": not_started_by("space"),
    "is not started by closing the last question": not_started_by("alt+F4"),
    "update installer ends with a code": installer_fails(
        do.order(INSTALLER_ORDERS, delay=0, exit=5)),
    "update installer aborts": installer_fails(do.order(INSTALLER_ORDERS, delay=0, end="crash")),
    "update installer is missing": installer_fails(do.remove(INSTALLER), started=0),
    "update installer may not be run": installer_fails(not_executable(INSTALLER), started=0),
    "update installer never ends": [
        do.order(INSTALLER_ORDERS, end="hang"), do.serve(), do.open(), do.take_offer(),
        do.wait_for_installer(), do.press(MAIN, "alt+F4"), do.pause(1), still_running,
        do.signal_children(signal.SIGKILL), do.press(MESSAGE, "space"), do.close()],
}
