"""The page that shows editors their document, as a real browser lays it out: changed texts, marks
on what does not fit, missing pictures."""

import contextlib
import html
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import time
import unittest

from tests.kit.folders import ROOT
from tests.kit.processes import Processes
from tests.kit.service import Service
from tools.publish.publish import pictures_of

BINARIES = os.path.abspath(sys.argv.pop()) if __name__ == "__main__" else None
ENGLISH = json.loads(pathlib.Path(ROOT, "Resources/cfg/en.cfg").read_text(encoding="utf-8"))
PICTURES = os.path.join(ROOT, "sandbox", "service", "images")
LINK = "https://images.norvane.example/"
QUESTION = "Why do you leave us?"
LONG = "I only needed it for one project, which is done, and the next one is made with other means"

# Tells in the page what the browser shows of it.
PROBE = """<script>addEventListener("load", () => {
  const text = node => node ? node.innerText : "";
  const place = (node, origin) => {
    const at = node.getBoundingClientRect(), from = origin.getBoundingClientRect();
    return [at.left - from.left, at.top - from.top, at.width, at.height];
  };
  const figures = [...document.querySelectorAll("figure")].map(figure => {
    const picture = figure.querySelector("img");
    return {
      title: text(figure.querySelector("figcaption")), says: text(figure.querySelector("ul")),
      size: [picture.naturalWidth, picture.naturalHeight], alt: picture.alt, pixels: picture.src,
      marks: [...figure.querySelectorAll(".mark")].map(mark => ({
        kind: mark.className, says: mark.title, place: place(mark, picture),
        outline: parseFloat(getComputedStyle(mark).outlineWidth)}))
    };
  });
  sessionStorage.loads = (+sessionStorage.loads || 0) + 1;
  document.body.dataset.seen = JSON.stringify({
    findings: text(document.querySelector("#findings")), main: text(document.querySelector("main")),
    loads: +sessionStorage.loads, figures: Object.fromEntries(figures.map(f => [f.title, f]))});
});</script>"""


def changed():
    """The English document, with pictures that are there."""
    document = json.loads(json.dumps(ENGLISH))
    document["$schema"] = "schema.json"
    for entry, key in pictures_of(document):
        entry[key] = LINK + ("app_pdf.png" if key == "icon" else "banner_price.png")
    return document


def make_mistakes(document):
    options = document["problem_type"]["list"]
    options[0]["title"] = QUESTION
    options[6]["title"] = LONG
    options[1]["button_name"] = "A third off, and this month only"
    options[7]["banner_url"] = LINK + "lost.png"
    options[8]["banner_url"] = LINK + "app_pdf.png"
    document["apps"][2]["list"][0]["icon"] = LINK + "lost_icon.png"


