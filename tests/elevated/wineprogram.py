"""The Windows program in a folder and a Wine prefix of its own, for tests of what it must withstand
because it runs with an administrator's rights."""

import contextlib
import json
import os
import shutil
import subprocess

from tests.kit.desktop import PATIENCE, Desktop, wait_until
from tests.kit.folders import make_afresh
from tests.kit.installation import RECORD, lines
from tests.kit.wine import Prefix

MAKERS_LIBRARIES = ("data_api.dll", "nvUpgrade.dll")


class WineProgram:
    """Between entry and exit there are a desktop, a prefix and the installed program."""

    def __init__(self, binaries, out, program="clipwright-uninstaller.exe"):
        self.out = make_afresh(out)
        self.folder = os.path.join(self.out, "Uninstaller")
        self._path = os.path.join(self.folder, program)
        self._entered = contextlib.ExitStack()
        self.desktop = self.prefix = None
        os.mkdir(self.folder)
        for file in (program, *MAKERS_LIBRARIES):
            shutil.copy(os.path.join(binaries, file), self.folder)

    def __enter__(self):
        with self._entered:
            self.desktop = self._entered.enter_context(Desktop(extent=Desktop.BARE))
            self.prefix = self._entered.enter_context(
                Prefix(os.path.join(self.out, "prefix"), self.desktop.environment))
            self._entered = self._entered.pop_all()
        return self

    def __exit__(self, *exception):
        self._entered.close()

    def start(self, *arguments, folder=None, **variables):
        with open(os.path.join(self.out, "program.log"), "wb") as log:
            return self.desktop.start(["wine", self._path, *arguments], stdout=log, stderr=log,
                                      cwd=folder, env={**self.prefix.environment, **variables})

    def calls(self):
        """What the analytics library was told, in order."""
        root = os.path.dirname(self.prefix.variable("TEMP"))
        return [json.loads(line) for line in lines(os.path.join(root, RECORD))]

    def wait_for_event(self, action):
        wait_until(lambda: any(call.get("action") == action for call in self.calls()), PATIENCE,
                   f"the event {action}", interval=0.5)

    def end(self, process):
        """Kills the program and forgets its session."""
        self.prefix.end_session()
        process.wait(timeout=PATIENCE)
        shutil.rmtree(os.path.join(self.prefix.variable("TEMP"), "Norvane Clipwright Uninstaller"),
                      ignore_errors=True)


def imported(binaries, program):
    """The names of the libraries that a program imports, but not the maker's."""
    listing = subprocess.run(["x86_64-w64-mingw32-objdump", "-p",
                              os.path.join(binaries, program)],
                             check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    names = {line.split()[-1] for line in listing.splitlines() if "DLL Name:" in line}
    return names.difference(MAKERS_LIBRARIES)
