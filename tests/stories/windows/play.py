#!/usr/bin/python3
"""Plays stories on the program as it ships, under Wine: installed by a real setup, driven by mouse
and keyboard, judged from outside. Saves pictures. Exits with 1 when anything is not as it should
be.

usage: python3 -m tests.stories.windows.play STORY --bin DIR --out DIR
"""

import argparse
import os
import subprocess
import sys
import time

from tests.kit.desktop import Desktop
from tests.kit.installation import browser_folder
from tests.stories.play import BUSY, POP_UP, Story, feedback, reconfirm
from tests.stories.windows.wine import Prefix, Window

HERE = os.path.dirname(os.path.abspath(__file__))
TITLE = "Norvane Clipwright Uninstaller"
CONFIRMATION = "Confirm uninstallation"
MUTEX = "Norvane Clipwright Uninstaller"
PRODUCT = "C:\\Program Files\\Norvane\\Norvane Clipwright"
WIZARD = PRODUCT + "\\Uninstaller\\clipwright-uninstaller.exe"

# Where things are in the program's forms.
REASON_FEATURE, REASON_VERSION, REASON_ONCE = (318, 125), (318, 222), (318, 254)
OFFER, CONTINUE, CANCEL = (135, 432), (487, 434), (623, 434)
RESOURCES, REMOVE, STAY = (50, 229), (101, 275), (218, 275)
EMAIL, DONE, CLOSE_RUN = (246, 345), (248, 417), (696, 27)
CLOSE_PRODUCTS = (690, 28)


class WindowsStory(Story):
    """One run of the program in a Wine prefix of its own."""

    def __init__(self, binaries, out):
        super().__init__(binaries, out)
        self.prefix = Prefix(os.path.join(out, "prefix"))
        self.program = None
        self.received = None

    def prepare(self):
        setup = os.path.join(self.out, "Clipwright sample.exe")
        subprocess.run(["makensis", "-V2", "-WX", f"-DOUTPUT={setup}",
                        f"-DPROGRAMS={self.binaries}", os.path.join(HERE, "setup.nsi")], check=True)
        if self.prefix.run(setup) != 0:
            raise AssertionError("the setup failed")
        def variable(name):
            return self.prefix.path(self.prefix.output("cmd", "/c", f"echo %{name}%"))

        self.root = os.path.dirname(variable("TEMP"))  # what the shared judges look below
        self.received = os.path.join(variable("USERPROFILE"), "Received")
        browser = os.path.join(browser_folder(os.path.join(self.out, "browser"),
                                              os.path.join(self.out, "links.txt")), "xdg-open")
        self.prefix.set_registry("HKCU\\Software\\Wine\\WineBrowser", "Browsers", "REG_SZ", browser)

    def start(self, wrap=()):
        self.program = self.prefix.start(WIZARD, os.path.join(self.out, "program.log"))
        return self.program

    def main_window(self, scale=1):
        return Window(TITLE, width=round(720 * scale))

    def wait_for_exit(self, seconds=15):
        return self.program.wait(timeout=seconds)

    def links(self):
        return self.lines(os.path.join(self.out, "links.txt"))

    def uninstaller_parameters(self):
        try:
            with open(os.path.join(self.received, "uninstaller.txt"), encoding="utf-16") as file:
                return file.read().split()
        except FileNotFoundError:
            return []

    def files_left(self, below=""):
        folder = self.prefix.path(PRODUCT)
        return sorted(os.path.relpath(os.path.join(parent, file), folder)
                      for parent, _, files in os.walk(os.path.join(folder, below))
                      for file in files)

    def wait_for_event(self, action, seconds=45, **properties):
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            for _, found, values in self.events():
                if found == action and properties.items() <= values.items():
                    return
            if self.program.poll() is not None:
                raise AssertionError(f"the program ended before {action}")
            time.sleep(0.2)
        raise AssertionError(f"no {action} within {seconds} s")

    def picture(self, name):
        time.sleep(1)  # Wine shows a window before it has painted it
        super().picture(name)

    def summary(self):
        print("Arguments that the setup uninstaller received: "
              + (" ".join(self.uninstaller_parameters()) or "(never started)"))
        print("Files left of the sample product: " + (", ".join(self.files_left()) or "none"))
        print("Links opened: " + (" ".join(self.links()) or "(none)"))
        print("Events, in order:")
        for category, action, properties in self.events():
            print(f"  {category}/{action} {properties}")
        print(f"Pictures: {self.out}")


def confirm_removal(story, window, with_resources):
    window.click(*CONTINUE)
    dialog = Window(CONFIRMATION)
    if with_resources:
        dialog.click(*RESOURCES)
    story.picture("confirmation")
    dialog.click(*REMOVE)


