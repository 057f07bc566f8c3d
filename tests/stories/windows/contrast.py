"""A story of a user who has turned on a high-contrast scheme."""

import os

from tests.kit.driver import Role
from tests.stories import events, removal
from tests.stories.story import MAIN, Outcome, story as listed

GROUND, TEXT = (16, 24, 64), (255, 224, 96)  # of no style sheet
SCHEME = {"Window": GROUND, "ButtonFace": GROUND, "WindowText": TEXT, "ButtonText": TEXT,
          "Hilight": TEXT, "HilightText": GROUND, "GrayText": (96, 255, 96)}


@listed
def high_contrast(story):
    """Texts have the colours of the user's high-contrast scheme, on every page."""
    for name, colour in SCHEME.items():
        story.prefix.set_registry("HKCU\\Control Panel\\Colors", name, "REG_SZ",
                                  " ".join(map(str, colour)))
    story.prefix.end_session()  # they are read when a session begins
    story.starter = [os.path.join(story.binaries, "high-contrast.exe")]

    def look(program, title, *texts):
        places = [program.place(program.wait_for(*text)) for text in texts]
        picture = story.picture(title)
        for (_, name), place in zip(texts, places):
            colours = story.desktop.colours(picture, place)
            story.expect_equal(colours[:2], [GROUND, TEXT], f"the scheme's colours: {name}")

    with story.start() as program:
        program.press(Role.RADIO_BUTTON, removal.ONCE)
        look(program, "feedback", (Role.LABEL, "What made you decide to uninstall?"),
             (Role.RADIO_BUTTON, removal.FEATURE), (Role.BUTTON, "Cancel"))
        program.press(Role.BUTTON, "Continue")
        look(program, "confirmation", (Role.LABEL, removal.QUESTION), (Role.BUTTON, "Remove"))
        program.press(Role.BUTTON, "Remove")
        look(program, "progress", (Role.LABEL, removal.RUNNING))
        look(program, "success", (Role.LABEL, removal.SUCCESS), (Role.BUTTON, "Done"))
        story.desktop.press_keys("alt+F4", title=MAIN)
        program.wait_for_exit()
    story.judge(Outcome(
        arguments=removal.SILENTLY, keeps=removal.effects, links=[removal.GOODBYE_PAGE],
        events=[events.POP_UP, events.feedback("UninstallContinue", "62"),
                events.reconfirm("Remove"), events.COMPLETED]))
