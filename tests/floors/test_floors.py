"""That a link or an #include to the same floor or a higher one is refused, by name, in a small
project of three floors: test_floors.py CMAKE"""

import pathlib
import subprocess
import sys
import tempfile
import unittest

CMAKE_FOLDER = pathlib.Path(__file__).resolve().parents[2] / "cmake"
PROJECT = """
cmake_minimum_required(VERSION 3.25)
project(Floors LANGUAGES CXX)
include({cmake_folder}/Floors.cmake)
add_library(clipwright_flags INTERFACE)
add_subdirectory(src)
"""


class Floors(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.links = {"low": "", "left": "LINKS low", "right": "PRIVATE_LINKS low",
                      "high": "LINKS left"}
        self.floors = {"low": 0, "left": 1, "right": 1, "high": 2}
        self.includes = {"low": "", "left": "low/low.h", "right": "low/low.h",
                         "high": "left/left.h"}
        self.more = ""

    def configure(self):
        """The configuration's exit code and what it said."""
        self.write("CMakeLists.txt", PROJECT.format(cmake_folder=CMAKE_FOLDER))
        # The lowest first: when it is read, the targets above it do not exist yet.
        self.write("src/CMakeLists.txt",
                   "".join(f"add_subdirectory({name})\n" for name in self.floors) + self.more)
        for name, floor in self.floors.items():
            include = f'#include "{self.includes[name]}"\n' if self.includes[name] else ""
            self.write(f"src/{name}/{name}.h", include)
            self.write(f"src/{name}/{name}.cpp", f'#include "{name}/{name}.h"\n')
            self.write(f"src/{name}/CMakeLists.txt", f"clipwright_floor({name} FLOOR {floor} "
                                                     f"SOURCES {name}.cpp {self.links[name]})\n")
        return self.run_command(COMMAND, "-S", self.root, "-B", self.root / "build", "-G", "Ninja")

    def check_includes(self):
        self.assertEqual(self.configure()[0], 0)
        return self.run_command(sys.executable, CMAKE_FOLDER / "check_includes.py",
                                self.root / "build/floors.json", self.root / "src")

    def write(self, name, text):
        file = self.root / name
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    @staticmethod
    def run_command(*command):
        done = subprocess.run(command, check=False, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, encoding="utf-8")
        return done.returncode, " ".join(done.stdout.split())

    def assert_link_refused(self, sentence):
        code, output = self.configure()
        self.assertNotEqual(code, 0)
        self.assertIn(sentence, output)

    def test_downward_links_and_includes_pass(self):
        self.assertEqual(self.check_includes()[0], 0)

    def test_upward_link_is_refused(self):
        self.links["low"] = "PRIVATE_LINKS high"
        self.assert_link_refused("low (floor 0) must not link to high (floor 2)")

    def test_link_to_the_same_floor_is_refused(self):
        self.links["left"] = "LINKS right"
        self.assert_link_refused("left (floor 1) must not link to right (floor 1)")

    def test_link_added_elsewhere_is_refused(self):
        self.more = "target_link_libraries(low PRIVATE left)\n"
        self.assert_link_refused("low (floor 0) must not link to left (floor 1)")

    def test_includes_that_no_link_allows_are_refused(self):
        for source, header in (("low", "high"), ("left", "right"), ("high", "low")):
            with self.subTest(source):
                self.includes[source] = f"{header}/{header}.h"
                code, output = self.check_includes()
                self.assertEqual(code, 1)
                self.assertIn(
                    f"{source}/{source}.h: {source} must not include {header}/{header}.h "
                    f"of {header}",
                    output)


if __name__ == "__main__":
    COMMAND = sys.argv.pop(1)
    unittest.main()
