#!/usr/bin/python3
"""Plays stories on the real program in a sample installation, as a person with a screen reader
would, and judges each from outside: arguments received, files gone, events recorded, links opened,
exit code. Saves a picture of each page. Exits with 1 when anything is not as it should be, with 77
when the machine does not allow the story.

usage: python3 -m tests.stories.play STORY --bin DIR --out DIR
"""

import argparse
import json
import os
import shutil
import socket
import subprocess
import sys
import time

from tests.kit import installation
from tests.kit.accessibility import AccessibilityDriver
from tests.kit.desktop import Desktop
from tests.kit.driver import Role
from tests.kit.folders import make_afresh
from tests.kit.installation import browser_folder
from tests.kit.listener import Listener
from tests.kit.proxies import HttpProxy, SocksProxy
from tests.kit.service import Service
from tests.kit.windowwatch import WindowWatch


# What comes at once may take so many seconds on a busy machine.
BUSY = 15


class Story:
    """One run of the program: its sandbox, what is expected of it, what it did."""

    def __init__(self, binaries, out):
        self.binaries = binaries
        self.out = out
        self.root = os.path.join(out, "sandbox")
        self.failures = []
        self.pictures = []
        self.service = None
        self._started = None
        self.pace = 0.0
        self.desktop = None
        make_afresh(self.out)

    def prepare(self):
        self.environment = {**self.desktop.environment, **installation.make(self.binaries, self.root)}
        browser = browser_folder(os.path.join(self.root, "bin"), self.path("Received/links.txt"))
        self.environment["PATH"] = browser + os.pathsep + self.environment["PATH"]
        self.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = self.service.url
        self.environment["QT_SCALE_FACTOR"] = "3"  # the program's own business
        # The X11 plugin warns of windows that the window manager removed a moment before it did;
        # debug lines are no warnings.
        self.environment["QT_LOGGING_RULES"] = "qt.qpa.xcb=false;default.debug=false"

    def path(self, relative):
        return os.path.join(self.root, relative)

    @property
    def install_dir(self):
        return self.path("Program Files/Norvane/Norvane Clipwright")

    def expect(self, condition, text):
        print(("  ok    " if condition else "  FAIL  ") + text)
        if not condition:
            self.failures.append(text)

    def expect_equal(self, actual, expected, text):
        self.expect(actual == expected, text)
        if actual != expected:
            print(f"        expected {expected}\n        found    {actual}")

    def picture(self, name):
        file = os.path.join(self.out, f"{len(self.pictures) + 1:02}-{name}.png")
        time.sleep(0.3)  # let the compositor show the last change
        self.desktop.save_picture(file)
        self.pictures.append(file)

    def lines(self, relative):
        return installation.lines(self.path(relative))

    def calls(self):
        record = "Temp/Norvane Clipwright Uninstaller/Analystic/data_api.jsonl"
        return [json.loads(line) for line in self.lines(record)]

    def events(self):
        return [(call["category"], call["action"], json.loads(call["properties"]))
                for call in self.calls() if call["call"] == "data_event"]

    def files_left(self, below=""):
        folder = os.path.join(self.install_dir, below)
        return sorted(os.path.relpath(os.path.join(parent, file), self.install_dir)
                      for parent, _, files in os.walk(folder) for file in files)

    def fetched(self):
        """Names of the documents and of the pictures in the cache."""
        cache = self.path("Temp/Norvane Clipwright Uninstaller/Configs")
        if not os.path.isdir(cache):
            return [], []
        return ([name for name in os.listdir(cache) if name.endswith(".cfg")],
                sorted(os.listdir(os.path.join(cache, "Images"))))

    def start(self, wrap=()):
        self._started = time.monotonic()
        return AccessibilityDriver(
            self.desktop, [*wrap, os.path.join(self.binaries, "clipwright-uninstaller-sandbox")],
            self.environment, os.path.join(self.out, "program.log"))

    def has_shown_itself(self):
        """To be called when the program's first window is there: tells how quick the machine is."""
        self.pace = time.monotonic() - self._started

    def soon(self):
        """Seconds in which what nobody waits for is over, on a machine as quick as this."""
        return 2 + 2 * self.pace

    @staticmethod
    def wait_for_file(file, seconds=BUSY):
        deadline = time.monotonic() + seconds
        while not os.path.exists(file) and time.monotonic() < deadline:
            time.sleep(0.1)
        return os.path.exists(file)

    def summary(self):
        print("\nArguments that the setup uninstaller received:")
        print("  " + " ".join(self.lines("Received/uninstaller.txt") or ["(never started)"]))
        for switch in self.lines("Received/update-installer.txt"):
            print("Update installer's switch: " + switch)
        print("Files left of the sample product: " + (", ".join(self.files_left()) or "none"))
        documents, pictures = self.fetched()
        print(f"Fetched over HTTP ({len(self.service.requests())} requests): "
              f"{', '.join(documents) or 'no document'}; {len(pictures)} pictures: "
              + ", ".join(pictures))
        print("Links opened:")
        for link in self.lines("Received/links.txt") or ["(none)"]:
            print("  " + link)
        print("Events, in order:")
        for category, action, properties in self.events():
            print(f"  {category}/{action} {json.dumps(properties, ensure_ascii=False)}")
        print(f"Pictures: {self.out}")
        with open(os.path.join(self.out, "program.log"), encoding="utf-8", errors="replace") as log:
            said = log.read().strip()
        self.expect(not said, "the program printed no warning" + (f": {said}" if said else ""))


