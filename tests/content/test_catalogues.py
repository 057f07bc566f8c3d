#!/usr/bin/python3
"""The translation catalogues: whole, in step with the sources, and in the language they claim.
The glossary for translators says what they say."""

import collections
import json
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

RESOURCES = pathlib.Path(__file__).resolve().parents[2] / "Resources"
CODES = "ar de en es fr id it ja ko nl pl pt ro ru sv zh".split()
RIGHT_TO_LEFT = {"ar"}

# Names, and the forms' placeholders, which are never shown.
SAME_IN_EVERY_LANGUAGE = {"Norvane", "OK", "TextLabel", "PushButton", "OptionPage", "ProductItem",
                          "ProductPage", "UninstallPage", "UpgradePage", "QT_LAYOUT_DIRECTION"}

# Simplified Chinese is told by letters that Big5, the old code of Traditional Chinese, does not
# have, and by these, which it has for words that no text of this program needs.
SIMPLIFIED = set("与丰云价优体儿厂听圣坏复岭异怀怜惊愿扑扰挂机极构柜气洁离网苹荐触赶适么后几万于宁")


def catalogue(code):
    return RESOURCES / "lang" / f"kuninstaller_{code}.ts"


def messages(file):
    """Context, source text and translation element of every entry, in order."""
    for context in ElementTree.parse(file).getroot().iter("context"):
        for message in context.iter("message"):
            yield context.findtext("name"), message.findtext("source"), message.find("translation")


def placeholders(text):
    return sorted(re.findall(r"%L?\d+|%n", text))


def simplified(text):
    """The Chinese letters of a text that Traditional Chinese would not use."""
    return {letter for letter in text
            if letter in SIMPLIFIED or "\u4e00" <= letter <= "\u9fff" and not in_big5(letter)}


def in_big5(letter):
    try:
        return bool(letter.encode("cp950"))
    except UnicodeEncodeError:
        return False


class Catalogues(unittest.TestCase):
    def assert_none(self, is_wrong):
        """No entry of any catalogue for which is_wrong(code, source, translation, state)."""
        wrong = []
        for code in CODES:
            for context, source, element in messages(catalogue(code)):
                text = element.text or ""
                if is_wrong(code, source, text, element.get("type")):
                    wrong.append((code, context, source, text))
        self.assertEqual(wrong, [])

    def test_there_is_one_for_each_language(self):
        self.assertEqual(sorted(file.name for file in (RESOURCES / "lang").glob("*.ts")),
                         [catalogue(code).name for code in CODES])
        for code in CODES:
            language = ElementTree.parse(catalogue(code)).getroot().get("language")
            self.assertEqual(language, "zh_TW" if code == "zh" else code)

    def test_every_text_is_translated(self):
        self.assert_none(lambda code, source, text, state: state or not text.strip())

    def test_no_text_is_there_twice(self):
        for code in CODES:
            keys = collections.Counter(
                (context, source) for context, source, _ in messages(catalogue(code)))
            self.assertEqual([key for key, count in keys.items() if count > 1], [], code)

    def test_placeholders_are_kept(self):
        self.assert_none(
            lambda code, source, text, state: placeholders(text) != placeholders(source))

    def test_nothing_is_left_in_english(self):
        self.assert_none(
            lambda code, source, text, state: text == source and code != "en"
            and source not in SAME_IN_EVERY_LANGUAGE)

    def test_no_space_around_a_text(self):
        self.assert_none(lambda code, source, text, state: text != text.strip())

    def test_direction_of_writing(self):
        self.assert_none(
            lambda code, source, text, state: source == "QT_LAYOUT_DIRECTION"
            and text != ("RTL" if code in RIGHT_TO_LEFT else "LTR"))

    def test_catalogues_hold_the_texts_of_the_sources(self):
        with tempfile.TemporaryDirectory() as folder:
            fresh = pathlib.Path(folder) / "fresh.ts"
            subprocess.run([RESOURCES / "lang" / "update", fresh], timeout=60, check=True)
            wanted = {(context, source) for context, source, _ in messages(fresh)}
        self.assertGreater(len(wanted), 50)
        for code in CODES:
            held = {(context, source) for context, source, _ in messages(catalogue(code))}
            self.assertEqual(wanted - held, set(), f"missing in {code}")
            self.assertEqual(held - wanted, set(), f"in no source, but in {code}")


class Glossary(unittest.TestCase):
    def test_terms_are_those_of_the_catalogues(self):
        """Each term occurs in its language's catalogue, its last letters inflected or not."""
        text = (RESOURCES.parent / "docs" / "translating.md").read_text(encoding="utf-8")
        glossary = text[text.index("## Glossary"):]
        rows = re.findall(r"^\| `(\w+)` \| (.*) \|$", glossary, re.MULTILINE)
        self.assertEqual([code for code, _ in rows], CODES + CODES)
        for code, row in rows:
            texts = " ".join(element.text for _, _, element in messages(catalogue(code))).lower()
            unknown = [term for term in row.split(" | ")
                       if term.lower()[:max(2, len(term) - 3)] not in texts]
            self.assertEqual(unknown, [], code)


class TraditionalChinese(unittest.TestCase):
    def test_simplified_letters_are_told_apart(self):
        self.assertEqual(simplified("正在解除安裝，請稍候…"), set())
        self.assertEqual(simplified("正在卸载，请稍候"), set("载请"))
        self.assertEqual(simplified("机个关体"), set("机个关体"))

    def test_catalogue(self):
        for _, _, translation in messages(catalogue("zh")):
            self.assertEqual(simplified(translation.text), set(), translation.text)

    def test_document(self):
        text = (RESOURCES / "cfg" / "tw.cfg").read_text(encoding="utf-8")
        self.assertEqual(simplified(json.dumps(json.loads(text), ensure_ascii=False)), set())


if __name__ == "__main__":
    sys.exit(unittest.main())
