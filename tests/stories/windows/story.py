"""Stories on the program as it ships, under Wine: installed by a real setup, driven by mouse and
keyboard."""

import os
import subprocess
import time

from tests.kit.desktop import Place
from tests.kit.driver import Driver, Role
from tests.kit.folders import ROOT
from tests.kit.installation import browser_folder
from tests.kit.wine import Prefix
from tests.stories import removal
from tests.stories.story import CONFIRMATION, MAIN, Story, everything

MUTEX = "Norvane Clipwright Uninstaller"
PRODUCT = "C:\\Program Files\\Norvane\\Norvane Clipwright"
WIZARD = PRODUCT + "\\Uninstaller\\clipwright-uninstaller.exe"

# Where objects are in the program's forms. Labels are looked at, not clicked.
PLACES = {
    CONFIRMATION: {
        (Role.LABEL, removal.QUESTION): (160, 190),
        (Role.CHECK_BOX, removal.RESOURCES): (50, 239),
        (Role.BUTTON, "Remove"): (102, 285),
        (Role.BUTTON, "Cancel"): (218, 285)},
    MAIN: {
        (Role.RADIO_BUTTON, removal.PRICE): (318, 94),
        (Role.RADIO_BUTTON, removal.FEATURE): (318, 127),
        (Role.RADIO_BUTTON, removal.ONCE): (318, 259),
        (Role.TEXT_FIELD, removal.DETAILS): (506, 172),
        (Role.BUTTON, removal.OFFER): (136, 432),
        (Role.BUTTON, "Continue"): (488, 436),
        (Role.BUTTON, "Cancel"): (624, 436),
        (Role.LABEL, removal.RUNNING): (360, 240),
        (Role.LABEL, removal.SUCCESS): (248, 268),
        (Role.TEXT_FIELD, removal.ADDRESS): (248, 346),
        (Role.LABEL, "Please enter a valid email address."): (248, 382),
        (Role.BUTTON, "Done"): (248, 418),
        (removal.TAB, "Creativity"): (72, 102),
        (removal.TAB, "Utility"): (72, 178),
        (Role.BUTTON, "Close"): (694, 28)}}

# Which recorded event says that a page with such an object is shown.
SHOWN_AFTER = {
    (Role.LABEL, removal.RUNNING): ("UninstallReConfirm", {"ButtonClick": "Remove"}),
    (Role.LABEL, removal.SUCCESS): ("UninstallCompleted", {"result": "success"}),
    (removal.TAB, "Creativity"): ("UninstallCompleted", {"ButtonClick": "Subscribe"})}


class FixedPlaces(Driver):
    """Knows which objects the program's forms have and where, but not whether they are shown,
    enabled or focused: it goes by the windows that are there and the events that the program has
    recorded."""

    def __init__(self, desktop, process, recorded_events):
        super().__init__(desktop, process)
        self._recorded_events = recorded_events

    def find(self, role, name=None, window=None):
        for title, places in PLACES.items():
            if window in (None, title) and (role, name) in places:
                shown = self.desktop.windows(title)
                if shown and self._has_happened(SHOWN_AFTER.get((role, name))):
                    return shown[0], *places[role, name]
        return None

    def try_to_press(self, found):
        self.desktop.click(*found, hover=0.2)  # Wine tells the button of the mouse over it later
        time.sleep(0.3)
        return True

    def enter_text(self, found, text):
        self.try_to_press(found)
        self.desktop.press_keys("ctrl+a")
        self.desktop.type_text(text)
        time.sleep(0.3)

    def focused(self):
        raise NotImplementedError("the places of a form do not tell its focus")

    def place(self, found):
        window, x, y = found
        left, top = self.desktop.place(window)[:2]
        return Place(left + x, top + y, 0, 0)

    def _has_happened(self, event):
        if event is None:
            return True
        action, properties = event
        if not any(recorded == action and properties.items() <= values.items()
                   for _, recorded, values in self._recorded_events()):
            return False
        time.sleep(1)  # the success view comes half a second after its event
        return True


class WindowsStory(Story):
    desktop_size = (1600, 1100)  # room for the window at a scale of two

    def prepare(self, resources):
        self.prefix = resources.enter_context(Prefix(os.path.join(self.out, "prefix"),
                                                     self.desktop.environment))
        setup = os.path.join(self.out, "Clipwright sample.exe")
        subprocess.run(["makensis", "-V2", "-WX", f"-DOUTPUT={setup}",
                        f"-DPROGRAMS={self.binaries}",
                        os.path.join(ROOT, "tests", "stories", "windows", "setup.nsi")], check=True)
        if self.prefix.run(setup) != 0:
            raise OSError("the setup failed")
        self.root = os.path.dirname(self.prefix.variable("TEMP"))
        self._received = os.path.join(self.prefix.variable("USERPROFILE"), "Received",
                                      "uninstaller.txt")
        self._links = os.path.join(self.out, "links.txt")
        browser = browser_folder(os.path.join(self.out, "browser"), self._links)
        self.prefix.set_registry("HKCU\\Software\\Wine\\WineBrowser", "Browsers", "REG_SZ",
                                 os.path.join(browser, "xdg-open"))

    def launch(self, wrap):
        with open(os.path.join(self.out, "program.log"), "wb") as log:
            process = self.desktop.start(["wine", WIZARD], env=self.prefix.environment,
                                         stdout=log, stderr=log)
        return FixedPlaces(self.desktop, process, self.events)

    def run_second_copy(self):
        return self.prefix.run(WIZARD)

    def is_name_held(self):
        probe = os.path.join(self.binaries, "mutex-probe.exe")
        return self.prefix.output(probe, MUTEX) == "held"

    def product_folder(self):
        return self.prefix.path(PRODUCT)

    def files_left(self):
        """Without those that the running program and its libraries keep from being removed."""
        return [file for file in super().files_left()
                if not (file.startswith("Uninstaller/") and file.endswith((".exe", ".dll")))]

    def arguments_received(self):
        try:
            with open(self._received, encoding="utf-16") as file:
                return file.read().split()
        except FileNotFoundError:
            return []

    def links(self):
        return self.lines(self._links)

    def judge_surroundings(self, expected):
        is_there = self.prefix.registry("HKCR\\NCPFile", "path") is not None
        self.expect_equal(is_there, expected.keeps is everything,
                          "the product's registry key is there as long as the product is")

    def picture(self, name):
        time.sleep(1)  # Wine shows a window before it has painted it
        super().picture(name)
