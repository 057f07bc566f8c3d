"""What a screen reader is told of every page: a story that looks at all of them."""

import os
import re

from tests.kit.desktop import wait_until
from tests.kit.driver import Role
from tests.kit.listener import Listener
from tests.stories import removal, upgrade
from tests.stories.story import story as listed, with_service

PAGES = os.path.join(os.path.dirname(__file__), "pages.txt")


def expected_pages():
    """Title of a page: the lines that describe it."""
    pages = {}
    with open(PAGES, encoding="utf-8") as file:
        for block in file.read().strip().split("\n\n"):
            title, *lines = block.split("\n")
            pages[title.strip("[]")] = lines
    return pages


def side_by_side(expected, found):
    width = max(map(len, ["expected", *expected]))
    rows = zip(expected + [""] * (len(found) - len(expected)),
               found + [""] * (len(expected) - len(found)))
    return f"  {'expected':{width}}  found\n" + "".join(
        f"{'  ' if left == right else '! '}{left:{width}}  {right}".rstrip() + "\n"
        for left, right in rows)


@listed
@with_service
def screen_reader(story):
    """Roles, names, states and focus of all objects on every page are as they should be."""
    pages = expected_pages()

    def look(program, page):
        expected = pages[page]
        found = []

        def is_as_expected():
            found[:] = [re.sub(r"\d+( seconds|%)", r"N\1", str(shown))
                        for shown in program.everything_shown()]
            return found == expected

        try:  # the page may just have come
            wait_until(is_as_expected, 10, page, program.interval)
        except AssertionError:
            pass
        with open(os.path.join(story.out, f"{page}.txt"), "w", encoding="utf-8") as file:
            file.write(side_by_side(expected, found))
        story.expect_equal(found, expected, f"{page}: {len(expected)} objects")

    with Listener() as silent:
        service = story.environment["CLIPWRIGHT_SANDBOX_SERVICE"]
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = silent.url
        with story.start() as program:
            program.wait_for(Role.BUTTON, "Close")
            look(program, "splash")
            program.press(Role.BUTTON, "Close")
            program.wait_for_exit()
        story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = service

    story.order("Feed/orders.txt", download_delay=500)  # time to look at the download
    with story.start() as program:
        program.wait_for(Role.BUTTON, "Cancel")
        look(program, "feedback")
        program.press(Role.RADIO_BUTTON, upgrade.OUT_OF_DATE)
        program.press(Role.BUTTON, upgrade.OFFER)
        program.wait_for(Role.LABEL, "Upgrading, please wait...")
        look(program, "upgrading")
        program.wait_for(Role.LABEL, "Upgrade completed")
        look(program, "upgraded")
        program.press(Role.BUTTON, "Launch")
        program.wait_for_exit()

    with open(story.path("Feed/check.json"), "w", encoding="utf-8") as answer:
        answer.write('{"errcode": "7"}')
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, upgrade.OUT_OF_DATE)
        look(program, "reason with an offer")
        program.press(Role.BUTTON, upgrade.OFFER)
        program.wait_for(Role.LABEL, "Failed to check update!")
        look(program, "message")
        program.press(Role.BUTTON, "OK")
        program.press(Role.RADIO_BUTTON, removal.FEATURE)
        program.wait_for(Role.TEXT_FIELD, removal.DETAILS)
        look(program, "reason with a text box")
        program.press(Role.BUTTON, "Continue")
        program.wait_for(Role.LABEL, removal.QUESTION)
        look(program, "confirmation")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, removal.RUNNING)
        look(program, "progress")
        program.wait_for(Role.LABEL, removal.SUCCESS)
        look(program, "success")
        program.press(Role.BUTTON, "Done")
        program.wait_for(removal.TAB, "Creativity")
        look(program, "products")
        program.press(Role.BUTTON, "Close")
        program.wait_for_exit()
