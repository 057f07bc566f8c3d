"""What every row of the fault table uses: a screen of its own, the program in a sample
installation, and what can be seen of it from outside: its windows, its events, its files, its
children, its end."""

import contextlib
import json
import os
import re
import signal
import subprocess
import threading
import time

from tests.kit import installation
from tests.kit.installation import browser_folder
from tests.kit.folders import ROOT as SOURCES
from tests.kit.folders import make_afresh

SPLASH = "SplashWindow"
MAIN = "Norvane Clipwright Uninstaller"
CONFIRMATION = "Confirm uninstallation"
MESSAGE = "message"  # has the main window's title, and is known by its size

# Where buttons stand in their windows.
CONTINUE = (488, 436)
CANCEL = (624, 436)
REMOVE = (102, 276)

# What marks the documents of a row: the value of their first reason, which the program reports.
SERVED = "7001"
EARLIER = "7002"
BUILT_IN = "57"
NO_REASON = ""


# Seconds in which the main window comes when nothing has to be waited for. A busy machine may take
# some of them; the ten that loading may take are more.
PROMPT = 8.0


class Skipped(Exception):
    """The machine does not allow what the row needs."""


class Screen:
    """An X server with a window manager."""

    _starting = threading.Lock()  # servers that look for a number at once may find the same

    def __init__(self):
        self._server = self._manager = None
        self.display = None

    def __enter__(self):
        read_end, write_end = os.pipe()
        with self._starting:
            self._server = self._start(["Xvfb", "-screen", "0", "1000x680x24", "-nolisten", "tcp",
                                        "-displayfd", str(write_end)], pass_fds=[write_end])
            os.close(write_end)
            with os.fdopen(read_end) as reply:
                self.display = ":" + reply.readline().strip()
        environment = {**os.environ, "DISPLAY": self.display}
        self._manager = self._start(["openbox"], env=environment)
        # A window that appears while the manager does is lost to both.
        deadline = time.monotonic() + 30
        while subprocess.run(["xdotool", "get_desktop"], env=environment, check=False,
                             stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode:
            if self._manager.poll() is not None:
                self._manager = self._start(["openbox"], env=environment)
            if time.monotonic() > deadline:
                self.__exit__()
                raise AssertionError("no window manager")
            time.sleep(0.05)
        return self

    def __exit__(self, *exception):
        self.lose_manager()
        self.vanish()

    def vanish(self):
        """The display goes away, with every window that is on it."""
        self._server.terminate()
        self._server.wait()

    def lose_manager(self):
        self._manager.kill()
        self._manager.wait()

    @staticmethod
    def _start(command, **options):
        return subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL, **options)


def document(marker, pictures_at=None):
    """A configuration document: a plain reason that bears the marker, one that offers the upgrade,
    and what the built-in document offers. Without an address it refers to no picture."""
    with open(os.path.join(SOURCES, "Resources/cfg/en.cfg"), encoding="utf-8") as file:
        content = json.load(file)
    homepage, *reasons = content["problem_type"]["list"]
    plain = {"value": int(marker), "title": "Marked reason", "banner_title": "Marked"}
    upgrade = next(reason for reason in reasons if reason["value"] == 61)
    content["problem_type"]["list"] = [homepage, plain, upgrade, *reasons]
    pictures = 0
    for option in content["problem_type"]["list"]:
        option["banner_url"] = f"{pictures_at}/banner_{option['value']}.png" if pictures_at else ""
    for category in content["apps"]:
        for product in category["list"]:
            product["icon"] = f"{pictures_at}/icon_{product['pid']}.png" if pictures_at else ""
            pictures += 1
    return content


