"""What every row of the fault table uses: a sandbox, the program on a desktop of its own, and what
can be observed from outside: windows, events, files, child processes, the exit code."""

import contextlib
import functools
import glob
import json
import operator
import os
import re
import shutil
import signal
import subprocess
import time

from tests.faults.servers import PICTURE, SERVED, FaultyServer, document, refusing_url
from tests.kit import installation
from tests.kit.desktop import PATIENCE, wait_until
from tests.kit.folders import make_afresh

# Windows: title, and size where a title is not enough.
SPLASH = ("SplashWindow", None)
MAIN = ("Norvane Clipwright Uninstaller", (720, 480))
MESSAGE = ("Norvane Clipwright Uninstaller", (320, 168))
CONFIRMATION = ("Confirm uninstallation", None)

# Where buttons are in their windows.
CONTINUE = (488, 436)
CANCEL = (624, 436)
REMOVE = (102, 276)

# Files and folders of the sandbox.
DATA = "Temp/Norvane Clipwright Uninstaller"
CONFIGS = DATA + "/Configs"
CACHED = CONFIGS + "/en.cfg"
PICTURES = CONFIGS + "/Images"
PRODUCT_DATA = "ProgramData/Norvane Clipwright"
PRODUCT_INI = PRODUCT_DATA + "/Clipwright.ini"
ACCOUNT_INI = PRODUCT_DATA + "/KConfig.ini"
INSTALLED = "Program Files/Norvane/Norvane Clipwright"
UNINSTALLER = INSTALLED + "/unins000.exe"
UNINSTALLER_ORDERS = INSTALLED + "/unins000.dat"
INSTALLER = "Program Files/Norvane/Norvane Clipwright Update/Norvane Clipwright Update.exe"
INSTALLER_ORDERS = INSTALLER[:-len("exe")] + "txt"
FEED_ORDERS = "Feed/orders.txt"

# The value of a document's first reason, which the program reports, tells which document it shows.
EARLIER = "7002"
BUILT_IN = "57"
NO_REASON = ""
DOCUMENTS = {SERVED: "the served document", EARLIER: "the earlier document",
             BUILT_IN: "the built-in document", NO_REASON: "no reasons"}

# Limits in seconds, (from, to). The upper ones count by Stopwatch.
PROMPT = (0.0, 5.0)  # start to main window when there is nothing to wait for
FULL_TIME = (10.0, 14.0)  # the same when loading uses up its ten seconds
AT_ONCE = (0.0, 3.0)  # end of the process by a signal
FAREWELL = (0.5, 3.0)  # last input to end: half a second, and the analytics library's time
WATCHDOG = (8.0, 10.5)  # the same when a library hangs
RUN = (30.0, 33.0)  # Remove to success view
SOON = 5.0


class Skipped(Exception):
    """The machine does not allow what the row needs."""


class Stopwatch:
    """Measures seconds, without those in which processes were ready to run but others had the
    processors: limits hold on a busy machine, too, and need no margin for it. Of the threads of a
    process, the one that lost most counts."""

    def __init__(self, *pids):
        self._pids = pids
        self._lost = {}
        self._before = self._delays()
        self._began = time.monotonic()

    def seconds(self):
        for thread, delay in self._delays().items():
            self._lost[thread] = delay - self._before.get(thread, 0)
        lost = (max((lost for (owner, _), lost in self._lost.items() if owner == pid), default=0)
                for pid in self._pids)
        return time.monotonic() - self._began - sum(lost)

    def _delays(self):
        """How long each thread has waited for a processor since it was started."""
        delays = {}
        for pid in self._pids:
            for file in glob.glob(f"/proc/{pid}/task/*/schedstat"):
                with contextlib.suppress(OSError, IndexError):  # the thread has ended
                    with open(file, encoding="ascii") as opened:
                        delays[pid, file] = int(opened.read().split()[1]) / 1e9
        return delays


