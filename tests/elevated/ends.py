"""The program ends although its analytics library hangs: ends.py BIN OUT"""

import os
import shutil
import subprocess
import sys
import time
import unittest

from tests.elevated.wineprogram import WineProgram
from tests.kit.desktop import PATIENCE, wait_until

BINARIES, OUT = "", ""
TITLE = "Norvane Clipwright Uninstaller"
LIMIT = 8  # seconds that the program gives its libraries
MARGIN = 12  # for Wine to end a process, which beside builds has taken 7.6


class Ends(unittest.TestCase):
    def setUp(self):
        name = self.id().rpartition(".")[2]
        self.program = self.enterContext(WineProgram(BINARIES, os.path.join(OUT, name)))
        shutil.copy(os.path.join(BINARIES, "hanging-data-api.dll"),
                    os.path.join(self.program.folder, "data_api.dll"))

    def run_to_its_end(self, **variables):
        """Starts the program, closes its window and waits; returns its exit code and the seconds
        to the end, from before and from after the close."""
        process = self.program.start(**variables)
        wait_until(lambda: self.program.desktop.windows(TITLE), PATIENCE, "the window")
        before = time.monotonic()
        self.program.prefix.run("taskkill", "/im", "clipwright-uninstaller.exe")
        after = time.monotonic()
        try:
            code = process.wait(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            self.fail("it does not end")
        return code, time.monotonic() - before, time.monotonic() - after

    def test_detach_that_hangs(self):
        code, _, seconds = self.run_to_its_end()
        self.assertEqual(code, 0)
        self.assertLess(seconds, LIMIT + MARGIN)

    def test_stop_and_detach_that_hang(self):
        code, since_before, since_after = self.run_to_its_end(HANG_IN_STOP="1")
        self.assertEqual(code, 0)
        self.assertGreater(since_before, LIMIT)  # which ended it, not a crash
        self.assertLess(since_after, LIMIT + MARGIN)


if __name__ == "__main__":
    BINARIES, OUT = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
