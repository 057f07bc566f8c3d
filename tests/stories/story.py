"""One run of the program in a sample installation: what is prepared for it, what it did, seen from
outside, and whether that is what was expected."""

import abc
import contextlib
import dataclasses
import json
import os
import time
import typing

from tests.kit import installation
from tests.kit.desktop import PATIENCE, Desktop, wait_until
from tests.kit.folders import make_afresh

MAIN = "Norvane Clipwright Uninstaller"
SPLASH = "SplashWindow"
CONFIRMATION = "Confirm uninstallation"


STORIES = {}


def story(play):
    """Lists a function that plays a story under its name: on the Windows program alone when its
    module lies in tests/stories/windows, else on both builds. tests/stories/CMakeLists.txt makes
    tests of what it decorates."""
    STORIES[play.__name__.replace("_", "-")] = play
    return play


def with_service(play):
    """Marks a story that needs a service of its own in place of the maker's hosts. The others play
    the program as it ships, where that can be had."""
    play.needs_service = True
    return play


class Skipped(Exception):
    """The machine does not allow what the story needs."""


def everything(_file):
    return True


def effects(file):
    return file.startswith("Effects")


def nothing(_file):
    return False


@dataclasses.dataclass
class Outcome:
    """What a run that ended by itself must have led to."""

    events: typing.Sequence = ()  # category, action and properties of each, in order
    arguments: typing.Sequence = ()  # that the setup uninstaller received; empty: was not started
    keeps: typing.Callable = everything  # which files of the product are still there
    added: typing.Sequence = ()  # files that are new in the product's folder
    links: typing.Sequence = ()  # opened in the browser
    requests: int = 30  # to the local service, where there is one: the document and its pictures