def play_uninstall(story):
    """A whole uninstall. The setup uninstaller removes the very folder that the wizard was started
    from, and the wizard goes on to its last page."""
    story.start()
    window = story.main_window()
    story.picture("feedback")
    window.click(*REASON_FEATURE)
    window.type("Keyframes, please.")
    story.picture("reason-with-text-box")
    confirm_removal(story, window, with_resources=False)
    story.wait_for_event("UninstallReConfirm", ButtonClick="Remove")
    story.expect(story.wait_for_file(os.path.join(story.received, "removed.txt"), 20),
                 "the setup uninstaller did its work")
    window.press_keys("alt+F4", "alt+F4")
    time.sleep(1)
    story.expect(story.program.poll() is None and Window.is_there(TITLE),
                 "Alt+F4 is refused during the run")
    story.picture("progress")
    story.wait_for_event("UninstallCompleted", result="success")
    time.sleep(1)  # the success view comes half a second later
    story.picture("success")
    window.click(*EMAIL)
    window.type("robin@mail.test")
    story.picture("success-with-address")
    window.click(*DONE)
    story.wait_for_event("UninstallCompleted", ButtonClick="Subscribe")
    time.sleep(0.5)
    story.picture("products")
    story.expect_equal(window.drag(*CLOSE_PRODUCTS, 60, 40), (0, 0),
                       "a button in the window's top strip does not drag it")
    window.click(*CLOSE_PRODUCTS)
    story.expect_equal(story.wait_for_exit(), 0, "the program ended with exit code 0")

    story.expect_equal(story.uninstaller_parameters(), ["/VERYSILENT", "/REINSTALL"],
                       "the setup uninstaller received exactly its two arguments")
    left = [file for file in story.files_left() if not file.startswith("Effects")]
    print("        left beside the effect resources: " + (", ".join(left) or "nothing"))
    story.expect(all(file.endswith(("clipwright-uninstaller.exe", ".dll")) for file in left),
                 "nothing is left but what the running wizard held open")
    story.expect_equal(len(story.files_left("Effects")), 2, "the effect resources stay")
    story.expect_equal(story.prefix.registry("HKCR\\NCPFile", "path"), None,
                       "the product's registry key is gone")
    story.expect_equal(story.links(), ["https://www.norvane.example/clipwright/goodbye"],
                       "the farewell page of the registry was opened in the browser")
    words = "Keyframes, please."
    story.expect_equal(story.events(), [
        POP_UP,
        feedback("UninstallContinue", "58", detail=words),
        reconfirm("Remove", "0"),
        ("DoUninstall", "UninstallCompleted", {"result": "success"}),
        ("DoUninstall", "UninstallCompleted", {"ButtonClick": "Subscribe", "result": "success",
                                               "email": "robin@mail.test"}),
        ("DoUninstall", "Click_exit", {"pagesource": "moreproducts", "result": "success"}),
    ], "the events came in order, with their properties")
    story.expect_equal([call["call"] for call in story.calls()],
                       ["data_init", "data_base_info"] + ["data_event"] * 6 + ["data_stop"],
                       "the analytics session was opened, described and closed")


def play_resources(story):
    """The same with the effect resources removed, left by the cross of the run's page."""
    story.start()
    window = story.main_window()
    window.click(*REASON_ONCE)
    confirm_removal(story, window, with_resources=True)
    story.wait_for_event("UninstallCompleted", result="success")
    time.sleep(1)
    window.click(*CLOSE_RUN)
    story.expect_equal(story.wait_for_exit(), 0, "the program ended with exit code 0")
    story.expect_equal(story.uninstaller_parameters(),
                       ["/VERYSILENT", "/REINSTALL", "/DELRESOURCE"],
                       "the setup uninstaller received /DELRESOURCE third")
    story.expect_equal(story.files_left("Effects"), [], "the effect resources are gone")
    story.expect_equal(story.events(), [
        POP_UP,
        feedback("UninstallContinue", "62"),
        reconfirm("Remove", "1"),
        ("DoUninstall", "UninstallCompleted", {"result": "success"}),
        ("DoUninstall", "Click_exit", {"pagesource": "uninstallprocess", "result": "success"}),
    ], "the events came in order, with their properties")