TAB = Role.RADIO_BUTTON  # one of several buttons of which one is checked

POP_UP = ("DoUninstall", "UninstallPopUp", {"source": "uninstall_action"})


def feedback(action, code, detail="", button=""):
    return ("DoUninstall", action, {"MsgCode": code, "Msgdetail": detail,
                                    "isoption": "1" if button else "0",
                                    "source": "uninstall_action", "RetainActionName": button})


def reconfirm(button, delete_all):
    return ("DoUninstall", "UninstallReConfirm", {"ButtonClick": button,
                                                  "is_delete_all": delete_all})


def play_uninstall(story):
    """A whole uninstall: reasons looked at, an offer opened, removed, subscribed, products seen."""
    program = story.start()
    try:
        program.wait_for(Role.BUTTON, "Cancel")
        story.picture("feedback")
        program.press(Role.RADIO_BUTTON, "A feature I need is missing")
        program.type_into(Role.TEXT_FIELD, None, "Keyframes for every effect, please.")
        story.picture("reason-with-text-box")
        program.press(Role.RADIO_BUTTON, "The full version costs too much for me")
        program.press(Role.BUTTON, "  Get 30% off  ")
        story.picture("reason-with-offer")
        program.press(Role.RADIO_BUTTON, "A feature I need is missing")
        program.press(Role.BUTTON, "Continue")
        program.wait_for(Role.LABEL, "Are you sure you want to remove Norvane Clipwright?")
        story.picture("confirmation")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, "Thanks for your feedback! Uninstalling...")
        time.sleep(13)
        story.picture("progress-near-half")
        program.wait_for(Role.LABEL, "Successfully uninstalled", seconds=40)
        story.picture("success")
        program.type_into(Role.TEXT_FIELD, None, "robin@mail")
        program.press(Role.BUTTON, "Done")
        program.wait_for(Role.LABEL, "Please enter a valid email address.")
        story.picture("success-wrong-address")
        program.type_into(Role.TEXT_FIELD, None, "robin@mail.test")
        program.press(Role.BUTTON, "Done")
        program.wait_for(TAB, "Creativity")
        story.picture("products")
        program.press(TAB, "Utility")
        story.picture("products-of-a-category")
        program.press(Role.BUTTON, "Close")
        code = program.wait_for_exit()
    finally:
        program.__exit__()

    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(story.lines("Received/uninstaller.txt"), ["/VERYSILENT", "/REINSTALL"],
                       "the setup uninstaller received exactly its two arguments")
    story.expect_equal([file for file in story.files_left() if not file.startswith("Effects")], [],
                       "the product's files are gone")
    story.expect_equal(len(story.files_left("Effects")), 4, "the effect resources stay")
    story.expect_equal(set(story.lines("Received/links.txt.scale")), {"1"},
                       "the program had set the display scale itself")
    story.expect_equal(len(set(story.service.requests())), 30,
                       "the document and its pictures were fetched")
    story.expect_equal(len(story.service.requests()), 30, "each of them once")
    story.expect_equal(story.lines("Received/links.txt"),
                       ["https://www.norvane.example/clipwright/offer?pid=8461&m=uninstall",
                        "https://www.norvane.example/clipwright/goodbye"],
                       "the offer and the farewell page were opened in the browser")
    words = "Keyframes for every effect, please."
    story.expect_equal(story.events(), [
        POP_UP,
        feedback("PopUp_FeedbackClick", "57", button="Coupon"),
        feedback("RetainClick", "57", button="Coupon"),
        feedback("UninstallContinue", "58", detail=words),
        reconfirm("Remove", "0"),
        ("DoUninstall", "UninstallCompleted", {"result": "success"}),
        ("DoUninstall", "UninstallCompleted", {"ButtonClick": "Subscribe", "result": "success",
                                               "email": "robin@mail.test"}),
        ("DoUninstall", "Click_exit", {"pagesource": "moreproducts", "result": "success"}),
    ], "the events came in order, with their properties")
    story.expect_equal([call["call"] for call in story.calls()],
                       ["data_init", "data_base_info"] + ["data_event"] * 8 + ["data_stop"],
                       "the analytics session was opened, described and closed")