class Story(installation.Installation, abc.ABC):
    """What is the same on every platform. To be entered before it is played."""

    desktop_size = (1000, 680)

    def __init__(self, binaries, out, needs_service=False, setups=(), desktop_size=None):
        self.binaries = os.path.abspath(binaries)
        self.out = make_afresh(out)
        self.root = os.path.join(self.out, "sandbox")
        self.desktop_size = desktop_size or self.desktop_size
        self.needs_service = needs_service
        self.setups = setups  # that install the product; none: the platform's usual ones
        self.service = None
        self.environment = {}  # that the program is started with
        self.failures = []
        self.desktop = None
        self.program = None
        self.installed = []
        self._pictures = 0
        self._started = self._first_window = 0.0
        self._resources = contextlib.ExitStack()

    def __enter__(self):
        with self._resources:
            width, height = self.desktop_size
            self.desktop = self._resources.enter_context(Desktop(width=width, height=height))
            self.prepare(self._resources)
            self.installed = self.files_left()
            self._resources = self._resources.pop_all()
        return self

    def __exit__(self, *exception):
        self._resources.close()

    # What each platform does its own way

    @abc.abstractmethod
    def prepare(self, resources):
        """Makes the installation; enters into the resources what is to end with the story."""

    @abc.abstractmethod
    def launch(self, wrap):
        """Starts the program, by a command that wraps it where there is one; returns its driver."""

    @abc.abstractmethod
    def run_second_copy(self):
        """Runs another copy of the program to its end and returns its exit code."""

    @abc.abstractmethod
    def is_name_held(self):
        """Tells whether a running process has claimed the program's name."""

    @abc.abstractmethod
    def arguments_received(self):
        """Those of the setup uninstaller."""

    @abc.abstractmethod
    def links(self):
        """Those that were opened in the browser."""

    def say_offline(self):
        """Has the system tell that there is no connection, where that is not what it sees."""

    def ask_to_close(self, title):
        """Closes a window as the window system's close key does."""
        self.desktop.press_keys("alt+F4", title=title)

    def sample_program(self, name):
        """The file of a built sample program."""
        return os.path.join(self.binaries, name)

    def name_to_program(self, path):
        """What a file of the installation is called by its programs."""
        return path

    def expect_rest(self, page):
        """Waits until the program sleeps for some seconds, as it does where nothing moves. Under
        Wine a process has threads that wake up by themselves, and nothing is expected."""

    def judge_surroundings(self, expected):
        """Judges what is seen beside the program's own records."""
        if self.service:
            requests = self.service.requests()
            self.expect_equal((len(requests), len(set(requests))), (expected.requests,) * 2,
                              f"{expected.requests} files were fetched, each of them once")

    def describe_surroundings(self):
        """Prints what only this platform shows."""

    # Playing

    @contextlib.contextmanager
    def start(self, wrap=()):
        """Runs the program for the length of a block, and yields its driver."""
        self._started = time.monotonic()
        with self.launch(wrap) as self.program:
            try:
                yield self.program
            except BaseException:
                self.picture("when-it-failed")
                raise

    def note_first_window(self):
        """To be called when the program's first window is there."""
        self._first_window = time.monotonic() - self._started

    def soon(self):
        """Seconds that something without a wait of its own may take: more on a slow machine."""
        return 2 + 2 * self._first_window

    def picture(self, name):
        self._pictures += 1
        time.sleep(0.3)  # the compositor shows the last change a little later
        file = os.path.join(self.out, f"{self._pictures:02}-{name}.png")
        self.desktop.save_picture(file)
        return file

    # What the program did

    def product_folder(self):
        return self.path("Program Files/Norvane/Norvane Clipwright")

    @property
    def cache(self):
        return self.path("Temp/Norvane Clipwright Uninstaller/Configs")

    def events(self):
        return [(call["category"], call["action"], json.loads(call["properties"]))
                for call in self.calls() if call["call"] == "data_event"]

    def files_left(self):
        """The files in the product's folder."""
        folder = self.product_folder()
        return sorted(os.path.relpath(os.path.join(parent, file), folder)
                      for parent, _, files in os.walk(folder) for file in files)

    def wait_for_file(self, file, seconds=PATIENCE):
        wait_until(lambda: os.path.exists(file), seconds, file)

    # Judging

    def expect(self, condition, text):
        print(("  ok    " if condition else "  FAIL  ") + text)
        if not condition:
            self.failures.append(text)

    def expect_equal(self, actual, expected, text):
        self.expect(actual == expected, text)
        if actual != expected:
            print(f"        expected {expected}\n        found    {actual}")

    def judge(self, expected):
        """Judges a run whose program has ended."""
        self.expect_equal(self.program.process.returncode, 0, "the program ended with exit code 0")
        arguments = " ".join(expected.arguments)
        self.expect_equal(self.arguments_received(), list(expected.arguments),
                          f"the setup uninstaller received {arguments}" if arguments
                          else "the setup uninstaller was not started")
        left = sorted([*filter(expected.keeps, self.installed), *expected.added])
        self.expect_equal(self.files_left(), left,
                          f"of {len(self.installed)} files of the product, {len(left)} are there")
        self.expect_equal(self.links(), list(expected.links),
                          f"{len(expected.links)} links were opened in the browser")
        self.expect_equal(self.events(), list(expected.events),
                          f"{len(expected.events)} events came in order, with their properties")
        self.expect_equal([call["call"] for call in self.calls()],
                          ["data_init", "data_base_info", *["data_event"] * len(expected.events),
                           "data_stop"],
                          "the analytics session was opened, described and closed")
        self.judge_surroundings(expected)

    def summary(self):
        print("\nArguments that the setup uninstaller received:")
        print("  " + " ".join(self.arguments_received() or ["(never started)"]))
        print("Files left of the sample product: " + (", ".join(self.files_left()) or "none"))
        print("Links opened:")
        for link in self.links() or ["(none)"]:
            print("  " + link)
        print("Events, in order:")
        for category, action, properties in self.events():
            print(f"  {category}/{action} {json.dumps(properties, ensure_ascii=False)}")
        self.describe_surroundings()
        print(f"Pictures: {self.out}")
