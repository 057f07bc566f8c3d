"""Stories in other languages than English."""

import os
import re
import xml.etree.ElementTree as ElementTree

from tests.kit.driver import Role
from tests.kit.folders import ROOT
from tests.stories.story import MAIN, story as listed, with_service

# A setup's code for a language: the catalogue of the interface, and the published document.
CODES = {"ENG": ("en", "en"), "SWE": ("sv", "sv"), "CHT": ("zh", "tw"), "ZHH": ("zh", "tw"),
         "ESP": ("es", "es"), "DEU": ("de", "de"), "FRA": ("fr", "fr"), "ITA": ("it", "it"),
         "JPN": ("ja", "ja"), "KOR": ("ko", "ko"), "PTG": ("pt", "pt"), "RUS": ("ru", "ru"),
         "ARG": ("ar", "ar"), "NLD": ("nl", "nl"), "PLK": ("pl", "pl"), "ROM": ("ro", "ro"),
         "IDN": ("id", "id"),
         # Texts of the program in simplified Chinese do not exist; a document does.
         "CHS": ("en", "zh"), "eng": ("en", "en"), "XYZ": ("en", "en"), "": ("en", "en")}


def set_language(story, code):
    ini = story.path("ProgramData/Norvane Clipwright/Clipwright.ini")
    with open(ini, encoding="utf-8") as file:
        text = file.read()
    with open(ini, "w", encoding="utf-8") as file:
        file.write(re.sub("(?m)^DefInstallLang=.*$", f"DefInstallLang={code}", text))


def translated(text, catalogue):
    """What a text of the main window is in a language."""
    file = os.path.join(ROOT, "Resources", "lang", f"kuninstaller_{catalogue}.ts")
    for context in ElementTree.parse(file).iter("context"):
        for message in context.iter("message"):
            if (context.findtext("name"), message.findtext("source")) == ("MainWindow", text):
                return message.findtext("translation")
    raise KeyError(text)


@listed
@with_service
def language_codes(story):
    """Each language that a setup may have recorded: the title of the window and the document."""
    story.expect_equal(len({translated(MAIN, catalogue) for catalogue, _ in CODES.values()}), 16,
                       "a title tells its language")
    for code, (catalogue, document) in CODES.items():
        set_language(story, code)
        earlier = len(story.service.requests())
        title = translated(MAIN, catalogue)
        with story.start() as program:
            story.desktop.wait_for_window(title)
            story.desktop.press_keys("alt+F4", title=title)
            code_of_exit = program.wait_for_exit()
        story.expect_equal((code_of_exit, story.service.requests()[earlier].split("/")[-2]),
                           (0, f"846-{document}.json HTTP"), f"{code!r}: {title}")


def left_edges(story, installer_code, document, **buttons):
    """Looks at the feedback page in a language; returns where its buttons begin."""
    set_language(story, installer_code)
    with story.start() as program:
        program.wait_for(Role.BUTTON, buttons["cancel"])
        story.picture("feedback")
        program.press(Role.RADIO_BUTTON)
        edges = {key: program.place(program.wait_for(Role.BUTTON, name)).x
                 for key, name in buttons.items()}
        story.picture("reason")
        program.press(Role.BUTTON, buttons["proceed"])
        program.wait_for(Role.CHECK_BOX)
        story.picture("confirmation")
    story.expect(document in os.listdir(story.cache), f"{document} was fetched")
    return edges


def read_from_the_left(story, *language, **buttons):
    edges = left_edges(story, *language, **buttons)
    story.expect(edges["offer"] < edges["proceed"] < edges["cancel"],
                 "banner and buttons stand in their usual order")


@listed
@with_service
def german(story):
    """An installation in German, its document and its interface."""
    read_from_the_left(story, "DEU", "de.cfg", cancel="Abbrechen", proceed="Weiter",
                       offer="  30\u00a0% sparen  ")


@listed
@with_service
def japanese(story):
    """An installation in Japanese, which needs fonts of its own."""
    read_from_the_left(story, "JPN", "ja.cfg", cancel="キャンセル", proceed="続行",
                       offer="  30% オフで購入  ")


@listed
@with_service
def arabic(story):
    """An installation in Arabic: everything is mirrored."""
    edges = left_edges(story, "ARG", "ar.cfg", cancel="إلغاء الأمر", proceed="متابعة",
                       offer="  الحصول على خصم 30%  ")
    story.expect(edges["cancel"] < edges["proceed"], "the buttons stand in the other order")
    story.expect(edges["proceed"] < edges["offer"], "the banner stands on the right")