def play_keyboard(story):
    """A whole uninstall without a mouse: Tab, arrows, Space and Enter only."""
    program = story.start()
    try:
        program.wait_for(Role.BUTTON, "Cancel")
        program.wait_for_focus(Role.PAGE, "What made you decide to uninstall?")
        first, second = "The full version costs too much for me", "A feature I need is missing"
        way = program.tab_to(Role.RADIO_BUTTON, first)
        story.expect_equal(len(way), 1, "Tab leads to the first reason at once")
        story.desktop.press_keys("space")
        program.wait_for(Role.BUTTON, "  Get 30% off  ")
        story.desktop.press_keys("Down")
        # The arrows browse the reasons; the text box waits for Tab.
        program.wait_for_focus(Role.RADIO_BUTTON, second)
        story.desktop.press_keys("Tab")
        program.wait_for_focus(Role.TEXT_FIELD, "Describe the problem")
        story.desktop.type_text("No keyframes")
        story.picture("reason-by-keys")
        way = program.tab_to(Role.BUTTON, "Continue")
        story.expect_equal(way[-1], (Role.BUTTON, "Continue"), "Tab leads out of the text box")
        story.desktop.press_keys("Return")

        program.wait_for_focus(Role.BUTTON, "Cancel")
        way = program.tab_to(Role.CHECK_BOX, "Remove all the effect resource files")
        story.expect_equal([name for _, name in way],
                           ["Remove", "Remove all the effect resource files"],
                           "the safe answer has the keyboard first, then come the others")
        story.desktop.press_keys("space", "space")  # ticked and unticked
        story.picture("confirmation-by-keys")
        program.tab_to(Role.BUTTON, "Remove")
        story.desktop.press_keys("Return")

        program.wait_for(Role.LABEL, "Thanks for your feedback! Uninstalling...")
        heard = set()
        deadline = time.monotonic() + 45
        while not program.find(Role.LABEL, "Successfully uninstalled"):
            assert time.monotonic() < deadline, "no success in 45 s"
            _, name = program.focused() or (None, "")
            heard.add(name)
            time.sleep(0.2)
        for seconds in (20, 10):
            story.expect("Thanks for your feedback! Uninstalling... "
                         f"Time remaining: About {seconds} seconds" in heard,
                         f"{seconds} seconds left were read aloud")

        program.wait_for_focus(Role.TEXT_FIELD, "Email address")
        story.desktop.type_text("robin@mail.test")
        story.picture("address-by-keys")
        story.desktop.press_keys("Return")
        program.wait_for_focus(Role.PAGE, "More Apps You Might Like")
        program.tab_to(TAB, "All")
        story.desktop.press_keys("Down", "Down", "Down")
        program.wait_for_focus(TAB, "Utility")
        program.wait_for(Role.LABEL, "Utility")
        program.tab_to(Role.BUTTON, "Close")
        story.picture("products-by-keys")
        story.desktop.press_keys("Return")
        code = program.wait_for_exit()
    finally:
        program.__exit__()

    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(story.lines("Received/uninstaller.txt"), ["/VERYSILENT", "/REINSTALL"],
                       "the setup uninstaller received exactly its two arguments")
    story.expect_equal([action for _, action, _ in story.events()],
                       ["UninstallPopUp", "PopUp_FeedbackClick", "UninstallContinue",
                        "UninstallReConfirm", "UninstallCompleted", "UninstallCompleted",
                        "Click_exit"], "the events came in order")


