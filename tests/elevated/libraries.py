"""Libraries that others planted do not get into the program: libraries.py BIN OUT"""

import os
import shutil
import sys
import unittest

from tests.elevated.wineprogram import WineProgram, imported
from tests.kit.installation import lines

BINARIES, OUT = "", ""
# What the program and Qt load by name alone: QLibrary looks beside the program first.
ASKED_FOR = ["Shcore.dll", "UIAutomationCore.dll", "qttestability.dll"]


class PlantedLibraries(unittest.TestCase):
    def setUp(self):
        name = self.id().rpartition(".")[2]
        self.program = self.enterContext(WineProgram(BINARIES, os.path.join(OUT, name)))
        self.record = os.path.join(self.program.out, "loaded.txt")

    def plant(self, folder, names):
        os.makedirs(folder, exist_ok=True)
        for name in names:
            shutil.copy(os.path.join(BINARIES, "planted-library.dll"), os.path.join(folder, name))

    def loaded(self, *arguments, **options):
        """Starts the program and returns which planted libraries were loaded before its window."""
        process = self.program.start(*arguments, PLANTED_RECORD="Z:" + self.record, **options)
        self.program.wait_for_event("UninstallPopUp")
        self.program.end(process)
        return lines(self.record)

    def test_that_the_test_sees_them(self):
        self.plant(self.program.folder, ["any.dll"])
        self.program.prefix.environment["PLANTED_RECORD"] = "Z:" + self.record
        self.program.prefix.run("rundll32", "Z:" + os.path.join(self.program.folder, "any.dll,x"))
        self.assertTrue(os.path.exists(self.record))

    def test_not_from_path(self):
        folder = os.path.join(self.program.out, "path")
        self.plant(folder, ASKED_FOR)
        self.assertEqual(self.loaded(WINEPATH="Z:" + folder, WINEQT_LOAD_TESTABILITY="1"), [])
        self.assertEqual(self.loaded("-testability", WINEPATH="Z:" + folder), [])

    def test_not_from_the_current_folder(self):
        folder = os.path.join(self.program.out, "current")
        self.plant(folder, [*ASKED_FOR, *imported(BINARIES, "clipwright-uninstaller.exe")])
        self.assertEqual(self.loaded("-testability", folder=folder), [])

    def test_not_from_beside_the_program(self):
        self.plant(self.program.folder,
                   [*ASKED_FOR, *imported(BINARIES, "clipwright-uninstaller.exe")])
        self.assertEqual(self.loaded("-testability"), [])


if __name__ == "__main__":
    BINARIES, OUT = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
