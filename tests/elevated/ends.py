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


class Ends(unittest.TestCase):
    def setUp(self):
        name = self.id().rpartition(".")[2]
        self.program = self.enterContext(WineProgram(BINARIES, os.path.join(OUT, name)))
        shutil.copy(os.path.join(BINARIES, "hanging-data-api.dll"),
                    os.path.join(self.program.folder, "data_api.dll"))

    def run_to_its_end(self, limit, **variables):
        """Starts the program, closes its window and waits; returns its exit code and the seconds
        from the close to the end."""
        process = self.program.start(**variables)
        wait_until(lambda: self.program.desktop.windows(TITLE), PATIENCE, "the window")
        closed = time.monotonic()
        self.program.prefix.run("taskkill", "/im", "clipwright-uninstaller.exe")
        try:
            return process.wait(timeout=limit), time.monotonic() - closed
        except subprocess.TimeoutExpired:
            self.fail(f"it still runs {limit} s after its window was closed")

    def test_detach_that_hangs(self):
        code, _ = self.run_to_its_end(limit=PATIENCE)
        self.assertEqual(code, 0)

    def test_stop_and_detach_that_hang(self):
        code, seconds = self.run_to_its_end(limit=PATIENCE, HANG_IN_STOP="1")
        self.assertEqual(code, 0)
        self.assertGreater(seconds, 7)  # the limit of eight seconds, not a crash, ended it


if __name__ == "__main__":
    BINARIES, OUT = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