def play_resources(story):
    """The same with the effect resources removed, which is the user's choice."""
    program = story.start()
    try:
        program.press(Role.RADIO_BUTTON, "I only needed it for one project")
        program.press(Role.BUTTON, "Continue")
        program.press(Role.CHECK_BOX, "Remove all the effect resource files")
        story.picture("confirmation-with-resources")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, "Successfully uninstalled", seconds=40)
        program.press(Role.BUTTON, "Close")
        code = program.wait_for_exit()
    finally:
        program.__exit__()

    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(story.lines("Received/uninstaller.txt"),
                       ["/VERYSILENT", "/REINSTALL", "/DELRESOURCE"],
                       "the setup uninstaller received /DELRESOURCE third")
    story.expect_equal(story.files_left(), [], "nothing of the product is left")
    story.expect_equal(story.events(), [
        POP_UP,
        feedback("UninstallContinue", "62"),
        reconfirm("Remove", "1"),
        ("DoUninstall", "UninstallCompleted", {"result": "success"}),
        ("DoUninstall", "Click_exit", {"pagesource": "uninstallprocess", "result": "success"}),
    ], "the events came in order, with their properties")


def play_cancel(story):
    """Second thoughts: Cancel in the confirmation removes nothing and ends the program."""
    program = story.start()
    try:
        program.press(Role.RADIO_BUTTON, "Other")
        program.press(Role.BUTTON, "Continue")
        program.wait_for(Role.LABEL, "Are you sure you want to remove Norvane Clipwright?")
        program.press(Role.BUTTON, "Cancel", window="Confirm uninstallation")
        code = program.wait_for_exit()
    finally:
        program.__exit__()

    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(story.lines("Received/uninstaller.txt"), [], "nothing was started")
    story.expect_equal(len(story.files_left()), 14, "the product is whole")
    story.expect_equal(story.events(), [
        POP_UP, feedback("UninstallContinue", "64"), reconfirm("Cancel", "0"),
    ], "the events came in order, with their properties")


