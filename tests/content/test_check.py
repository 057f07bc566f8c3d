#!/usr/bin/python3
"""The check that content editors run: a good document passes, and each mistake is named with its
line, its place and what comes of it."""

import copy
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

import jsonschema
from PIL import Image

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "Resources" / "cfg"
ENGLISH = json.loads((FOLDER / "en.cfg").read_text(encoding="utf-8"))
GONE = object()


def changed(*changes):
    """The English document with values replaced, removed or added at their paths."""
    document = copy.deepcopy(ENGLISH)
    for path, value in changes:
        *way, last = path
        place = document
        for step in way:
            place = place[step]
        if value is GONE:
            del place[last]
        elif isinstance(place, list) and last == len(place):
            place.append(value)
        else:
            place[last] = value
    return document


def option(index, key):
    return ("problem_type", "list", index, key)


def product(category, index, key):
    return ("apps", category, "list", index, key)


HEAD, JUMP, SUBMIT, UPGRADE, PLAIN = 0, 1, 2, 3, 6
OPTIONS = ENGLISH["problem_type"]["list"]

# What is wrong, the changes that make it so, and what the check says about it.
ERRORS = [
    ("no options", [(("problem_type", "list"), [])],
     "problem_type.list is empty: a document without options is thrown away"),
    ("no problem_type", [(("problem_type",), GONE)],
     "problem_type is missing. The first page: its question and the reasons."),
    ("no apps", [(("apps",), GONE)], "apps is missing."),
    ("no recommended", [(("recommended",), GONE)], "recommended is missing."),
    ("list is an object", [(("recommended", "list"), {})],
     "recommended.list must be a list in brackets"),
    ("option is a text", [(("problem_type", "list", 4), "Other")],
     'problem_type.list[4] must be an object in braces (found "Other")'),
    ("another product's document", [(("pid",), 847)], "pid must be 846"),

    ("no title", [(option(PLAIN, "title"), GONE)],
     "problem_type.list[6].title is missing. The question"),
    ("blank title", [(option(PLAIN, "title"), " ")], 'problem_type.list[6].title is empty'),
    ("title is a number", [(option(PLAIN, "title"), 7)],
     "problem_type.list[6].title must be a text in quotes (found 7)"),
    ("markup", [(option(PLAIN, "banner_title"), "<b>Thanks</b>")],
     "problem_type.list[6].banner_title holds markup"),
    ("entity", [(product(0, 0, "desc"), "Charts &amp; maps")],
     "apps[0].list[0].desc holds markup"),

    ("no value", [(option(PLAIN, "value"), GONE)], "problem_type.list[6].value is missing."),
    ("value in quotes", [(option(PLAIN, "value"), "62")],
     "problem_type.list[6].value must be a whole number from 0"),
    ("value is negative", [(option(PLAIN, "value"), -1)],
     "problem_type.list[6].value must be a whole number from 0"),
    ("value is too large", [(option(PLAIN, "value"), 2 ** 31)],
     "problem_type.list[6].value must be a whole number from 0"),
    ("value twice", [(option(PLAIN, "value"), 57)],
     "problem_type.list[6].value repeats that of problem_type.list[1]"),

    ("extend is an object", [(option(SUBMIT, "extend"), {"option_type": "submit"})],
     "problem_type.list[2].extend must be a text that holds JSON"),
    ("extend is no JSON", [(option(SUBMIT, "extend"), "submit")],
     "problem_type.list[2].extend must be empty or a text that holds a JSON object"),
    ("extend is a list", [(option(SUBMIT, "extend"), "[]")],
     "problem_type.list[2].extend must be empty or a text that holds a JSON object"),
    ("unknown role", [(option(SUBMIT, "extend"), '{"option_type":"Submit"}')],
     'is no role, so this is a plain reason; the roles are homepage, submit, upgrade and jump '
     '(found "Submit")'),
    ("link in extend", [(option(JUMP, "extend"),
                         '{"option_type":"jump","url":"https://www.norvane.example/"}')],
     "is never opened; a jump option's link is its banner_click_url"),
    ("no question", [(option(HEAD, "extend"), "")],
     "problem_type.list has no option with the role homepage"),
    ("two questions", [(option(PLAIN, "extend"), '{"option_type":"homepage"}')],
     "problem_type.list[6].extend is a second homepage option"),
    ("nothing to choose", [(("problem_type", "list"), OPTIONS[:1])],
     "problem_type.list has no reason to choose"),

    ("upgrade without a caption", [(option(UPGRADE, "button_name"), "")],
     "problem_type.list[3].button_name is empty"),
    ("jump without a caption", [(option(JUMP, "button_name"), GONE)],
     "problem_type.list[1].button_name is missing. Without it the button"),
    ("caption without a button", [(option(PLAIN, "button_name"), "Stay")],
     "problem_type.list[6].button_name is never shown"),
    ("link without a button", [(option(UPGRADE, "banner_click_url"), "https://norvane.example/")],
     "problem_type.list[3].banner_click_url is never opened"),
    ("script for a link", [(option(JUMP, "banner_click_url"), "javascript:alert(1)")],
     "problem_type.list[1].banner_click_url must be empty or an https link"),
    ("digit after the product id",
     [(option(JUMP, "banner_click_url"), "https://www.norvane.example/?pid=%12")],
     "problem_type.list[1].banner_click_url must be empty or an https link"),
    ("file for a link", [(product(0, 0, "url"), "file:///C:/setup.exe")],
     'apps[0].list[0].url must be an https link (found "file:///C:/setup.exe")'),
    ("link without https", [(product(0, 0, "url"), "http://www.norvane.example/")],
     "apps[0].list[0].url must be an https link"),
    ("link without a host", [(product(0, 0, "url"), "https:///huelark")],
     "apps[0].list[0].url must be an https link"),
    ("product id in a product's link",
     [(product(0, 0, "url"), "https://norvane.example/?pid=%1&m=a")],
     "apps[0].list[0].url is opened as it stands"),

    ("picture with a query", [(option(PLAIN, "banner_url"), "https://norvane.example/a.png?v=2")],
     "problem_type.list[6].banner_url must be an https link that ends in .png"),
    ("picture without a suffix", [(product(0, 0, "icon"), "https://norvane.example/icon")],
     "apps[0].list[0].icon must be an https link that ends in .png"),
    ("picture of a wrong format", [(product(0, 0, "icon"), "https://norvane.example/icon.webp")],
     "apps[0].list[0].icon must be an https link that ends in .png"),

    ("unknown category", [(("apps", 2, "key"), "utility")],
     "apps[2].key is no tab's key"),
    ("empty tab", [(("apps", 2, "list"), [])], "apps has no products for the tab utilities"),
    ("no pid", [(product(0, 0, "pid"), GONE)], "apps[0].list[0].pid is missing."),
    ("pid of another product", [(product(0, 1, "pid"), 912)],
     "apps[0].list[1].pid is also that of apps[0].list[0], but the two differ in name and icon and "
     "url"),
    ("product twice in a tab", [(("apps", 0, "list", 7), ENGLISH["apps"][0]["list"][0])],
     "apps[0].list[7] repeats apps[0].list[0]"),
    ("recommended but not in apps", [(("recommended", "list", 0, "pid"), 5)],
     "recommended.list[0].pid is no product of apps"),
    ("recommended under another name", [(("recommended", "list", 0, "name"), "Scrovan")],
     'recommended.list[0].name differs from that of apps[0].list[4]'),
    ("recommended with another icon",
     [(("recommended", "list", 0, "icon"), "https://norvane.example/icon.jpg")],
     "recommended.list[0].icon differs from that of apps[0].list[4]"),
]

