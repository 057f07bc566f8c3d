"""The interface between a story and a running program. Each platform implements it in a driver of
its own; stories are written against this interface alone."""

import abc
import dataclasses
import enum
import subprocess
import time

from tests.kit.desktop import PATIENCE, wait_until


class Role(enum.Enum):
    """What an object is to a user, apart from any platform's name for it."""

    BUTTON = "button"
    CHECK_BOX = "check box"
    LABEL = "label"
    LIST = "list"
    LIST_ITEM = "list item"
    PAGE = "page"
    PROGRESS_BAR = "progress bar"
    RADIO_BUTTON = "radio button"
    TEXT_FIELD = "text field"
    WINDOW = "window"


@dataclasses.dataclass
class Shown:
    """An object as a screen reader is told of it."""

    role: Role
    name: str
    enabled: bool = True
    focused: bool = False

    def __str__(self):
        states = ("" if self.enabled else ", disabled") + (", focused" if self.focused else "")
        return f"{self.role.value} {self.name!r}{states}"


class Driver(abc.ABC):
    """A program that was started on a desktop. On exit the program is killed if it still runs."""

    interval = 0.1  # seconds between two looks at what is awaited

    def __init__(self, desktop, process):
        self.desktop = desktop
        self.process = process

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    @abc.abstractmethod
    def find(self, role, name=None, window=None):
        """The first object of a role that is shown (with that name, in a window of that title), or
        None. It is for the driver's other functions alone."""

    @abc.abstractmethod
    def try_to_press(self, found):
        """Presses an object as a user would; returns False while it cannot be pressed."""

    @abc.abstractmethod
    def enter_text(self, found, text):
        """Replaces the content of a text field."""

    @abc.abstractmethod
    def focused(self):
        """Role and name of the object that has the keyboard, or None."""

    @abc.abstractmethod
    def place(self, found):
        """Where an object is on the screen."""

    @abc.abstractmethod
    def everything_shown(self):
        """The window that has the keyboard, and the objects in it, the outer before the inner ones.
        Those that only hold others together, and have no name, are left out."""

    def wait_for(self, role, name=None, window=None, seconds=PATIENCE):
        def is_shown_or_lost():
            found = self.find(role, name, window)
            if found is None and self.process.poll() is not None:
                raise AssertionError(f"the program ended without the {role.value} {name!r}")
            return found

        return wait_until(is_shown_or_lost, seconds, f"{role.value} {name!r}", self.interval)

    def press(self, role, name=None, window=None):
        """Presses an object as soon as it is shown and enabled."""
        wait_until(lambda: self.try_to_press(self.wait_for(role, name, window)), PATIENCE,
                   f"the {role.value} {name!r} can be pressed", self.interval)

    def type_into(self, role, name, text):
        self.enter_text(self.wait_for(role, name), text)

    def wait_for_focus(self, role, name, seconds=PATIENCE):
        wait_until(lambda: self.focused() == (role, name), seconds,
                   lambda: f"the keyboard on {(role, name)}, but on {self.focused()}")

    def tab_to(self, role, name):
        """Presses Tab until an object has the keyboard; returns what had it on the way."""
        way = []
        while self.focused() != (role, name):
            assert len(way) < 40, f"Tab does not lead to the {role.value} {name!r} but to {way}"
            before = self.focused()
            self.desktop.press_keys("Tab")
            deadline = time.monotonic() + 10
            while self.focused() in (before, None) and time.monotonic() < deadline:
                time.sleep(0.05)
            way.append(self.focused())
        return way

    def wait_for_exit(self, seconds=PATIENCE):
        try:
            return self.process.wait(timeout=seconds)
        except subprocess.TimeoutExpired:
            raise AssertionError(f"not within {seconds:g} s: the program's end") from None
