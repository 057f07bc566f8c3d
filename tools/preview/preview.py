"""Shows a configuration document on every page and state where its texts stand, beside what the
check finds in it, in one page for a browser."""

import argparse
import base64
import html
import json
import os
import re
import subprocess
import sys
import tempfile
import time

from tests.kit.folders import ROOT
from tools.gallery.gallery import LANGUAGES

CHECK = os.path.join(ROOT, "Resources", "cfg", "check")
PAGE = os.path.join(ROOT, "tools", "preview", "page.html")

# The installer's code of each document.
CODES = {"en": "ENG", "zh": "CHS", "tw": "CHT", "es": "ESP", "de": "DEU", "fr": "FRA", "it": "ITA",
         "ja": "JPN", "ko": "KOR", "pt": "PTG", "ru": "RUS", "ar": "ARG", "nl": "NLD", "pl": "PLK",
         "ro": "ROM", "id": "IDN", "sv": "SWE"}


def language_of(document):
    """By the document's name, as it is published (846-de.json) or built in (de.cfg)."""
    code = re.search(r"(?:^|-)([a-z]{2})\.\w+$", os.path.basename(document))
    return CODES.get(code.group(1), "ENG") if code else "ENG"


def findings_of(*arguments):
    """What the check says about a file: line and message of each finding."""
    checked = subprocess.run([CHECK, *arguments], check=False, stdout=subprocess.PIPE,
                             encoding="utf-8")
    begin = arguments[-1] + ":"
    return [(int(line), message) for line, message in
            (found[len(begin):].split(": ", 1) for found in checked.stdout.splitlines()
             if found.startswith(begin))]


def value_at(document, path):
    """The value that a finding is about; none when there is no such value."""
    for key, index in re.findall(r"([^.\[\]]+)|\[(\d+)\]", path):
        try:
            document = document[key or int(index)]
        except (KeyError, IndexError, TypeError):
            return None
    return document


def letters(text):
    """A text without what the program adds to break its lines and to show ampersands."""
    return re.sub(r"[\s\u2060]+", "", text.replace("&&", "&"))


def texts_found(document, findings):
    """The messages about each text of the document, by its letters."""
    found = {}
    for _, message in findings:
        value = value_at(document, message.split(" ", 1)[0])
        if isinstance(value, str) and value.strip():
            found.setdefault(letters(value), []).append(message)
    return found


def marks_on(picture, found):
    """What is to be marked on a picture: place, kind and messages."""
    for text in picture["texts"]:
        messages = list(found.get(letters(text["text"]), []))
        if text["misfit"]:
            messages.insert(0, f"does not fit: it {text['misfit']} pixels")
        if messages:
            yield text["place"], "text", messages
    for missing in picture["missing"]:
        yield missing["place"], "picture", [f"missing picture: {missing['link'] or 'no link'}"]


def figure(picture, folder, found):
    marks, captions = "", []
    for (left, top, width, height), kind, messages in marks_on(picture, found):
        said = html.escape("\n".join(messages))
        marks += (f'<span class="mark {kind}" style="left:{left}px;top:{top}px;width:{width}px;'
                  f'height:{height}px" title="{said}"></span>')
        captions += [message for message in messages if message not in captions]
    with open(os.path.join(folder, picture["file"]), "rb") as file:
        data = base64.b64encode(file.read()).decode("ascii")
    title = html.escape(picture["title"])
    texts = html.escape("\n".join(text["text"] for text in picture["texts"]))
    said = "".join(f"<li>{html.escape(caption)}</li>" for caption in captions)
    return (f'<figure><figcaption>{title}</figcaption><div class="window">'
            f'<img src="data:image/png;base64,{data}" width="{picture["width"]}" '
            f'height="{picture["height"]}" alt="{texts}">{marks}</div><ul>{said}</ul></figure>')


def finding_row(line, message):
    kind = "note" if message.endswith("(note)") else "error"
    place = f"line {line}: " if line else ""
    return f'<li class="{kind}">{place}{html.escape(message)}</li>'