NOTES = [
    ("misspelt key", [(("problem_type", "list", 6, "plaecholder"), ""),
                      (option(PLAIN, "placeholder"), GONE)],
     "problem_type.list[6].plaecholder is a key that the program does not know; is placeholder "
     "meant?"),
    ("unknown key", [(("campaign",), "spring")],
     "campaign is a key that the program does not know"),
    ("long caption", [(option(JUMP, "button_name"), "Get thirty per cent off")],
     "problem_type.list[1].button_name is too long for its place: 23 columns, about 20 fit"),
    ("long caption in wide letters", [(option(JUMP, "button_name"), "高" * 11)],
     "problem_type.list[1].button_name is too long for its place: 22 columns, about 20 fit"),
    ("long banner", [(option(JUMP, "banner_title"), "Hello" + "\n" * 12)],
     "problem_type.list[1].banner_title is too long for its place: 13 lines"),
]

# Documents that are unusual but lose nothing.
GOOD = [
    ("named schema", [(("$schema",), "https://norvane.example/schema.json")]),
    ("as shipped", []),
    ("product in two tabs", [(("apps", 1, "list", 6), ENGLISH["apps"][0]["list"][0])]),
    ("category in two pieces", [(("apps", 3), {"key": "utilities", "list": []})]),
    ("only what is read", [(("pid",), GONE), (option(PLAIN, "sort"), GONE),
                           (option(PLAIN, "type"), GONE), (option(PLAIN, "placeholder"), GONE),
                           (option(PLAIN, "button_name"), GONE), (option(PLAIN, "extend"), GONE),
                           (option(JUMP, "banner_click_url"), GONE), (("apps", 0, "name"), GONE)]),
    ("spaces in another letter", [(product(0, 0, "url"), "https://norvane.example/a%20b?q=%1F")]),
]