def play_upgrade(story):
    """The offer taken: checked, downloaded, installed, and the new version launched."""
    program = story.start()
    try:
        program.press(Role.RADIO_BUTTON, "My version is out of date")
        story.picture("reason-with-upgrade")
        program.press(Role.BUTTON, "  Get latest version  ")
        program.wait_for(Role.LABEL, "Upgrading, please wait...")
        time.sleep(1)
        story.picture("upgrading")
        program.wait_for(Role.LABEL, "Upgrade completed", seconds=40)
        story.picture("completed")
        program.press(Role.BUTTON, "Launch")
        code = program.wait_for_exit()
    finally:
        program.__exit__()

    story.expect_equal(code, 0, "the program ended with exit code 0")
    install_dir = story.install_dir
    story.expect_equal(story.lines("Received/update-installer.txt"), [
        f'/CFGPATH="{story.path("ProgramData/Norvane Clipwright/Back_UpdateInfo.json")}"',
        '/NEWVER="7.3.0.1"', '/LANG="ENG"', '/SKIN="0"', '/CURVER="7.2.1.4"',
        f'/INSTALLPATH="{install_dir}"', '/PRODUCTNAME="Norvane Clipwright"',
        '/SOURCE="Uninstaller"',
    ], "the update installer received its eight switches")
    story.expect("Version=7.3.0.1" in story.lines("ProgramData/Norvane Clipwright/Clipwright.ini"),
                 "the installed version is the new one")
    story.expect(story.wait_for_file(os.path.join(install_dir, "launched.txt")),
                 "the new version was launched")
    story.expect_equal(story.lines("Received/uninstaller.txt"), [], "nothing was uninstalled")
    story.expect_equal(story.events(), [
        POP_UP,
        feedback("PopUp_FeedbackClick", "61", button="Upgrade"),
        feedback("RetainClick", "61", button="Upgrade"),
        ("DoRetain", "UpgradeCompleted", {}),
        ("DoRetain", "UpgradeSuccess_launchclick", {}),
    ], "the events came in order, with their properties")


def play_stuck_library(story):
    """The upgrade library never answers a check: the window can be closed, the process ends."""
    with open(story.path("Feed/orders.txt"), "a", encoding="utf-8") as orders:
        orders.write("never_return=check\n")
    program = story.start()
    try:
        program.wait_for(Role.RADIO_BUTTON, "My version is out of date")
        story.has_shown_itself()
        program.press(Role.RADIO_BUTTON, "My version is out of date")
        program.press(Role.BUTTON, "  Get latest version  ")
        story.expect(story.wait_for_file(story.path("Feed/calls.jsonl")), "the library was asked")
        story.picture("waiting-for-the-answer")
        story.desktop.press_keys("alt+F4", title="Norvane Clipwright Uninstaller")
        closed = time.monotonic()
        code = program.wait_for_exit()
        took = time.monotonic() - closed
    finally:
        program.__exit__()

    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect(took < story.soon(), f"soon after its window was closed ({took:.1f} s)")
    story.expect_equal([json.loads(line)["call"] for line in story.lines("Feed/calls.jsonl")],
                       ["check_upgrade_c"], "the library was asked this one thing")
    story.expect_equal(story.events(), [
        POP_UP,
        feedback("PopUp_FeedbackClick", "61", button="Upgrade"),
        feedback("RetainClick", "61", button="Upgrade"),
    ], "the events came in order, with their properties")
    story.expect_equal(story.calls()[-1]["call"], "data_stop", "the analytics session was closed")


def play_closed_splash(story):
    """The user changes their mind while the program loads: it ends, no window, nothing fetched."""
    with Listener() as silent:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = silent.url
        program = story.start()
        try:
            program.wait_for(Role.BUTTON, "Close")
            story.has_shown_itself()
            story.picture("splash")
            program.press(Role.BUTTON, "Close")
            closed = time.monotonic()
            code = program.wait_for_exit()
            took = time.monotonic() - closed
        finally:
            program.__exit__()
    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect(0.4 < took < story.soon(), f"about half a second after the splash was closed ({took:.1f} s)")
    story.expect_equal(story.events(), [], "the main window never came")
    story.expect_equal(story.fetched(), ([], []), "nothing was fetched")
    story.expect_equal([call["call"] for call in story.calls()],
                       ["data_init", "data_base_info", "data_stop"],
                       "the analytics session was closed in order")


def play_closed_splash_by_keys(story):
    """The same by the window system's close key."""
    with Listener() as silent:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = silent.url
        program = story.start()
        try:
            program.wait_for(Role.BUTTON, "Close")
            story.desktop.press_keys("alt+F4", title="SplashWindow")
            code = program.wait_for_exit()
        finally:
            program.__exit__()
    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(story.events(), [], "the main window never came")


