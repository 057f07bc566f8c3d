"""The setup uninstaller and the update installer misbehave. Each is started once, after Remove or
the download; what becomes of it is shown, and the program never waits for anything but it."""

import contextlib
import os
import shutil
import signal
import stat
import threading
import time

from tests.faults.harness import CONFIRMATION, CONTINUE, MAIN, MESSAGE
from tests.faults.servers import FaultyServer
from tests.faults.table import row

GROUP = "children"

# A run is shown for half a minute at least.
RUN = 30.0


def run_uninstaller(fault):
    fault.start()
    fault.wait_for_main_window()
    fault.confirm_removal()


def fails(name, prepare, started=1):
    """The failure view comes as soon as the failure is there."""
    @row(GROUP, name)
    def play(fault):
        prepare(fault)
        run_uninstaller(fault)
        fault.wait_for_result("failure", 5)
        fault.close_by_keys()
        fault.expect_equal(len(fault.starts_of("uninstaller")) + fault.scripts_started(), started,
                           "uninstallers started")


def succeeds(name, prepare, outliving=False):
    """The success view comes when the half minute is over."""
    @row(GROUP, name)
    def play(fault):
        prepare(fault)
        fault.outliving = outliving
        run_uninstaller(fault)
        pressed = time.monotonic()
        fault.wait_for_result("success", RUN + 5)
        took = time.monotonic() - pressed
        fault.expect(RUN - 0.5 <= took <= RUN + 4, f"after half a minute, was {took:.1f} s")
        fault.expect_memory_below(200)
        time.sleep(0.7)  # until the view has changed
        fault.close_by_keys()


def script(body):
    return lambda fault: fault.put_script(fault.uninstaller, body)


def replace_by(content, mode=0o755):
    def prepare(fault):
        os.remove(fault.uninstaller)
        with open(fault.uninstaller, "wb") as file:
            file.write(content)
        os.chmod(fault.uninstaller, mode)
    return prepare


def cut_to(length):
    def prepare(fault):
        replace_by(fault.content(fault.uninstaller)[:length])(fault)
    return prepare


def make_folder(fault):
    os.remove(fault.uninstaller)
    os.mkdir(fault.uninstaller)


def make_dangling_link(fault):
    os.remove(fault.uninstaller)
    os.symlink(fault.path("nowhere"), fault.uninstaller)


fails("ends at once with a code", lambda fault: fault.order_uninstaller(delay=0, exit=3))
fails("ends after a while with a code", lambda fault: fault.order_uninstaller(delay=1500, exit=1))
fails("aborts", lambda fault: fault.order_uninstaller(delay=0, end="crash"))
fails("is killed", script("kill -KILL $$"))
fails("dies of an access violation", script("kill -SEGV $$"))
fails("dies of SIGTERM", script("kill -TERM $$"))
fails("closes all that it inherited, then fails",
      script("exec <&- >&- 2>&-; sleep 0.5; exit 9"))
fails("is no program", replace_by(b"This is no program.\n"), started=0)
fails("is empty", replace_by(b""), started=0)
fails("is the first half of a program", cut_to(8000), started=0)
fails("asks for an interpreter that is not there", replace_by(b"#!/no/such/interpreter\n"),
      started=0)
fails("may not be run", lambda fault: os.chmod(fault.uninstaller, stat.S_IRUSR), started=0)
fails("is a folder", make_folder, started=0)
fails("is a link to nowhere", make_dangling_link, started=0)
fails("has no data file",
      lambda fault: os.remove(os.path.join(fault.install_dir, "unins000.dat")), started=0)

succeeds("ends at once, all well", script("exit 0"))
succeeds("floods its output, then ends", script("head -c 500000000 /dev/zero | tee /dev/stderr"))
succeeds("leaves somebody behind who keeps its output open",
         script("sleep 300 & disown; exit 0"), outliving=True)
succeeds("reads its input to the end", script("timeout 5 cat > /dev/null; exit 0"))


@row(GROUP, "never ends")
def never_ends(fault):
    fault.order_uninstaller(end="hang")
    run_uninstaller(fault)
    fault.wait_until(lambda: fault.starts_of("uninstaller"), 5, "the uninstaller")
    time.sleep(RUN + 2)
    fault.press(MAIN, "alt+F4")
    time.sleep(1)
    fault.expect(fault.windows(MAIN), "the window cannot be closed while the uninstaller runs")
    fault.expect_equal(fault.results(), [], "results shown while it runs")
    hanging = [process for process in fault.processes_left() if process != fault.process.pid]
    fault.note("runs on after half a minute")
    for process in hanging:
        os.kill(process, signal.SIGKILL)
    fault.wait_for_result("failure", 5)
    fault.close_by_keys()