class Check(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def check(self, content, *options, name="news.cfg"):
        """Exit code and output for a document, or for bytes as they are."""
        file = self.folder / name
        if not isinstance(content, bytes):
            content = json.dumps(content, ensure_ascii=False, indent=4).encode()
        file.write_bytes(content)
        run = subprocess.run([FOLDER / "check", *options, file], text=True, timeout=30,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertNotIn("Traceback", run.stdout)
        return run.returncode, run.stdout.replace(f"{self.folder}/", "")

    def test_schema_is_one(self):
        schema = json.loads((FOLDER / "schema.json").read_text(encoding="utf-8"))
        jsonschema.Draft202012Validator.check_schema(schema)

    def check_all(self, cases):
        """Exit code, last line and each case's messages, from one run over all of them."""
        files = [self.folder / f"{number}.cfg" for number in range(len(cases))]
        for file, case in zip(files, cases):
            file.write_text(json.dumps(changed(*case[1]), indent=4), encoding="utf-8")
        run = subprocess.run([FOLDER / "check", *files], text=True, timeout=60,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        *lines, summary = run.stdout.splitlines()
        return run.returncode, summary, [
            "\n".join(line for line in lines if line.startswith(f"{file}:")) for file in files]

    def test_errors(self):
        code, summary, outputs = self.check_all(ERRORS)
        for (title, _, message), output in zip(ERRORS, outputs):
            with self.subTest(title):
                self.assertIn(message, output)
                self.assertNotIn("(note)", output)
        self.assertEqual((code, summary), (1, f"0 of {len(ERRORS)} documents are in order"))

    def test_notes(self):
        code, summary, outputs = self.check_all(NOTES)
        for (title, _, message), output in zip(NOTES, outputs):
            with self.subTest(title):
                self.assertIn(message, output)
                self.assertIn("(note)", output)
        self.assertEqual((code, summary),
                         (0, f"{len(NOTES)} of {len(NOTES)} documents are in order"))

    def test_good_documents(self):
        code, summary, outputs = self.check_all(GOOD)
        for (title, _), output in zip(GOOD, outputs):
            with self.subTest(title):
                self.assertEqual(output, "")
        self.assertEqual((code, summary),
                         (0, f"{len(GOOD)} of {len(GOOD)} documents are in order"))

    def test_one_mistake_is_reported_once(self):
        code, output = self.check(changed((option(PLAIN, "value"), "62")))
        self.assertEqual((code, len(output.splitlines())), (1, 2), output)

    def test_line_of_a_value(self):
        text = json.dumps(changed((product(1, 2, "url"), "ftp://x")), indent=4)
        line = next(n for n, row in enumerate(text.splitlines(), 1) if "ftp://x" in row)
        self.assertIn(f"news.cfg:{line}: apps[1].list[2].url must be", self.check(text.encode())[1])

    def test_line_of_a_missing_value_is_that_of_its_object(self):
        text = b'{\n\t"apps": [],\n\t"problem_type":\n\t{\n\t},\n\t"recommended": {"list": []}\n}'
        self.assertIn("news.cfg:3: problem_type.list is missing", self.check(text)[1])

    def test_key_given_twice(self):
        text = (FOLDER / "en.cfg").read_text(encoding="utf-8")
        text = text.replace('"sort": 3,', '"sort": 3,\n"title": "{\\"[,:", ', 1)
        line = next(n for n, row in enumerate(text.splitlines(), 1) if '"{\\"[,:"' in row)
        code, output = self.check(text.encode())
        self.assertIn(f"news.cfg:{line}: problem_type.list[2].title is given twice", output)
        self.assertEqual(code, 1)

    def test_what_is_not_json(self):
        for content, message in [
                (b'{\n    "apps": [],\n    "pid": 846,,\n}',
                 "news.cfg:3: the document is not JSON"),
                (b'{\n"pid": NaN}', "NaN is not JSON"),
                (b"", "news.cfg:1: the document is not JSON"),
                (b'{\n"name": "\xe4"}', "news.cfg:2: the document is not UTF-8 text"),
                (b"[" * 100000, "the document is not JSON"),
                (b"[]", "the document must be an object in braces"),
                (b"null", "the document must be an object in braces")]:
            with self.subTest(message):
                code, output = self.check(content)
                self.assertIn(message, output)
                self.assertEqual(code, 1)

    def test_byte_order_mark_is_allowed(self):
        self.assertEqual(self.check(b"\xef\xbb\xbf" + json.dumps(ENGLISH).encode())[0], 0)

    def test_missing_file(self):
        run = subprocess.run([FOLDER / "check", self.folder / "none.cfg"], text=True, timeout=30,
                             capture_output=True, check=False)
        self.assertIn("cannot be read: No such file or directory", run.stdout)
        self.assertEqual(run.returncode, 1)

    def test_one_bad_file_among_good_ones(self):
        bad = self.folder / "bad.cfg"
        bad.write_text("{}", encoding="utf-8")
        run = subprocess.run([FOLDER / "check", FOLDER / "de.cfg", bad, FOLDER / "en.cfg"],
                             text=True, timeout=30, capture_output=True, check=False)
        self.assertIn("2 of 3 documents are in order", run.stdout)
        self.assertEqual(run.returncode, 1)

    def check_banner(self, colour, size=(272, 480), light_word_at=None):
        """Exit code and output for a banner of one colour, perhaps with one white patch."""
        picture = Image.new("RGB", size, colour)
        if light_word_at:
            picture.paste("white", (*light_word_at, light_word_at[0] + 28, light_word_at[1] + 28))
        picture.save(self.folder / "banner.png")
        run = subprocess.run([FOLDER / "check", "--banner", self.folder / "banner.png"], text=True,
                             timeout=30, capture_output=True, check=False)
        return run.returncode, run.stdout

    def test_banner_is_dark_enough_for_white_text(self):
        self.assertEqual(self.check_banner("#4336c9"), (0, ""))
        self.assertEqual(self.check_banner("#767676"), (0, ""))  # 4.54 : 1
        code, output = self.check_banner("#787878")
        self.assertIn("banner.png:1: the picture is too light for the white text on it: its upper "
                      "two thirds need a contrast of 4.5 : 1 (found 4.4 : 1)", output)
        self.assertEqual(code, 1)
        self.assertIn("found 1.0 : 1", self.check_banner("black", light_word_at=(24, 40))[1])
        self.assertIn("found 1.0 : 1", self.check_banner("black", light_word_at=(220, 292))[1])
        for outside in ((24, 320), (24, 12), (248, 40)):
            self.assertEqual(self.check_banner("black", light_word_at=outside)[0], 0, outside)

    def test_banner_of_another_shape_is_noted(self):
        code, output = self.check_banner("black", (272, 500))
        self.assertIn("is stretched: its place is 272 to 480 (found 272 to 500) (note)", output)
        self.assertEqual(code, 0)
        self.assertEqual(self.check_banner("black", (545, 960)), (0, ""))

    def test_banner_that_is_no_picture(self):
        run = subprocess.run([FOLDER / "check", "--banner", FOLDER / "en.cfg"], text=True,
                             timeout=30, capture_output=True, check=False)
        self.assertIn("the picture cannot be read", run.stdout)
        self.assertEqual(run.returncode, 1)

    def test_built_in_banner_is_in_order(self):
        for picture in (FOLDER.parent / "light").glob("Option*.png"):
            run = subprocess.run([FOLDER / "check", "--banner", picture], text=True, timeout=30,
                                 capture_output=True, check=False)
            self.assertEqual((run.returncode, run.stdout), (0, ""), picture)

    def test_built_in_documents_are_held_to_more(self):
        (self.folder / "en.cfg").write_text(json.dumps(ENGLISH), encoding="utf-8")
        german = json.loads((FOLDER / "de.cfg").read_text(encoding="utf-8"))
        self.assertEqual(self.check(german, "--built-in", name="de.cfg")[0], 0)

        def without_an_option(document):
            del document["problem_type"]["list"][5]

        def with_one_more(document):
            document["apps"][0]["list"].append(
                dict(document["apps"][0]["list"][0], pid=1, name="Quillum"))

        def with_an_unknown_key(document):
            document["problem_type"]["list"][1]["campaign"] = "spring"

        def with_an_english_text(document):
            document["problem_type"]["list"][1]["title"] = OPTIONS[1]["title"]

        def with_another_link(document):
            document["apps"][0]["list"][0]["url"] = "https://www.norvane.example/"

        def with_a_long_caption(document):
            document["problem_type"]["list"][1]["button_name"] = "30 Prozent Rabatt sichern"

        for change, message in [
                (without_an_option, "problem_type.list[8].title is missing; the English document"),
                (with_one_more, "apps[0].list[7].pid is not in the English document"),
                (with_an_unknown_key, "has keys that built-in documents do not have: campaign"),
                (with_an_english_text, "problem_type.list[1].title is still English"),
                (with_another_link, "apps[0].list[0].url differs from the English document"),
                (with_a_long_caption, "problem_type.list[1].button_name is too long")]:
            with self.subTest(message):
                document = copy.deepcopy(german)
                change(document)
                code, output = self.check(document, "--built-in", name="de.cfg")
                self.assertIn(message, output)
                self.assertEqual(code, 1)


if __name__ == "__main__":
    sys.exit(unittest.main())
