"""Renders every window, page, dialog and state in every language at several scale factors, and puts
the pictures side by side into one page."""

import argparse
import concurrent.futures
import contextlib
import html
import json
import os
import struct
import subprocess
import sys

from tests.kit.folders import ROOT, make_afresh

# The installer's codes, one for each catalogue.
LANGUAGES = {
    "ENG": "English", "ARG": "العربية", "CHT": "繁體中文", "DEU": "Deutsch", "ESP": "Español",
    "FRA": "Français", "IDN": "Bahasa Indonesia", "ITA": "Italiano", "JPN": "日本語",
    "KOR": "한국어", "NLD": "Nederlands", "PLK": "Polski", "PTG": "Português", "ROM": "Română",
    "RUS": "Русский", "SWE": "Svenska"}
STATES = ["normal", "hover", "pressed", "focus", "disabled"]

PAGE = os.path.join(ROOT, "tools", "gallery", "page.html")


MAIN_WINDOW = (720, 480)


def native(binaries):
    """The program that renders, what its variables of Qt begin with, and its environment."""
    return ([os.path.join(binaries, "render-gallery")], "QT_",
            dict(os.environ, QT_QPA_PLATFORM="offscreen"))


@contextlib.contextmanager
def under_wine(binaries, out):
    """The same for the Windows program, on a desktop and in a prefix of its own."""
    from tests.kit.desktop import Desktop  # needs packages that the native gallery does without
    from tests.kit.wine import Prefix
    with Desktop(Desktop.MANAGED, 1600, 1100) as desktop, \
            Prefix(os.path.join(out, "prefix"), desktop.environment) as prefix:
        aside = ["xdotool", "mousemove", "1599", "1099"]  # or what is under the mouse is lit up
        subprocess.run(aside, env=desktop.environment, check=True)
        yield (["wine", os.path.join(binaries, "render-gallery.exe")], "WINEQT_",
               prefix.environment)


def size(picture):
    with open(picture, "rb") as file:
        return struct.unpack(">16xII", file.read(24))


def render(program, out, language, scale, scheme):
    """Renders one language at one scale factor; returns its index."""
    folder = os.path.join(out, f"{language}_{scale}")
    command, prefix, environment = program
    environment = dict(environment, **{prefix + "SCALE_FACTOR": scale})
    command = [*command, folder, language]
    if scheme:
        command += ["--scheme", scheme]
    if language == "ENG" and scale == "2":  # colours are alike in all
        command.append("--contrast")
    with open(folder + ".log", "w+", encoding="utf-8") as log:  # Wine's services keep a pipe open
        done = subprocess.run(command, env=environment, stdin=subprocess.DEVNULL, stdout=log,
                              stderr=subprocess.STDOUT, check=False)
        log.seek(0)
        if done.returncode:
            raise RuntimeError(f"{language} at {scale}: {log.read()}")
    with open(os.path.join(folder, "index.json"), encoding="utf-8") as file:
        index = json.load(file)
    for surface in index["surfaces"]:
        found = size(os.path.join(folder, surface + ".png"))
        if not surface.startswith(("confirmation", "message")) and \
                found != tuple(int(length * float(scale)) for length in MAIN_WINDOW):
            raise RuntimeError(f"{language} at {scale}: {surface} has {found[0]} x {found[1]}")
    return index


def figure(language, name, caption):
    return (f'<figure><img data-folder="{language}/{html.escape(name)}.png" loading="lazy" alt="'
            f'{html.escape(name)}"><img data-beside loading="lazy" alt="">'
            f'<figcaption>{html.escape(caption)}</figcaption></figure>')


def surface_section(name, languages):
    figures = "".join(figure(code, name, LANGUAGES[code]) for code in languages)
    return f'<h2 id="{name}">{name}</h2><div class="row">{figures}</div>'