class Fault(installation.Installation):
    """One row: its sandbox, the run of the program in it, what was observed and what was wrong."""

    def __init__(self, binaries, folder, desktop):
        self.binaries = binaries
        self.folder = make_afresh(folder)
        self.root = os.path.join(folder, "sandbox")
        self.desktop = desktop
        self.server = None
        self.process = None
        self.started = None  # the program, by the monotonic clock, and the last input
        self.acted = None
        self.cached = None  # the document when the program was started
        self.notes = []
        self.failures = []
        self.remove_pressed = False
        self.child_goes_on = False
        self.expected_output = []
        self.at_end = contextlib.ExitStack()
        self.environment = {**installation.environment(binaries, self.root, desktop),
                            "CLIPWRIGHT_SANDBOX_SERVICE": refusing_url()}
        # The sample package takes seconds to download; this one does not.
        self.write("Feed/package", bytes(range(250)) * 1200)
        self.order(FEED_ORDERS, target=self.path("Feed/Package"))

    # The sandbox

    def write(self, relative, content, mode=None):
        """Writes a file in place of whatever is there."""
        file = self.path(relative)
        self.remove(relative)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "wb") as target:
            target.write(content if isinstance(content, bytes) else content.encode())
        if mode is not None:
            os.chmod(file, mode)

    def remove(self, *relatives):
        """Removes files and whole folders."""
        for file in map(self.path, relatives):
            if os.path.isdir(file):
                shutil.rmtree(file, ignore_errors=True)  # the program may work there
            elif os.path.lexists(file):
                os.remove(file)

    def replace(self, relative, put):
        """Removes a file and calls put(path), which makes something else in its place."""
        self.remove(relative)
        put(self.path(relative))

    def content(self, relative):
        """What is in a file; None when there is none, or something else has its name."""
        if os.path.isfile(self.path(relative)):
            with contextlib.suppress(OSError), open(self.path(relative), "rb") as file:
                return file.read()
        return None

    def names_in(self, relative):
        folder = self.path(relative)
        return sorted(os.listdir(folder)) if os.path.isdir(folder) else []

    def put_script(self, relative, body):
        """A child process of another kind: records that it was started, then runs the body."""
        self.write(relative, f"#!/bin/bash\necho started >> '{self.path('Received/scripts.txt')}'\n"
                             f"{body}\n", mode=0o755)

    def put_earlier_document(self, change=lambda whole: whole):
        os.makedirs(self.path(PICTURES))
        self.write(CACHED, change(json.dumps(document(EARLIER)).encode()))

    def serve(self, address="http://127.0.0.1:{port}", **faults):
        """Starts a FaultyServer, which the program finds at that address."""
        self.server = self.at_end.enter_context(FaultyServer(**faults))
        self.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = address.format(port=self.server.port)

    # The program

    def start(self, *mounts):
        """Starts the program. Mounts are shell commands, run in the sandbox, whose mounts no other
        process sees. The program has not root's rights there, which would override modes."""
        command = [os.path.join(self.binaries, "clipwright-uninstaller-sandbox")]
        if mounts:
            own_mounts = ["unshare", "--map-root-user", "--mount"]
            if subprocess.run([*own_mounts, "true"], check=False,
                              stderr=subprocess.DEVNULL).returncode:
                raise Skipped("mount namespaces are not allowed here")
            command = [*own_mounts, "sh", "-ec", f"{'; '.join(mounts)}; exec \"$0\"", *command]
        self.cached = self.content(CACHED)
        self.started = self.acted = time.monotonic()
        with open(os.path.join(self.folder, "program.log"), "ab") as log:
            self.process = self.desktop.start(command, env=self.environment, cwd=self.root,
                                              stdout=log, stderr=log)

    def open(self, *mounts, limits=PROMPT):
        """Starts the program and waits for its main window."""
        self.start(*mounts)
        self.wait_for_main_window(limits)

    def let_child_go_on(self):
        """A child process may outlive the program."""
        self.child_goes_on = True

    def has_ended(self):
        return self.process.poll() is not None

    def wait_until(self, condition, seconds, what):
        """Waits for a condition and returns its value; when it does not come the row has failed."""
        watch = Stopwatch(self.process.pid, *self.desktop.pids())
        while True:
            is_late = watch.seconds() > seconds  # before the look, which takes time
            value = condition()
            if value:
                return value
            if is_late:
                raise AssertionError(f"not within {seconds:g} s: {what}")
            time.sleep(0.03)

    def expect_lasted(self, since, limit, what):
        took = time.monotonic() - since
        self.note(f"{what} after {took:.1f} s")
        self.expect(took >= limit, f"{what} no earlier than {limit:g} s, after {took:.2f} s")

    def wait_for_window(self, window, seconds=SOON):
        def is_there():
            if self.has_ended():
                raise AssertionError(f"ended before {window[0]} was shown, with "
                                     f"{self.process.returncode}")
            return self.desktop.windows(*window)

        return self.wait_until(is_there, seconds, f"window {window[0]}")[0]

    def wait_for_main_window(self, limits=PROMPT):
        self.wait_for_window(MAIN, limits[1])
        self.expect_lasted(self.started, limits[0], "main window")

    def wait_for_exit(self, code=0, limits=FAREWELL):
        self.wait_until(self.has_ended, limits[1], "end of the program")
        self.expect_lasted(self.acted, limits[0], "end")
        self.expect_equal(self.process.returncode, code, "exit code")

    def terminate(self):
        """Ends the program by a signal, which has its usual effect at every stage."""
        self.process.terminate()
        self.wait_for_exit(-signal.SIGTERM, AT_ONCE)

    # What the user does

    @staticmethod
    def pause(seconds):
        time.sleep(seconds)

    def press(self, window, *keys):
        self.wait_for_window(window)
        self.desktop.wait_for_keyboard(*window)
        self.acted = time.monotonic()
        self.desktop.press_keys(*keys)

    def click(self, window, place):
        found = self.wait_for_window(window)
        self.acted = time.monotonic()
        self.desktop.click(found, *place)

    def choose(self, down=0):
        """Chooses the first reason, or one further down."""
        self.press(MAIN, "Tab", "space", *["Down"] * down)

    def ask_to_remove(self, choose=True):
        """Chooses the first reason, unless one is chosen, and goes on to the last question."""
        if choose:
            self.choose()
        self.click(MAIN, CONTINUE)
        self.wait_for_window(CONFIRMATION)

    def confirm_removal(self):
        self.remove_pressed = True
        self.click(CONFIRMATION, REMOVE)

    def remove_product(self):
        self.ask_to_remove()
        self.confirm_removal()

    def take_offer(self):
        """Chooses the reason that offers the upgrade, and accepts the offer."""
        self.choose(down=1)
        self.press(MAIN, "Tab", "space")

    def leave(self, expected_reason, limits=FAREWELL):
        """Chooses the first reason and leaves by Cancel; the reason that is reported tells which
        document the window shows."""
        self.choose()
        if expected_reason != NO_REASON:  # otherwise Cancel was all that Tab could lead to
            self.click(MAIN, CANCEL)
        self.wait_for_exit(limits=limits)
        chosen = [properties["MsgCode"] for action, properties in self.events()
                  if action == "UninstallCancel"]
        self.note(f"shows {', '.join(DOCUMENTS.get(reason, reason) for reason in chosen)}")
        self.expect_equal(chosen, [expected_reason], "the reason that was chosen")
        if expected_reason != SERVED:
            self.expect_document_kept()

    def close(self, limits=FAREWELL):
        self.press(MAIN, "alt+F4")
        self.wait_for_exit(limits=limits)

    # What the program did

    def base_info(self):
        return next(call["arguments"] for call in self.calls() if call["call"] == "data_base_info")

    def events(self):
        return [(call["action"], json.loads(call["properties"])) for call in self.calls()
                if call["call"] == "data_event"]

    def library_calls(self):
        """The calls of the upgrade library."""
        return [json.loads(line)["call"] for line in self.lines("Feed/calls.jsonl")]

    def starts_of(self, child):
        return len(self.lines(f"Received/{child}.txt.starts"))

    def uninstallers_started(self):
        return self.starts_of("uninstaller") + len(self.lines("Received/scripts.txt"))

    def wait_for_uninstaller(self):
        self.wait_until(self.uninstallers_started, SOON, "the uninstaller")

    def wait_for_installer(self):
        self.wait_until(lambda: self.starts_of("update-installer"), SOON, "the update installer")

    def wait_for_library_call(self, call):
        self.wait_until(lambda: call in self.library_calls(), SOON, call)

    def wait_for_event(self, action, seconds=SOON):
        """Waits until an event is the last one; returns its properties."""
        return self.wait_until(lambda: [properties for last, properties in self.events()[-1:]
                                        if last == action], seconds, f"event {action}")[0]

    def results(self):
        return [properties["result"] for action, properties in self.events()
                if action == "UninstallCompleted"]

    def wait_for_result(self, result, limits=(0, SOON)):
        self.wait_until(self.results, limits[1], f"a {result}")
        self.expect_lasted(self.acted, limits[0], "/".join(self.results()))
        self.expect_equal(self.results(), [result], "the result that was shown")
        if result == "success":
            self.wait_until(lambda: self.lines("Received/links.txt"), SOON, "the farewell page")

    def pictures_kept(self, folder=PICTURES):
        """The names of the pictures in the cache, each of which must be whole."""
        names = self.names_in(folder)
        self.note(f"{len(names)} pictures kept")
        self.expect(all(self.content(f"{folder}/{name}") == PICTURE for name in names),
                    "every picture kept is whole")
        return names

    def expect_started(self, uninstallers):
        self.expect_equal(self.uninstallers_started(), uninstallers, "uninstallers started")

    def expect_document_kept(self):
        self.expect(self.content(CACHED) == self.cached, "the cached document is as it was")

    def expect_memory_below(self, mebibytes):
        """The most memory that the program has had in use."""
        status = self.content(f"/proc/{self.process.pid}/status")
        peak = int(re.search(rb"VmHWM:\s+(\d+)", status).group(1)) // 1024
        self.note(f"{peak} MiB at most")
        self.expect(peak < mebibytes, f"memory below {mebibytes} MiB, was {peak}")

    def processes_left(self):
        """Processes of this row's sandbox, other than the program."""
        mark = f"XDG_RUNTIME_DIR={self.path('Runtime')}".encode()
        return [int(entry) for entry in os.listdir("/proc") if entry.isdigit()
                and not (self.process and self.process.pid == int(entry))
                and mark in (self.content(f"/proc/{entry}/environ") or b"").split(b"\0")]

    def has_browser(self):
        """Whether the user's browser still takes a link: it outlives the program."""
        return any(b"/xdg-open\0" in (self.content(f"/proc/{pid}/cmdline") or b"")
                   for pid in self.processes_left())

    def signal_children(self, number):
        for process in self.processes_left():
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, number)

    # Judging

    def note(self, text):
        self.notes.append(text)

    def expect(self, condition, text):
        if not condition:
            self.failures.append(text)

    def expect_output(self, pattern):
        """Lines of a pattern that the program may print; any other line is a failure."""
        self.expected_output.append(pattern)

    def expect_equal(self, actual, expected, text):
        self.expect(actual == expected,
                    f"{text}: expected {expected!r:.200}, found {actual!r:.200}")

    def save_picture(self):
        with contextlib.suppress(OSError, subprocess.SubprocessError):  # no display any more
            self.desktop.save_picture(os.path.join(self.folder, "screen.png"))

    def finish(self):
        """Checks what holds in every row, and ends what the row has left running."""
        self.at_end.close()
        if self.process is not None:
            self.expect(self.has_ended(), "the row left the program running")
            self.process.kill()
            self.process.wait()
        wait_until(lambda: not self.has_browser(), PATIENCE, "the end of the browser")
        left = self.processes_left()
        commands = [self.content(f"/proc/{pid}/cmdline") for pid in left]
        self.expect(self.child_goes_on or not left, f"processes left behind: {commands}")
        self.signal_children(signal.SIGKILL)

        started = self.uninstallers_started()
        self.expect(started <= self.remove_pressed,
                    f"uninstallers started: {started}, Remove pressed: {self.remove_pressed}")
        self.expect(self.starts_of("update-installer") <= 1,
                    "the update installer was started more than once")
        log = self.content(os.path.join(self.folder, "program.log")) or b""
        for line in sorted(set(log.decode("utf-8", "replace").split("\n"))):
            self.expect(not line.strip() or any(re.search(pattern, line)
                                                for pattern in self.expected_output),
                        f"it printed: {line}")


class Steps:
    """do.method(arguments) is a step of a row: calls that method of the Fault that plays it."""

    def __getattr__(self, name):
        assert hasattr(Fault, name), name
        return functools.partial(operator.methodcaller, name)


do = Steps()