def play_closed_splash_among_pictures(story):
    """The splash is closed when the document is there and its pictures are not: the document is
    kept, and no earlier picture is touched."""
    published = os.path.join(story.service.root, "uninstall", "cfg", "v1", "846-en.json")
    cache = story.path("Temp/Norvane Clipwright Uninstaller/Configs")
    earlier = {}
    with Listener() as silent:
        with open(published, encoding="utf-8") as file:
            document = file.read().replace(f'"{story.service.url}/', f'"{silent.url}/')
        with open(published, "w", encoding="utf-8") as file:
            file.write(document)
        os.makedirs(os.path.join(cache, "Images"))
        for product in json.loads(document)["recommended"]["list"]:
            name = os.path.join(cache, "Images", f"pid_{product['pid']}.png")
            earlier[name] = f"earlier {product['pid']}"
            with open(name, "w", encoding="utf-8") as file:
                file.write(earlier[name])
        program = story.start()
        try:
            program.wait_for(Role.BUTTON, "Close")
            deadline = time.monotonic() + 5
            while silent.connections() < 5 and time.monotonic() < deadline:
                time.sleep(0.05)
            asked = silent.connections()
            program.press(Role.BUTTON, "Close")
            code = program.wait_for_exit()
        finally:
            program.__exit__()
    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(asked, 5, "it was waiting for five pictures")
    story.expect_equal(story.events(), [], "the main window never came")
    with open(os.path.join(cache, "en.cfg"), encoding="utf-8") as file:
        story.expect_equal(json.load(file), json.loads(document), "the new document is kept")
    found = {}
    for name in os.listdir(os.path.join(cache, "Images")):
        with open(os.path.join(cache, "Images", name), encoding="utf-8") as file:
            found[os.path.join(cache, "Images", name)] = file.read()
    story.expect_equal(found, earlier, "the earlier pictures are, and nothing else is there")


