"""Stories on the Windows program under Wine: installed by a real setup, driven by mouse and
keyboard where UI Automation tells that its objects are. The program is the one of the zip that
ships, unless a story needs a service in place of the maker's hosts."""

import os
import shutil
import time

from tests.kit.installation import browser_folder, lines
from tests.kit.service import Service
from tests.kit.uiautomation import UiAutomationDriver
from tests.kit.wine import Prefix
from tests.stories.story import SPLASH, Story, everything
from tests.stories.windows.setups import nsis

MUTEX = "Norvane Clipwright Uninstaller"
PRODUCT = "C:\\Program Files\\Norvane\\Norvane Clipwright"
WIZARD = PRODUCT + "\\Uninstaller\\clipwright-uninstaller.exe"
SANDBOX_WIZARD = PRODUCT + "\\Uninstaller\\clipwright-uninstaller-sandbox.exe"
PRODUCT_DATA = "C:\\ProgramData\\Norvane Clipwright"
UPDATE_ORDERS = ("Program Files/Norvane/Norvane Clipwright Update/"
                 "Norvane Clipwright Update.txt")
FEED = "C:\\Feed"
UPDATE_MILLISECONDS = 2000


class WindowsStory(Story):
    desktop_size = (1600, 1100)  # room for the window at a scale of two
    _wizard = WIZARD
    starter = ()  # a Windows program that starts it

    def prepare(self, resources):
        self.prefix = resources.enter_context(Prefix(os.path.join(self.out, "prefix"),
                                                     self.desktop.environment))
        self.environment = self.prefix.environment
        for install in self.setups or (nsis,):
            install(self)
        self.root = os.path.dirname(self.prefix.variable("TEMP"))
        profile = self.prefix.variable("USERPROFILE")
        self._folders = {"Feed": self.prefix.path(FEED),
                         "Program Files": self.prefix.path("C:\\Program Files"),
                         "ProgramData": os.path.dirname(self.prefix.path(PRODUCT_DATA)),
                         "Received": os.path.join(profile, "Received")}
        self._offer_upgrade()
        self._catch_links()
        if self.needs_service:
            self._wizard = SANDBOX_WIZARD
            shutil.copy(os.path.join(self.binaries, "clipwright-uninstaller-sandbox.exe"),
                        self.prefix.path(SANDBOX_WIZARD))
            self.service = resources.enter_context(Service(os.path.join(self.out, "service")))
            self.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = self.service.url

    def _offer_upgrade(self):
        self.environment["NVUPGRADE_FEED"] = FEED
        if self.prefix.run(os.path.join(self.binaries, "make-sandbox.exe"), "--feed", FEED) != 0:
            raise OSError("cannot write the feed")
        os.makedirs(self.path("Received"))
        self.order(UPDATE_ORDERS, delay=UPDATE_MILLISECONDS, ini=PRODUCT_DATA + "\\Clipwright.ini",
                   record=self.name_to_program(self.path("Received/update-installer.txt")))

    def _catch_links(self):
        self._links = os.path.join(self.out, "links.txt")
        browser = browser_folder(os.path.join(self.out, "browser"), self._links)
        self.prefix.set_registry("HKCU\\Software\\Wine\\WineBrowser", "Browsers", "REG_SZ",
                                 os.path.join(browser, "xdg-open"))

    def launch(self, wrap):
        if wrap:
            self.prefix.restart_session(wrap)
        command = [*wrap, "wine", *self.starter, self._wizard]
        return UiAutomationDriver(self.desktop, self.prefix, command,
                                  os.path.join(self.binaries, "uia-reader.exe"),
                                  os.path.join(self.out, "program.log"))

    def run_second_copy(self):
        return self.prefix.run(self._wizard)

    def ask_to_close(self, title):
        if title != SPLASH:
            super().ask_to_close(title)
        # Under Wine the window manager knows nothing of a window without taskbar entry.
        elif self.prefix.run("taskkill", "/im", self._wizard.rpartition("\\")[2]) != 0:
            raise OSError("the window cannot be closed")

    def is_name_held(self):
        probe = os.path.join(self.binaries, "mutex-probe.exe")
        return self.prefix.output(probe, MUTEX) == "held"

    def path(self, relative):
        first, _, rest = relative.partition("/")
        return os.path.join(self._folders.get(first, os.path.join(self.root, first)), rest)

    def sample_program(self, name):
        return super().sample_program(name) + ".exe"

    def name_to_program(self, path):
        return self.prefix.windows_path(path)

    def files_left(self):
        """Without those that the running program and its libraries keep from being removed."""
        return [file for file in super().files_left()
                if not (file.startswith("Uninstaller/") and file.endswith((".exe", ".dll")))]

    def arguments_received(self):
        return " ".join(self.lines("Received/uninstaller.txt")).split()

    def links(self):
        return lines(self._links)

    def judge_surroundings(self, expected):
        super().judge_surroundings(expected)
        is_there = self.prefix.registry("HKCR\\NCPFile", "path") is not None
        self.expect_equal(is_there, expected.keeps is everything or not expected.arguments,
                          "the product's registry key is there as long as the product is")

    def picture(self, name):
        time.sleep(1)  # Wine shows a window before it has painted it
        return super().picture(name)