def play_cancel(story):
    """Second thoughts: Alt+F4 on the confirmation is its Cancel, and nothing is removed."""
    whole = story.files_left()
    story.start()
    window = story.main_window()
    window.click(*REASON_ONCE)
    window.click(*CONTINUE)
    dialog = Window(CONFIRMATION)
    dialog.press_keys("alt+F4")
    story.expect_equal(story.wait_for_exit(), 0, "Alt+F4 on the confirmation ends the program, code 0")
    story.expect_equal(story.uninstaller_parameters(), [], "nothing was started")
    story.expect_equal(story.files_left(), whole, "the product is whole")
    story.expect_equal(story.events(), [
        POP_UP, feedback("UninstallContinue", "62"), reconfirm("Cancel", "0"),
    ], "the events came in order, with their properties")


def play_second_copy(story):
    """A second copy ends at once, without a window; the first holds the mutex until it ends."""
    probe = os.path.join(story.binaries, "mutex-probe.exe")
    story.expect_equal(story.prefix.output(probe, MUTEX), "free", "nobody holds the mutex at first")
    story.start()
    window = story.main_window()
    story.expect_equal(story.prefix.output(probe, MUTEX), "held", "the program holds its mutex")
    calls = len(story.calls())
    started = time.monotonic()
    story.expect_equal(story.prefix.run(WIZARD), 0, "the second copy ends with exit code 0")
    took = time.monotonic() - started
    story.expect(0.1 <= took < BUSY, f"at once ({took:.1f} s)")
    story.expect_equal(len(story.calls()), calls, "it opened no session, let alone a window")
    story.expect(story.program.poll() is None, "the first runs on")
    window.press_keys("alt+F4")
    story.expect_equal(story.wait_for_exit(), 0, "Alt+F4 ends the first, code 0")
    story.expect_equal(story.prefix.output(probe, MUTEX), "free", "the mutex went with it")


def play_dragging(story):
    """The window is dragged by its top 37 pixels, and by nothing else."""
    story.start()
    window = story.main_window()
    story.expect_equal(window.drag(450, 5, 60, 40), (60, 40), "the top strip drags the window")
    story.expect_equal(window.drag(450, 36, -60, -40), (-60, -40), "its last row does too")
    story.expect_equal(window.drag(450, 37, 60, 40), (0, 0), "the row below does not")
    story.picture("dragged-there-and-back")
    window.click(*CANCEL)
    story.expect_equal(story.wait_for_exit(), 0, "the program ended with exit code 0")


def play_scale(story, dots_per_inch, factor):
    """The display's scale is measured, and the window has that size. Shown on Windows 7, which is
    asked for its dots per inch: Wine hides no physical pixels from programs that know no DPI, which
    is how later systems are measured."""
    if story.prefix.run("winecfg", "-v", "win7") != 0:
        raise AssertionError("cannot choose the system's version")
    story.prefix.set_registry("HKCU\\Control Panel\\Desktop", "LogPixels", "REG_DWORD",
                              dots_per_inch)
    story.prefix.run_server("--kill")  # it is read when a session begins
    story.prefix.run_server("--wait")
    story.start()
    window = story.main_window(factor)
    geometry = window.geometry()
    story.expect_equal((geometry["WIDTH"], geometry["HEIGHT"]),
                       (round(720 * factor), round(480 * factor)),
                       f"at {dots_per_inch} dots per inch the factor is {factor}")
    story.picture("feedback")
    window.press_keys("alt+F4")
    story.expect_equal(story.wait_for_exit(), 0, "the program ended with exit code 0")


def scale(dots_per_inch, factor):
    def play(story):
        play_scale(story, dots_per_inch, factor)
    play.__doc__ = play_scale.__doc__
    return play


STORIES = {"uninstall": play_uninstall, "resources": play_resources, "cancel": play_cancel,
           "second-copy": play_second_copy, "dragging": play_dragging,
           "scale-96": scale(96, 1), "scale-120": scale(120, 1.25), "scale-144": scale(144, 2),
           "scale-192": scale(192, 2)}


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("story", choices=STORIES)
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for pictures and log")
    arguments = parser.parse_args()

    story = WindowsStory(os.path.abspath(arguments.bin), os.path.abspath(arguments.out))
    play = STORIES[arguments.story]
    print(f"== {arguments.story}: {play.__doc__}")
    with Desktop(width=1600, height=1100) as story.desktop:
        os.environ.update(story.desktop.environment)
        with story.prefix:
            story.prepare()
            try:
                play(story)
            except BaseException:
                story.picture("when-it-failed")
                raise
            finally:
                story.summary()
                if story.program and story.program.poll() is None:
                    story.program.kill()
    print(f"== {arguments.story}: " + ("FAILED" if story.failures else "as it should be"))
    return 1 if story.failures else 0


if __name__ == "__main__":
    sys.exit(main())
