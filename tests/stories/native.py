"""Stories on the native build: the sandbox flavour of the program with the local service, driven
through the accessibility bus as a screen reader drives it."""

import glob
import os
import re
import time

from tests.kit import installation
from tests.kit.accessibility import AccessibilityDriver
from tests.kit.desktop import PATIENCE, wait_until
from tests.kit.service import Service
from tests.stories.story import MAIN, Story


def wake_ups(pid):
    """How often each thread of a process has waited for something."""
    counts = {}
    for file in glob.glob(f"/proc/{pid}/task/*/status"):
        with open(file, encoding="utf-8") as status:
            counts[file] = re.search(r"\nvoluntary_ctxt_switches:\s+(\d+)", status.read()).group(1)
    return counts


class NativeStory(Story):
    def prepare(self, resources):
        self.service = resources.enter_context(Service(os.path.join(self.out, "service")))
        self.environment = {**installation.environment(self.binaries, self.root, self.desktop),
                            "CLIPWRIGHT_SANDBOX_SERVICE": self.service.url,
                            "QT_SCALE_FACTOR": "3"}  # the program sets its own

    def launch(self, wrap):
        return AccessibilityDriver(self.desktop, [*wrap, self._program()], self.environment,
                                   os.path.join(self.out, "program.log"))

    def run_second_copy(self):
        second = self.desktop.start([self._program()], env=self.environment)
        return second.wait(timeout=60)

    def is_name_held(self):
        # Its standard input is empty, so that it ends at once and frees what it has claimed.
        claim = self.desktop.run(os.path.join(self.binaries, "claim-instance"), MAIN,
                                 env=self.environment)
        return claim.strip() == "refused"

    def say_offline(self):
        with open(self.path("system.ini"), "r+", encoding="utf-8") as file:
            text = file.read().replace("Online=true", "Online=false")
            file.seek(0)
            file.write(text)
            file.truncate()

    def arguments_received(self):
        return self.lines("Received/uninstaller.txt")

    def links(self):
        return self.lines("Received/links.txt")

    def expect_rest(self, page):
        def sleeps():
            before = wake_ups(self.program.process.pid)
            time.sleep(3)
            return wake_ups(self.program.process.pid) == before

        # The framework looks for network interfaces each ten seconds, in two of its threads.
        wait_until(sleeps, PATIENCE, f"three seconds in which no thread wakes up: {page}")
        self.expect(True, f"nothing wakes up the program: {page}")

    def judge_surroundings(self, expected):
        super().judge_surroundings(expected)
        if expected.links:
            self.expect_equal(set(self.lines("Received/links.txt.scale")), {"1"},
                              "the browser inherited the scale that the program had set itself")

    def describe_surroundings(self):
        for switch in self.lines("Received/update-installer.txt"):
            print("Update installer's switch: " + switch)
        print(f"Requests to the local service: {len(self.service.requests())}")
        with open(os.path.join(self.out, "program.log"), encoding="utf-8", errors="replace") as log:
            said = log.read().strip()
        self.expect(not said, "the program printed no warning" + (f": {said}" if said else ""))

    def _program(self):
        return os.path.join(self.binaries, "clipwright-uninstaller-sandbox")