def control_section(controls, language):
    rows = {}
    for control in controls:
        rows.setdefault(control["name"], {})[control["state"]] = control["file"]
    head = "".join(f"<th>{state}</th>" for state in STATES)
    body = "".join(
        f"<tr><th>{html.escape(name)}</th>"
        + "".join(f"<td>{figure(language, files[state], '')}</td>" for state in STATES) + "</tr>"
        for name, files in rows.items())
    return f"<h2>controls</h2><table><tr><th></th>{head}</tr>{body}</table>"


def contrast_section(texts):
    worst = {}
    for text in texts:
        key = (text["widget"], text["ink"])
        if key not in worst or text["ratio"] < worst[key]["ratio"]:
            worst[key] = text

    def swatch(colour):
        return f'<td><span class="swatch" style="background: {colour}"></span>{colour}</td>'

    body = "".join(
        f"<tr><td>{html.escape(text['widget'])}</td><td>{html.escape(text['surface'])}</td>"
        f"{swatch(text['ink'])}{swatch(text['ground'])}<td>{text['ratio']:.2f}</td></tr>"
        for text in sorted(worst.values(), key=lambda text: text["ratio"]))
    return ("<h2>contrast, as painted, where it is least</h2><table><tr><th>text of</th><th>on</th>"
            f"<th>ink</th><th>ground</th><th>ratio</th></tr>{body}</table>")


def write_page(out, languages, scales, indexes, beside):
    first = indexes[0]
    sections = [surface_section(name, languages) for name in first["surfaces"]]
    sections.append(control_section(first["controls"], languages[0]))
    contrast = next((index["contrast"] for index in indexes if index["contrast"]), [])
    if contrast:
        sections.append(contrast_section(contrast))
    scale_choice = " ".join(
        f'<label><input type="radio" name="scale" value="{scale}"'
        f'{" checked" if scale == scales[0] else ""}> {scale}</label>' for scale in scales)
    language_choice = " ".join(
        f'<label><input type="checkbox" name="language" value="{code}" checked> '
        f"{LANGUAGES[code]}</label>" for code in languages)
    with open(PAGE, encoding="utf-8") as template:
        page = template.read()
    beside = os.path.relpath(beside, out) if beside else ""
    for place, text in (("{beside}", json.dumps(beside)), ("{scale_choice}", scale_choice),
                        ("{language_choice}", language_choice), ("{body}", "\n".join(sections))):
        page = page.replace(place, text)
    file = os.path.join(out, "index.html")
    with open(file, "w", encoding="utf-8") as output:
        output.write(page)
    return file


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for the page and its pictures")
    parser.add_argument("--languages", default=",".join(LANGUAGES))
    parser.add_argument("--scales", default="1,1.25,2")
    parser.add_argument("--scheme", choices=("dark", "light"), help="a high-contrast scheme")
    parser.add_argument("--windows", action="store_true", help="the Windows program, under Wine")
    parser.add_argument("--beside", metavar="FOLDER",
                        help="another gallery, whose pictures are shown beside these")
    arguments = parser.parse_args()
    languages = arguments.languages.split(",")
    scales = arguments.scales.split(",")
    unknown = [code for code in languages if code not in LANGUAGES]
    if unknown:
        parser.error(f"unknown language {unknown[0]}; known are {', '.join(LANGUAGES)}")

    arguments.out = make_afresh(os.path.abspath(arguments.out))
    jobs = [(language, scale) for language in languages for scale in scales]
    with contextlib.ExitStack() as resources:
        program, at_once = native(arguments.bin), os.cpu_count()
        if arguments.windows:  # windows side by side would take the keyboard from each other
            program, at_once = resources.enter_context(under_wine(arguments.bin, arguments.out)), 1
        pool = resources.enter_context(concurrent.futures.ThreadPoolExecutor(at_once))
        indexes = list(pool.map(
            lambda job: render(program, arguments.out, *job, arguments.scheme), jobs))
    page = write_page(arguments.out, languages, scales, indexes, arguments.beside)
    pictures = sum(len(index["surfaces"]) + len(index["controls"]) for index in indexes)
    print(f"{pictures} pictures: {page}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