def play_silent_server(story):
    """A server that accepts and never answers: the window comes after ten seconds, and the open
    connection does not delay the end."""
    with Listener() as silent, WindowWatch(story.desktop) as windows:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = silent.url
        started = time.monotonic()
        program = story.start()
        try:
            program.wait_for(Role.BUTTON, "Close")
            story.has_shown_itself()
            program.wait_for(Role.RADIO_BUTTON, "Other", seconds=10 + BUSY)
            took = time.monotonic() - started
            time.sleep(0.5)
            program.press(Role.BUTTON, "Cancel")
            pressed = time.monotonic()
            code = program.wait_for_exit()
            ending = time.monotonic() - pressed
        finally:
            program.__exit__()
        turning = windows.first("SplashWindow")
        main = windows.first("Norvane Clipwright Uninstaller")
        screen = story.desktop.size()
    story.expect_equal(code, 0, "the program ended with exit code 0")
    loading = main.came - turning.came
    story.expect(9.8 <= loading < 10 + BUSY,
                 f"the main window came ten seconds after the splash ({loading:.2f} s)")
    overlap = turning.went - main.came  # the window manager may list the one later than the other
    story.expect(0 < overlap < 0.5,
                 f"the splash went a twentieth of a second after that ({1000 * overlap:.0f} ms)")
    for window in (turning, main):
        x, y, width, height = window.place
        story.expect_equal((x, y), ((screen[0] - width) // 2, (screen[1] - height) // 2),
                           f"{window.title} stood in the middle of the screen")
    story.expect(10 <= took, f"the main window came after ten seconds ({took:.1f} s)")
    story.expect(ending < story.soon(), f"the program ended promptly ({ending:.1f} s)")
    story.expect_equal(silent.connections(), 1, "it had tried the server")


def play_german(story):
    """An installation in German, its document and its interface."""
    places = in_language(story, "DEU", "Abbrechen", "Weiter", "de.cfg", "  30\u00a0% sparen  ")
    story.expect(places["offer"].x < places["continue"].x < places["cancel"].x,
                 "banner and buttons stand in their usual order")


def play_arabic(story):
    """An installation in Arabic: everything is mirrored."""
    places = in_language(story, "ARG", "إلغاء الأمر", "متابعة", "ar.cfg", "  الحصول على خصم 30%  ")
    story.expect(places["cancel"].x < places["continue"].x, "the buttons stand in the other order")
    story.expect(places["continue"].x < places["offer"].x, "the banner stands on the right")


def in_language(story, installer_code, cancel, proceed, document, offer):
    """Looks at the feedback page in a language; returns where its buttons are."""
    ini = story.path("ProgramData/Norvane Clipwright/Clipwright.ini")
    with open(ini, encoding="utf-8") as file:
        text = file.read()
    with open(ini, "w", encoding="utf-8") as file:
        file.write(text.replace("DefInstallLang=ENG", f"DefInstallLang={installer_code}"))
    program = story.start()
    try:
        program.wait_for(Role.BUTTON, cancel)
        story.picture("feedback")
        program.press(Role.RADIO_BUTTON)
        places = {"cancel": program.place(program.wait_for(Role.BUTTON, cancel)),
                  "continue": program.place(program.wait_for(Role.BUTTON, proceed)),
                  "offer": program.place(program.wait_for(Role.BUTTON, offer))}
        story.picture("reason")
        program.press(Role.BUTTON, proceed)
        program.wait_for(Role.CHECK_BOX)
        story.picture("confirmation")
        program.process.terminate()
        program.process.wait(timeout=10)
    finally:
        program.__exit__()
    cache = story.path("Temp/Norvane Clipwright Uninstaller/Configs")
    story.expect(document in os.listdir(cache), f"{document} was fetched")
    return places


def settle_proxy(story, kind, port):
    with open(story.path("ProgramData/Norvane Clipwright/KConfig.ini"), "a",
              encoding="utf-8") as file:
        file.write(f"\n[ProxyInfo]\nMode=2\nType={kind}\nServer={['http', '', 'socks5'][kind]}"
                   f"://127.0.0.1\nPort={port}\nUser=robin\nPassword=hood\n")


def look_and_leave(story, wrap=()):
    """Starts the program, waits for its window and cancels; returns how long the window took."""
    started = time.monotonic()
    program = story.start(wrap)
    try:
        program.wait_for(Role.RADIO_BUTTON, "Other", seconds=10 + BUSY)
        took = time.monotonic() - started
        program.press(Role.BUTTON, "Cancel")
        story.expect_equal(program.wait_for_exit(), 0, "the program ended with exit code 0")
    finally:
        program.__exit__()
    return took


# Qt asks no proxy for loopback names; the machine's own name is none, to Qt.
MACHINE = socket.gethostname()


def play_http_proxy(story):
    """Everything is fetched through a real HTTP proxy that wants a name and a password."""
    with Service(os.path.join(story.out, "distant"), host=MACHINE) as distant, \
            HttpProxy(story.out, "robin", "hood") as proxy:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = distant.url
        settle_proxy(story, 0, proxy.port)
        look_and_leave(story)
        story.expect_equal(len(distant.requests()), 30, "document and pictures arrived")
        story.expect_equal(len(proxy.addresses()), 30, "each of them asked for at the proxy")


def play_socks_proxy(story):
    """Everything is fetched through a real SOCKS5 proxy that wants a name and a password."""
    with Service(os.path.join(story.out, "distant"), host=MACHINE) as distant, \
            SocksProxy(story.out, "robin", "hood") as proxy:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = distant.url
        settle_proxy(story, 2, proxy.port)
        look_and_leave(story)
        story.expect_equal(len(distant.requests()), 30, "document and pictures arrived")
        story.expect(1 <= len(proxy.connections()) <= 30,
                     f"over {len(proxy.connections())} connections of the proxy")


class Skipped(Exception):
    """The machine does not allow what the story needs."""


def trusting(authority_folder):
    """Runs a command where the system trusts this authority and no other."""
    if subprocess.run(["unshare", "--map-root-user", "--mount", "true"], check=False).returncode:
        raise Skipped("no mount namespace of one's own may be made here")
    return ["unshare", "--map-root-user", "--mount", "sh", "-c",
            'mount --bind "$0" /etc/ssl/certs && exec "$@"', authority_folder]


def play_https(story):
    """The same over TLS, with a certificate that the machine trusts."""
    with Service(os.path.join(story.out, "distant"), MACHINE, certificate_for=MACHINE) as distant:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = distant.url
        look_and_leave(story, trusting(distant.authority_folder))
        story.expect_equal(len(distant.requests()), 30, "document and pictures arrived")


def play_https_to_http(story):
    """A trusted server that leads elsewhere, without TLS: it is followed."""
    with Service(os.path.join(story.out, "elsewhere")) as elsewhere, \
            Service(os.path.join(story.out, "distant"), MACHINE, certificate_for=MACHINE,
                    redirect_to=elsewhere.url) as distant:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = distant.url
        look_and_leave(story, trusting(distant.authority_folder))
        story.expect_equal(len(distant.requests()), 1, "the document was asked for over TLS")
        story.expect_equal(len(elsewhere.requests()), 30,
                           "document and pictures arrived without it")


def refused_certificate(story, certificate_for, trusted):
    usual = look_and_leave(story)  # with the story's own service
    cached = story.path("Temp/Norvane Clipwright Uninstaller/Configs/en.cfg")
    built_in = os.path.join(os.path.dirname(os.path.abspath(__file__)), "../../Resources/cfg/en.cfg")
    shutil.copyfile(built_in, cached)
    with Service(os.path.join(story.out, "distant"), MACHINE,
                 certificate_for=certificate_for) as distant:
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = distant.url
        took = look_and_leave(story, trusting(distant.authority_folder) if trusted else ())
        story.expect_equal(distant.requests(), [], "not one request was sent")
    story.expect(took < 5 + 2 * usual, f"the window waited for nobody ({took:.1f} s)")
    with open(built_in, "rb") as expected, open(cached, "rb") as found:
        story.expect(expected.read() == found.read(), "the earlier document is untouched")


def play_https_unknown_authority(story):
    """A certificate that nobody vouches for: nothing is fetched, the earlier document stays."""
    refused_certificate(story, MACHINE, trusted=False)


def play_https_wrong_name(story):
    """A trusted certificate for another host: nothing is fetched, the earlier document stays."""
    refused_certificate(story, "other.host.example", trusted=True)


def play_failures(story):
    """A check that fails, then a removal that cannot start: both said in words that can be read."""
    with open(story.path("Feed/check.json"), "w", encoding="utf-8") as answer:
        answer.write('{"errcode": "7"}')
    os.remove(os.path.join(story.install_dir, "unins000.dat"))
    program = story.start()
    try:
        program.press(Role.RADIO_BUTTON, "My version is out of date")
        program.press(Role.BUTTON, "  Get latest version  ")
        program.wait_for(Role.LABEL, "Failed to check update!")
        story.picture("message")
        program.press(Role.BUTTON, "OK")
        program.press(Role.BUTTON, "Continue")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, "Uninstall Failed")
        story.picture("failed")
        program.press(Role.BUTTON, "Close")
        code = program.wait_for_exit()
    finally:
        program.__exit__()
    story.expect_equal(code, 0, "the program ended with exit code 0")
    story.expect_equal(story.lines("Received/uninstaller.txt"), [], "nothing was started")


STORIES = {name[len("play_"):].replace("_", "-"): play for name, play in list(globals().items())
           if name.startswith("play_")}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("story", choices=STORIES)
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for sandbox, pictures and log")
    arguments = parser.parse_args()

    story = Story(os.path.abspath(arguments.bin), os.path.abspath(arguments.out))
    play = STORIES[arguments.story]
    print(f"== {arguments.story}: {play.__doc__}")
    with Desktop() as story.desktop, Service(os.path.join(story.out, "service")) as story.service:
        story.prepare()
        try:
            play(story)
        except Skipped as reason:
            print(f"== {arguments.story}: SKIPPED, {reason}")
            return 77
    story.summary()
    print(f"== {arguments.story}: " + ("FAILED" if story.failures else "as it should be"))
    return 1 if story.failures else 0


if __name__ == "__main__":
    sys.exit(main())