class Fault:
    """One row: its sandbox, the program's run in it, what was seen and what was wrong."""

    def __init__(self, binaries, folder, screen):
        self.binaries = binaries
        self.folder = folder
        self.root = os.path.join(folder, "sandbox")
        self.screen = screen
        self.process = None
        self.started = None
        self.seen = []
        self.failures = []
        self.remove_pressed = False
        self.outliving = False
        self._said = []
        make_afresh(folder)
        self._make_sandbox()

    def _make_sandbox(self):
        self.environment = {name: value for name, value in os.environ.items()
                            if name not in ("DISPLAY", "QT_QPA_PLATFORM")}
        self.environment.update(installation.make(self.binaries, self.root))
        self.environment["DISPLAY"] = self.screen.display
        self.environment["PATH"] = self._browser() + os.pathsep + self.environment["PATH"]
        # No session bus; without a word about it one would be started, and left behind.
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=" + self.path("no-bus")
        self.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = "http://127.0.0.1:9"
        # The X11 plugin warns of windows that the window manager removed a moment before it did;
        # debug lines are no warnings.
        self.environment["QT_LOGGING_RULES"] = "qt.qpa.xcb=false;default.debug=false"
        # A download of one chunk: the sample package is made for eyes that want to see it move.
        with open(self.path("Feed/package"), "wb") as package:
            package.write(bytes(range(250)) * 1200)
        self.orders("Feed/orders.txt", target=self.path("Feed/Package"))

    def _browser(self):
        return browser_folder(self.path("bin"), self.path("Received/links.txt"))

    # The sandbox

    def path(self, relative=""):
        return os.path.join(self.root, relative)

    @property
    def data(self):
        return self.path("Temp/Norvane Clipwright Uninstaller")

    @property
    def product_data(self):
        return self.path("ProgramData/Norvane Clipwright")

    @property
    def cached(self):
        return os.path.join(self.data, "Configs/en.cfg")

    @property
    def pictures(self):
        return os.path.join(self.data, "Configs/Images")

    @property
    def install_dir(self):
        return self.path("Program Files/Norvane/Norvane Clipwright")

    @property
    def uninstaller(self):
        return os.path.join(self.install_dir, "unins000.exe")

    @property
    def update_installer(self):
        return self.path("Program Files/Norvane/Norvane Clipwright Update/"
                         "Norvane Clipwright Update.exe")

    def write(self, relative, content):
        file = self.path(relative)
        os.makedirs(os.path.dirname(file), exist_ok=True)
        with open(file, "wb") as target:
            target.write(content if isinstance(content, bytes) else content.encode())
        return file

    def orders(self, relative, **orders):
        """Puts orders in front of those that a sample program or library has: the first counts."""
        file = self.path(relative)
        with contextlib.suppress(FileNotFoundError):
            with open(file, encoding="utf-8") as earlier:
                known = [line for line in earlier.read().splitlines()
                         if line.partition("=")[0] not in orders]
        self.write(relative, "".join(f"{key}={value}\n" for key, value in orders.items())
                   + "\n".join(known) + "\n")

    def order_uninstaller(self, **orders):
        self.orders("Program Files/Norvane/Norvane Clipwright/unins000.dat", **orders)

    def order_installer(self, **orders):
        self.orders("Program Files/Norvane/Norvane Clipwright Update/Norvane Clipwright Update.txt",
                    **orders)

    def put_script(self, file, body):
        """A child of another kind: it says that it was started, then does as it is written."""
        with contextlib.suppress(FileNotFoundError):
            os.remove(file)
        with open(file, "w", encoding="utf-8") as script:
            script.write(f"#!/bin/bash\necho started >> '{self.path('Received/scripts.txt')}'\n"
                         f"{body}\n")
        os.chmod(file, 0o755)

    def put_earlier_document(self):
        os.makedirs(self.pictures)
        with open(self.cached, "w", encoding="utf-8") as file:
            json.dump(document(EARLIER), file)
        return self.content(self.cached)

    @staticmethod
    def content(file):
        try:
            with open(file, "rb") as opened:
                return opened.read()
        except FileNotFoundError:
            return None

    def picture_names(self):
        """What stands in the folder of pictures, left-overs included."""
        return sorted(os.listdir(self.pictures)) if os.path.isdir(self.pictures) else []

    def picture(self, name):
        return self.content(os.path.join(self.pictures, name))

    def lines(self, relative):
        return installation.lines(self.path(relative))

    # The program

    def start(self, wrap=(), preload=(), **environment):
        """Starts the program, by the command that wraps it where there is one."""
        if preload:
            environment["LD_PRELOAD"] = ":".join(preload)
        command = [os.path.join(self.binaries, "clipwright-uninstaller-sandbox")]
        self.started = time.monotonic()
        with open(os.path.join(self.folder, "program.log"), "ab") as log:
            self.process = subprocess.Popen(
                [*wrap, *command], env={**self.environment, **environment}, cwd=self.folder,
                stdin=subprocess.DEVNULL, stdout=log, stderr=subprocess.STDOUT)

    def elapsed(self):
        return time.monotonic() - self.started

    def has_ended(self):
        return self.process.poll() is not None

    def wait_until(self, condition, seconds, what):
        """Waits for a condition; that it does not come is a failure of the row."""
        deadline = time.monotonic() + seconds
        while not condition():
            if time.monotonic() > deadline:
                raise AssertionError(f"not within {seconds} s: {what}")
            time.sleep(0.05)

    def xdotool(self, *arguments, seconds=10):
        done = subprocess.run(["xdotool", *arguments], stdout=subprocess.PIPE, check=False,
                              stderr=subprocess.DEVNULL, encoding="ascii", timeout=seconds,
                              env={**os.environ, "DISPLAY": self.screen.display})
        return done.stdout.split()

    def windows(self, title):
        """The visible windows of a title."""
        found = self.xdotool("search", "--onlyvisible", "--name",
                             f"^{MAIN if title == MESSAGE else title}$")
        if title not in (MAIN, MESSAGE):
            return found
        size = "720x480" if title == MAIN else "320x168"
        return [window for window in found if size in self.xdotool("getwindowgeometry", window)]

    def wait_for_window(self, title, seconds=5):
        found = []

        def is_there():
            if self.has_ended():
                raise AssertionError(f"the program ended before {title} was shown "
                                     f"(exit code {self.process.returncode})")
            found[:] = self.windows(title)
            return found

        self.wait_until(is_there, seconds, f"window {title}")
        return found[0]

    def press(self, title, *keys):
        """Presses keys in a window, as soon as it has the keyboard."""
        window = self.wait_for_window(title)
        self.xdotool("windowactivate", "--sync", window)
        self.wait_until(lambda: self.xdotool("getwindowfocus") == [window], 5,
                        f"the keyboard in {title}")
        self.xdotool("key", "--delay", "30", *keys)

    def click(self, title, place):
        window = self.wait_for_window(title)
        self.xdotool("mousemove", "--sync", "--window", window, str(place[0]), str(place[1]),
                     "click", "1")

    def wait_for_main_window(self, at_least=0.0, within=PROMPT):
        """The main window is there, and so is its document: it has said so."""
        self.wait_for_window(MAIN, seconds=within + 8)
        took = self.elapsed()
        self.note(f"main window after {took:.1f} s")
        self.expect(at_least <= took <= within,
                    f"main window between {at_least:g} and {within:g} s, came after {took:.1f} s")

    def choose(self, down=0):
        self.press(MAIN, "Tab", "space", *["Down"] * down)

    def confirm_removal(self):
        """Chooses the first reason and goes through with the removal."""
        self.choose()
        self.go_on_to_removal()

    def go_on_to_removal(self):
        self.click(MAIN, CONTINUE)
        self.wait_for_window(CONFIRMATION)
        self.remove_pressed = True
        self.click(CONFIRMATION, REMOVE)

    def take_offer(self):
        """Chooses the reason that offers the upgrade, and takes it."""
        self.choose(down=1)
        self.press(MAIN, "Tab", "space")

    def leave(self, expected_reason, code=0):
        """Leaves by Cancel, having chosen the first reason: which it is tells which document the
        window shows."""
        self.press(MAIN, "Tab", "space")
        time.sleep(0.1)
        if self.windows(MAIN):
            self.click(MAIN, CANCEL)
        self.wait_for_exit(code)
        chosen = [properties["MsgCode"] for action, properties in self.events()
                  if action == "UninstallCancel"]
        names = {SERVED: "the served document", EARLIER: "the earlier document",
                 BUILT_IN: "the built-in document", NO_REASON: "no reasons"}
        self.note(f"shows {names.get(chosen[-1], chosen[-1]) if chosen else 'nothing'}")
        self.expect_equal(chosen, [expected_reason], "the reason that was chosen")

    def close_by_keys(self, code=0):
        self.press(MAIN, "alt+F4")
        self.wait_for_exit(code)

    def wait_for_exit(self, code=0, seconds=8):
        asked = time.monotonic()
        try:
            found = self.process.wait(timeout=seconds)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"still running {seconds} s after it was to end") from None
        self.note(f"ended in {time.monotonic() - asked:.1f} s with {found}")
        self.expect_equal(found, code, "exit code")

    def terminate(self):
        """Ends what has been seen enough of. The signal has its usual effect at every stage."""
        self.process.terminate()
        self.wait_for_exit(-signal.SIGTERM, seconds=3)

    # What it did

    def calls(self):
        calls = []
        for line in self.lines("Temp/Norvane Clipwright Uninstaller/Analystic/data_api.jsonl"):
            calls.append(json.loads(line))
        return calls

    def base_info(self):
        return next(call["arguments"] for call in self.calls() if call["call"] == "data_base_info")

    def events(self):
        return [(call["action"], json.loads(call["properties"])) for call in self.calls()
                if call["call"] == "data_event"]

    def actions(self):
        return [action for action, _ in self.events()]

    def results(self):
        return [properties["result"] for action, properties in self.events()
                if action == "UninstallCompleted"]

    def wait_for_result(self, result, seconds):
        self.wait_until(lambda: self.has_ended() or self.results(), seconds, f"a {result}")
        self.note(f"{'/'.join(self.results())} shown")
        self.expect_equal(self.results(), [result], "the result that was shown")

    def starts_of(self, child):
        return self.lines(f"Received/{child}.txt.starts")

    def scripts_started(self):
        return len(self.lines("Received/scripts.txt"))

    def memory_peak(self):
        """The most memory that the program has had in use, in MiB."""
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return int(re.search(r"VmHWM:\s+(\d+)", status.read()).group(1)) // 1024

    def expect_memory_below(self, mebibytes):
        peak = self.memory_peak()
        self.note(f"{peak} MiB at most")
        self.expect(peak < mebibytes, f"memory below {mebibytes} MiB, was {peak}")

    def processes_left(self):
        """Processes that live in this row's sandbox."""
        mark = f"XDG_RUNTIME_DIR={self.path('Runtime')}".encode()
        found = []
        for entry in os.listdir("/proc"):
            with contextlib.suppress(OSError):
                if not entry.isdigit():
                    continue
                environment = self.content(f"/proc/{entry}/environ") or b""  # it may end meanwhile
                if mark in environment.split(b"\0"):
                    found.append(int(entry))
        return found

    def keep_picture(self):
        """What the screen shows, for whoever looks into a failure."""
        with contextlib.suppress(OSError, subprocess.SubprocessError):
            subprocess.run(["import", "-window", "root", os.path.join(self.folder, "screen.png")],
                           env={**os.environ, "DISPLAY": self.screen.display}, timeout=5,
                           check=False, stderr=subprocess.DEVNULL)

    # Judging

    def note(self, text):
        self.seen.append(text)

    def expect(self, condition, text):
        if not condition:
            self.failures.append(text)

    def expect_equal(self, actual, expected, text):
        self.expect(actual == expected,
                    f"{text}: expected {expected!r:.200}, found {actual!r:.200}")

    def expect_said(self, pattern):
        """Something that the program, or what it stands on, may say in this row alone."""
        self._said.append(pattern)

    def finish(self):
        """What holds in every row; and nothing of the row is left running."""
        if self.process is not None and not self.has_ended():
            self.failures.append("the row left the program running")
        left = self.processes_left()
        self.expect(self.outliving or not left, f"processes left behind: {left}")
        for process in left:
            with contextlib.suppress(ProcessLookupError):
                os.kill(process, signal.SIGKILL)
        if self.process is not None:
            self.process.wait()

        started = len(self.starts_of("uninstaller")) + self.scripts_started()
        self.expect(started <= 1, f"the uninstaller was started {started} times")
        self.expect(self.remove_pressed or started == 0,
                    "the uninstaller was started without a confirmed Remove")
        self.expect(len(self.starts_of("update-installer")) <= 1,
                    "the update installer was started more than once")
        for line in sorted(set(self.lines_said())):
            self.expect(any(re.search(pattern, line) for pattern in self._said),
                        f"it said: {line}")

    def lines_said(self):
        log = self.content(os.path.join(self.folder, "program.log")) or b""
        return [line for line in log.decode("utf-8", "replace").splitlines() if line.strip()]
