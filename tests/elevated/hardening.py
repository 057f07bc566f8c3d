"""Programs that lack a protection are not packed: hardening.py BIN OUT"""

import os
import shutil
import subprocess
import sys
import unittest

import pefile

from tests.kit.folders import ROOT, make_afresh

CHECK = os.path.join(ROOT, "packaging", "windows", "hardening.py")
BINARIES, OUT = "", ""
PROGRAM = "clipwright-uninstaller.exe"


def complaints(program):
    return subprocess.run(["/usr/bin/python3", CHECK, program], check=False,
                          stdout=subprocess.PIPE, encoding="utf-8").stdout


class Hardening(unittest.TestCase):
    def weakened(self, weaken):
        """What is said of a program after weaken(image)."""
        copy = os.path.join(OUT, "weak.exe")
        image = pefile.PE(os.path.join(BINARIES, PROGRAM), fast_load=True)
        weaken(image)
        image.write(copy)
        return complaints(copy)

    def test_the_program_lacks_nothing(self):
        self.assertEqual(complaints(os.path.join(BINARIES, PROGRAM)), "")

    def test_each_flag(self):
        for flag, text in (("DYNAMIC_BASE", "is not random\n"), ("NX_COMPAT", "be executed"),
                           ("HIGH_ENTROPY_VA", "random over 64 bits")):
            with self.subTest(flag):
                bit = pefile.DLL_CHARACTERISTICS["IMAGE_DLLCHARACTERISTICS_" + flag]

                def clear(image):
                    image.OPTIONAL_HEADER.DllCharacteristics &= ~bit

                self.assertIn(text, self.weakened(clear))

    def test_relocations(self):
        def remove(image):
            image.OPTIONAL_HEADER.DATA_DIRECTORY[5].Size = 0

        self.assertIn("relocations", self.weakened(remove))

    def test_function_table(self):
        def table(image):
            return image.OPTIONAL_HEADER.DATA_DIRECTORY[3]

        def empty_the_last(image):
            image.set_bytes_at_rva(table(image).VirtualAddress + table(image).Size - 12, bytes(8))

        def take_a_handler(image):
            data = image.get_memory_mapped_image()
            first = table(image).VirtualAddress
            for entry in range(first, first + table(image).Size, 12):
                unwind = int.from_bytes(data[entry + 8:entry + 12], "little")
                if data[entry:entry + 8] != bytes(8) and data[unwind] >> 3 & 3:
                    codes = data[unwind + 2]
                    image.set_bytes_at_rva(unwind + 4 + 2 * (codes + codes % 2), bytes(4))
                    return

        for weaken in (empty_the_last, take_a_handler):
            self.assertIn("table of functions", self.weakened(weaken))

    def test_sections(self):
        def make_writable(image):
            image.sections[0].Characteristics |= pefile.SECTION_CHARACTERISTICS[
                "IMAGE_SCN_MEM_WRITE"]

        self.assertIn(".text can be written and executed", self.weakened(make_writable))

    def test_guards(self):
        for guard, text in ((b"*** stack smashing", "stack is not"),
                            (b"*** buffer overflow", "functions are not")):
            with self.subTest(text):
                copy = shutil.copy(os.path.join(BINARIES, PROGRAM), os.path.join(OUT, "weak.exe"))
                with open(copy, "r+b") as file:
                    content = file.read().replace(guard, b"-" * len(guard))
                    file.seek(0)
                    file.write(content)
                self.assertIn(text, complaints(copy))


if __name__ == "__main__":
    BINARIES, OUT = sys.argv[1:]
    make_afresh(OUT)
    unittest.main(argv=sys.argv[:1])
