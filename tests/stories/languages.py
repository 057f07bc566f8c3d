"""Stories in other languages than English."""

import os

from tests.kit.driver import Role
from tests.stories.story import story as listed, with_service


def left_edges(story, installer_code, document, **buttons):
    """Looks at the feedback page in a language; returns where its buttons begin."""
    ini = story.path("ProgramData/Norvane Clipwright/Clipwright.ini")
    with open(ini, encoding="utf-8") as file:
        text = file.read()
    with open(ini, "w", encoding="utf-8") as file:
        file.write(text.replace("DefInstallLang=ENG", f"DefInstallLang={installer_code}"))
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