def render(arguments, folder):
    """Renders the document into a folder of pictures; returns the index of it."""
    command = [os.path.join(arguments.bin, "render-preview"), folder, arguments.language,
               arguments.document, *([arguments.pictures] if arguments.pictures else [])]
    done = subprocess.run(command, check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          encoding="utf-8", env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
    if done.returncode:
        raise RuntimeError(f"{arguments.document} could not be rendered: {done.stdout}")
    with open(os.path.join(folder, "index.json"), encoding="utf-8") as file:
        return json.load(file)


def page(arguments):
    findings = findings_of(arguments.document)
    try:
        with open(arguments.document, encoding="utf-8-sig") as file:
            document = json.load(file)
    except (OSError, ValueError):  # of which the check tells
        document = None
    with tempfile.TemporaryDirectory() as folder:
        index = render(arguments, folder)
        for banner in sorted(name for name in os.listdir(folder) if name.startswith("option_")):
            findings += [(0, f"{banner}: {message}") for _, message in
                         findings_of("--banner", os.path.join(folder, banner))]
        found = texts_found(document, findings)
        body = "".join(figure(picture, folder, found) for picture in index["pictures"])
    if not index["isTaken"]:
        body = '<p class="refused">The program would not take this document.</p>'
    rows = "".join(finding_row(*finding) for finding in findings)
    with open(PAGE, encoding="utf-8") as template:
        text = template.read()
    for place, value in (("{name}", html.escape(os.path.basename(arguments.document))),
                         ("{language}", LANGUAGES.get(arguments.language, arguments.language)),
                         ("{version}", str(time.time_ns()) if arguments.watch else ""),
                         ("{findings}", rows or "<li>The check finds nothing.</li>"),
                         ("{body}", body)):
        text = text.replace(place, value)
    return text


def write(file, text):
    """A browser that reads meanwhile gets the earlier page, or this one."""
    with open(file + ".part", "w", encoding="utf-8") as output:
        output.write(text)
    os.replace(file + ".part", file)


def preview(arguments):
    """Writes the page; returns its path."""
    os.makedirs(arguments.out, exist_ok=True)
    file = os.path.join(arguments.out, "index.html")
    text = page(arguments)
    write(file, text)
    version = re.search(r'data-version="(\d*)"', text).group(1)
    write(os.path.join(arguments.out, "version.js"), f'window.latest = "{version}";\n')
    return file


def state(arguments):
    """Changes when the document or a picture is saved."""
    files = [arguments.document]
    if arguments.pictures and os.path.isdir(arguments.pictures):
        files += [entry.path for entry in os.scandir(arguments.pictures)]
    seen = []
    for file in sorted(files):
        try:
            status = os.stat(file)
            seen.append((file, status.st_ino, status.st_mtime_ns, status.st_size))
        except OSError:  # an editor is about to put the new one there
            seen.append((file, None))
    return seen


def watch(arguments, seen):
    while True:
        time.sleep(0.2)
        now = state(arguments)
        if now != seen and os.path.exists(arguments.document):
            seen = now
            preview(arguments)
            print("Rendered again " + time.strftime("%H:%M:%S"), flush=True)


def main():
    parser = argparse.ArgumentParser(prog="./dev preview", description=__doc__)
    parser.add_argument("document", metavar="DOCUMENT")
    parser.add_argument("--pictures", metavar="FOLDER",
                        help="take the pictures from there, under their links' names")
    parser.add_argument("--language", choices=CODES.values(), metavar="CODE",
                        help="the installer's code, such as DEU; usually by the document's name")
    parser.add_argument("--watch", action="store_true", help="render again when it is saved")
    parser.add_argument("--bin", required=True, help=argparse.SUPPRESS)
    parser.add_argument("--out", required=True, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    arguments.language = arguments.language or language_of(arguments.document)
    if not os.path.isfile(arguments.document):
        parser.error(f"there is no {arguments.document}")
    seen = state(arguments)
    print("file://" + os.path.abspath(preview(arguments)), flush=True)
    if arguments.watch:
        watch(arguments, seen)
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except KeyboardInterrupt:
        sys.exit(130)
