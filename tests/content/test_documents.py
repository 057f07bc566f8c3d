#!/usr/bin/python3
"""That files, folders and pages which the documents name exist."""

import pathlib
import re
import subprocess
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGES = [*ROOT.glob("*.md"), *ROOT.glob("docs/*.md")]
FOLDERS = {"src", "Resources", "sandbox", "tests", "tools", "packaging", "cmake", "docs", ".ci"}


def exists(name, folder=ROOT):
    return any(folder.glob(name)) if "*" in name else (folder / name).exists()


class Documents(unittest.TestCase):
    def test_named_paths_exist(self):
        for page in PAGES:
            for name in re.findall(r"`([\w.@/*-]+)`", page.read_text(encoding="utf-8")):
                if name.split("/")[0] in FOLDERS and "/" in name and "CODE" not in name:
                    with self.subTest(page=page.name, path=name):
                        self.assertTrue(exists(name))

    def test_links_lead_somewhere(self):
        for page in PAGES:
            for link in re.findall(r"\]\((?!https?:)([^)#]+)", page.read_text(encoding="utf-8")):
                with self.subTest(page=page.name, link=link):
                    self.assertTrue(exists(link, page.parent))

    def test_commands_exist(self):
        listed = subprocess.run([ROOT / "dev"], check=True, stdout=subprocess.PIPE,
                                encoding="utf-8").stdout
        commands = set(re.findall(r"^  ([a-z]+)", listed, re.MULTILINE))
        for page in PAGES:
            for command in re.findall(r"\./dev ([a-z]+)", page.read_text(encoding="utf-8")):
                with self.subTest(page=page.name):
                    self.assertIn(command, commands)

    def test_tests_that_prove_a_claim_exist(self):
        """In docs/security.md, a test's functions follow its name."""
        sources = {file.stem: file.read_text(encoding="utf-8")
                   for file in ROOT.glob("tests/**/test_*.cpp")}
        text = (ROOT / "docs" / "security.md").read_text(encoding="utf-8")
        for test, functions in re.findall(r"`(test_\w+): (\w+`(?:, `[a-z]+[A-Z]\w+`)*)", text):
            for function in re.findall(r"\w+", functions):
                with self.subTest(test=test, function=function):
                    self.assertTrue(f" {function}()" in sources.get(test, ""))


if __name__ == "__main__":
    unittest.main()