class Preview(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.out = os.path.join(self.folder.name, "out")

    def command(self, document, *options, name="846-en.json"):
        """The command for a document; it is written unless it is a path."""
        if not isinstance(document, str):
            content, document = document, os.path.join(self.folder.name, name)
            pathlib.Path(document).write_text(json.dumps(content), encoding="utf-8")
        return [sys.executable, "-m", "tools.preview.preview", document, "--bin", BINARIES,
                "--out", self.out, *options]

    def browse(self):
        """What a browser shows of the page."""
        page = pathlib.Path(self.out, "probed.html")
        page.write_text(pathlib.Path(self.out, "index.html").read_text(encoding="utf-8") + PROBE,
                        encoding="utf-8")
        command = ["chromium-headless-shell", "--disable-gpu", "--virtual-time-budget=3500",
                   f"--user-data-dir={self.folder.name}/browser", "--dump-dom", page.as_uri()]
        if os.geteuid() == 0:
            command.insert(1, "--no-sandbox")
        dumped = subprocess.run(command, check=True, stdout=subprocess.PIPE, timeout=200,
                                stderr=subprocess.DEVNULL, encoding="utf-8").stdout
        return json.loads(html.unescape(re.search(r'data-seen="([^"]*)"', dumped).group(1)))

    def show(self, document, *options, **names):
        subprocess.run(self.command(document, *options, **names), check=True, timeout=300,
                       stdout=subprocess.DEVNULL, cwd=ROOT)
        return self.browse()

    def wait_for_version(self, earlier=None):
        """Waits until a page is there that is not the earlier one; returns its version."""
        deadline = time.monotonic() + 300
        while True:
            with contextlib.suppress(FileNotFoundError):
                latest = pathlib.Path(self.out, "version.js").read_text(encoding="utf-8")
                version = re.search('"([0-9]+)"', latest).group(1)
                if version != earlier:
                    return version
            self.assertLess(time.monotonic(), deadline)
            time.sleep(0.1)

    def test_saved_document_is_shown_again_with_its_mistakes(self):
        document = changed()
        with Processes() as processes:
            processes.start(self.command(document, "--pictures", PICTURES, "--watch"), cwd=ROOT)
            version = self.wait_for_version()
            usual = self.browse()
            self.check_without_mistakes(usual)
            make_mistakes(document)
            self.command(document)  # saves it
            version = self.wait_for_version(version)
        self.check_mistakes(self.browse(), usual["figures"])

        # A page that was open before loads itself anew.
        pathlib.Path(self.out, "version.js").write_text(
            f'window.latest = +sessionStorage.loads > 1 ? "{version}" : "newer";', encoding="utf-8")
        self.assertEqual(self.browse()["loads"], 2)

    def check_without_mistakes(self, seen):
        self.assertEqual(seen["loads"], 1)
        self.assertEqual(seen["findings"], "The check finds nothing.")
        figures = seen["figures"]
        for title in ("feedback", "feedback-reason-57", "uninstalling", "uninstalled",
                      "uninstall-failed", "products", "products-utility"):
            self.assertIn(title, figures)
        alts = "\n".join(figure["alt"] for figure in figures.values())
        for product in ENGLISH["apps"][0]["list"]:
            self.assertIn(product["name"], alts)  # also those that are scrolled to
        for figure in figures.values():
            self.assertEqual((figure["size"], figure["marks"]), ([720, 480], []), figure["title"])

    def check_mistakes(self, seen, usual):
        figures = seen["figures"]
        self.assertIn("problem_type.list[6].title is too long", seen["findings"])
        self.assertIn("option_64.png: the picture is stretched", seen["findings"])

        for title, figure in figures.items():
            is_feedback = title.startswith("feedback")
            self.assertEqual(QUESTION in figure["alt"], is_feedback, title)
            if title in usual:  # what there is to scroll differs
                is_same = figure["pixels"] == usual[title]["pixels"]
                self.assertFalse(is_same and is_feedback, title)
                self.assertTrue(is_same or title != "products-creativity")

        reason, = figures["feedback"]["marks"]
        self.assertEqual(reason["kind"], "mark text")
        self.assertIn(f"title is too long for its place: {len(LONG)} columns", reason["says"])
        left, top, width, height = reason["place"]
        self.assertGreater(left, 272)  # right of the banner
        self.assertTrue(top > 200 and left + width <= 720 and 30 < height < 100, reason)
        self.assertGreaterEqual(reason["outline"], 2)

        button = next(mark for mark in figures["feedback-reason-57"]["marks"]
                      if mark["place"][0] < 272)
        self.assertRegex(button["says"], r"does not fit: it needs \d+x\d+ and has \d+x\d+ pixels")

        banner = next(mark for mark in figures["feedback-reason-63"]["marks"]
                      if mark["kind"] == "mark picture")
        self.assertEqual((banner["place"], banner["says"]),
                         ([0, 0, 272, 480], f"missing picture: {LINK}lost.png"))
        self.assertIn("lost.png", figures["feedback-reason-63"]["says"])
        icon, = figures["products-utility"]["marks"]
        self.assertEqual(icon["says"], f"missing picture: {LINK}lost_icon.png")

    def test_pictures_come_from_their_links(self):
        with Service(os.path.join(self.folder.name, "service")) as service:
            published = os.path.join(service.root, "uninstall", "cfg", "v1", "846-de.json")
            seen = self.show(published)
        self.assertIn("must be an https link", seen["findings"])  # which the service has not
        marks = [mark["kind"] for figure in seen["figures"].values() for mark in figure["marks"]]
        self.assertNotIn("mark picture", marks)
        self.assertIn("Weiter", seen["figures"]["feedback"]["alt"])

    def test_document_that_the_program_would_not_take(self):
        seen = self.show({"apps": []})
        self.assertIn("problem_type is missing", seen["findings"])
        self.assertIn("The program would not take this document.", seen["main"])
        self.assertEqual(seen["figures"], {})


if __name__ == "__main__":
    unittest.main()