@row(GROUP, "is stopped for a while, then goes on")
def is_stopped(fault):
    fault.put_script(fault.uninstaller, "kill -STOP $$; exit 4")
    run_uninstaller(fault)
    fault.wait_until(fault.scripts_started, 5, "the uninstaller")
    time.sleep(2)
    fault.expect_equal(fault.results(), [], "results shown while it is stopped")
    for process in fault.processes_left():
        if process != fault.process.pid:
            os.kill(process, signal.SIGCONT)
    fault.wait_for_result("failure", 5)
    fault.close_by_keys()


@row(GROUP, "is replaced all the time while it is started")
def is_replaced(fault):
    """One of the two is run, once, or neither, when it is just being written; both fail."""
    fault.order_uninstaller(delay=0, exit=3)
    spare, script_file = fault.path("spare.exe"), fault.path("script.exe")
    shutil.copy2(fault.uninstaller, spare)
    fault.put_script(script_file, "exit 4")
    over = threading.Event()

    def replace():
        while not over.is_set():
            for source in (script_file, spare):
                copy = source + ".copy"
                with contextlib.suppress(OSError):
                    shutil.copy2(source, copy)
                    os.replace(copy, fault.uninstaller)

    replacer = threading.Thread(target=replace)
    replacer.start()
    try:
        run_uninstaller(fault)
        fault.wait_for_result("failure", 5)
        fault.close_by_keys()
    finally:
        over.set()
        replacer.join()
    scripts, programs = fault.scripts_started(), len(fault.starts_of("uninstaller"))
    fault.note(f"ran {'the script' if scripts else 'the program' if programs else 'neither'}")
    fault.expect(scripts + programs <= 1, "one uninstaller was started at most")


@row(GROUP, "Remove pressed five times while it is slow to start")
def impatient(fault):
    fault.order_uninstaller(delay=1000, exit=2)
    fault.start()
    fault.wait_for_main_window()
    fault.choose()
    fault.click(MAIN, CONTINUE)
    window = fault.wait_for_window(CONFIRMATION)
    fault.remove_pressed = True
    fault.xdotool("mousemove", "--sync", "--window", window, "102", "276", "click", "--repeat", "5",
                  "--delay", "5", "1")
    fault.wait_for_result("failure", 5)
    fault.close_by_keys()
    fault.expect_equal(len(fault.starts_of("uninstaller")), 1, "uninstallers started")


def stays(name, keys):
    """Whatever is pressed but Remove, nothing is started."""
    @row(GROUP, name)
    def play(fault):
        fault.start()
        fault.wait_for_main_window()
        fault.choose()
        fault.click(MAIN, CONTINUE)
        fault.press(CONFIRMATION, *keys)
        fault.wait_for_exit()
        fault.expect_equal(fault.starts_of("uninstaller"), [], "uninstallers started")


stays("is not started by Escape", ["Escape"])
stays("is not started by Enter on the last question", ["space"])
stays("is not started by closing the last question", ["alt+F4"])


def installer_fails(name, prepare, started=1):
    """A message says so, and the feedback page is back."""
    @row(GROUP, "update installer " + name)
    def play(fault):
        prepare(fault)
        with FaultyServer() as server:
            fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window()
            fault.take_offer()
            fault.press(MESSAGE, "space")
            fault.wait_until(lambda: fault.actions()[-1] == "UninstallPopUp", 3,
                             "the feedback page")
            fault.note("said so, feedback page back")
            fault.close_by_keys()
        fault.expect_equal(fault.events()[-1][1], {"source": "upgrade_failure"}, "why")
        fault.expect_equal(len(fault.starts_of("update-installer")), started, "installers started")
        fault.expect("Version=7.2.1.4" in fault.lines("ProgramData/Norvane Clipwright/Clipwright.ini"),
                     "the version is the old one")


installer_fails("ends with a code", lambda fault: fault.order_installer(delay=0, exit=5))
installer_fails("aborts", lambda fault: fault.order_installer(delay=0, end="crash"))
installer_fails("is missing", lambda fault: os.remove(fault.update_installer), started=0)
installer_fails("may not be run", lambda fault: os.chmod(fault.update_installer, stat.S_IRUSR),
                started=0)


@row(GROUP, "update installer never ends")
def installer_never_ends(fault):
    fault.order_installer(end="hang")
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: fault.starts_of("update-installer"), 8, "the update installer")
        fault.press(MAIN, "alt+F4")
        time.sleep(1)
        fault.expect(fault.windows(MAIN), "the window cannot be closed while the installer runs")
        for process in fault.processes_left():
            if process != fault.process.pid:
                os.kill(process, signal.SIGKILL)
        fault.press(MESSAGE, "space")
        fault.close_by_keys()
