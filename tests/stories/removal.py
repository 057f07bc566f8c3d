"""Stories of the product's removal, taken or not, on every platform that they can be played on."""

import os
import re
import shutil
import time

from tests.kit.desktop import PATIENCE, Place
from tests.kit.driver import Role
from tests.stories import events
from tests.stories.story import (CONFIRMATION, MAIN, Outcome, effects, nothing, story as listed)

PRICE = "The full version costs too much for me"
FEATURE = "A feature I need is missing"
ONCE = "I only needed it for one project"
OFFER = "  Get 30% off  "
DETAILS = "Describe the problem"
RESOURCES = "Remove all the effect resource files"
QUESTION = "Are you sure you want to remove Norvane Clipwright?"
RUNNING = "Thanks for your feedback! Uninstalling..."
SUCCESS = "Successfully uninstalled"
ADDRESS = "Email address"
MORE = "More Products"
CLOSE = (694, 28)  # where the cross is in the window
TAB = Role.RADIO_BUTTON  # one of several buttons of which one is checked

SILENTLY = ("/VERYSILENT", "/REINSTALL")
OFFER_PAGE = "https://www.norvane.example/clipwright/offer?pid=8461&m=uninstall"
GOODBYE_PAGE = "https://www.norvane.example/clipwright/goodbye"


def expect_whole_window(story, picture):
    """The desktop behind the window is black, and shows at its rounded corners only."""
    x, y, width, height = story.desktop.place(story.desktop.wait_for_window(MAIN))
    inside = Place(x, y + 12, width, height - 24)
    story.expect((0, 0, 0) not in story.desktop.colours(picture, inside), "the window has no holes")


@listed
def uninstall(story):
    """A whole uninstall: reasons looked at, an offer opened, removed, subscribed, products seen."""
    words, address = "Keyframes for every effect, please.", "robin@mail.test"
    with story.start() as program:
        program.wait_for(Role.BUTTON, "Cancel")
        story.picture("feedback")
        story.expect_rest("feedback")
        program.press(Role.RADIO_BUTTON, FEATURE)
        program.type_into(Role.TEXT_FIELD, DETAILS, words)
        story.picture("reason-with-text-box")
        program.press(Role.RADIO_BUTTON, PRICE)
        program.press(Role.BUTTON, OFFER)
        story.picture("reason-with-offer")
        story.expect_rest("a reason with an offer")
        program.press(Role.RADIO_BUTTON, FEATURE)
        program.press(Role.BUTTON, "Continue")
        program.wait_for(Role.LABEL, QUESTION)
        story.picture("confirmation")
        story.expect_rest("confirmation")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, RUNNING)
        story.desktop.press_keys("alt+F4", "alt+F4", title=MAIN)  # which a run refuses
        for part in "a-sixth", "a-third", "near-half":
            time.sleep(3.5)
            expect_whole_window(story, story.picture("progress-" + part))
        program.wait_for(Role.LABEL, SUCCESS)
        story.picture("success")
        program.type_into(Role.TEXT_FIELD, ADDRESS, "robin@mail")
        program.press(Role.BUTTON, "Done")
        program.wait_for(Role.LABEL, "Please enter a valid email address.")
        story.picture("success-wrong-address")
        program.type_into(Role.TEXT_FIELD, ADDRESS, address)
        program.press(Role.BUTTON, "Done")
        program.wait_for(TAB, "Creativity")
        story.picture("products")
        program.press(TAB, "Utility")
        story.picture("products-of-a-category")
        story.expect_rest("products")
        program.press(Role.BUTTON, "Close")
        program.wait_for_exit()
    story.judge(Outcome(
        arguments=SILENTLY, keeps=effects, links=[OFFER_PAGE, GOODBYE_PAGE],
        events=[events.POP_UP, *events.offer_taken("57", "Coupon"),
                events.feedback("UninstallContinue", "58", detail=words),
                events.reconfirm("Remove"), events.COMPLETED, events.subscribed(address),
                events.left("moreproducts")]))


@listed
def resources(story):
    """The effect resources are removed too, which is the user's choice."""
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, ONCE)
        program.press(Role.BUTTON, "Continue")
        program.press(Role.CHECK_BOX, RESOURCES)
        story.picture("confirmation-with-resources")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, SUCCESS)
        window = story.desktop.wait_for_keyboard(MAIN)
        story.expect_equal(story.desktop.drag(window, *CLOSE, 60, 40), (0, 0),
                           "a button in the window's top strip does not drag it")
        program.press(Role.BUTTON, "Close")
        program.wait_for_exit()
    story.judge(Outcome(
        arguments=[*SILENTLY, "/DELRESOURCE"], keeps=nothing, links=[GOODBYE_PAGE],
        events=[events.POP_UP, events.feedback("UninstallContinue", "62"),
                events.reconfirm("Remove", delete_all="1"), events.COMPLETED,
                events.left("uninstallprocess")]))


def change_of_mind(story, leave):
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, ONCE)
        program.press(Role.BUTTON, "Continue")
        program.wait_for(Role.LABEL, QUESTION)
        leave(program)
        program.wait_for_exit()
    story.judge(Outcome([events.POP_UP, events.feedback("UninstallContinue", "62"),
                         events.reconfirm("Cancel")]))


@listed
def cancel(story):
    """Cancel in the confirmation removes nothing and ends the program."""
    change_of_mind(story, lambda program: program.press(Role.BUTTON, "Cancel", CONFIRMATION))


@listed
def cancel_by_keys(story):
    """Alt+F4 on the confirmation is its Cancel."""
    change_of_mind(story, lambda _: story.desktop.press_keys("alt+F4", title=CONFIRMATION))


@listed
def keyboard(story):
    """A whole uninstall without a mouse: Tab, arrows, Space and Enter only."""
    desktop, address = story.desktop, "robin@mail.test"
    with story.start() as program:
        program.wait_for_focus(Role.PAGE, "What made you decide to uninstall?")
        desktop.wait_for_keyboard(MAIN)
        way = program.tab_to(Role.RADIO_BUTTON, PRICE)
        story.expect_equal(len(way), 1, "Tab leads to the first reason at once")
        desktop.press_keys("space")
        program.wait_for(Role.BUTTON, OFFER)
        desktop.press_keys("Down")
        # The arrows browse the reasons; the text box waits for Tab.
        program.wait_for_focus(Role.RADIO_BUTTON, FEATURE)
        desktop.press_keys("Tab")
        program.wait_for_focus(Role.TEXT_FIELD, DETAILS)
        desktop.type_text("No keyframes")
        story.picture("reason-by-keys")
        program.tab_to(Role.BUTTON, "Continue")
        desktop.press_keys("Return")

        program.wait_for_focus(Role.BUTTON, "Cancel")
        desktop.wait_for_keyboard(CONFIRMATION)
        way = program.tab_to(Role.CHECK_BOX, RESOURCES)
        story.expect_equal([name for _, name in way], ["Remove", RESOURCES],
                           "the safe answer has the keyboard first, then come the others")
        desktop.press_keys("space", "space")  # ticked and unticked
        story.picture("confirmation-by-keys")
        program.tab_to(Role.BUTTON, "Remove")
        desktop.press_keys("Return")

        program.wait_for(Role.LABEL, RUNNING)
        heard = set()
        deadline = time.monotonic() + PATIENCE
        while not program.find(Role.LABEL, SUCCESS):
            assert time.monotonic() < deadline, f"no success in {PATIENCE} s"
            _, name = program.focused() or (None, "")
            heard.add(name)
            time.sleep(0.2)
        for seconds in (20, 10):
            story.expect(f"{RUNNING} Time remaining: About {seconds} seconds" in heard,
                         f"{seconds} seconds left were read aloud")

        program.wait_for_focus(Role.TEXT_FIELD, ADDRESS)
        desktop.type_text(address)
        story.picture("address-by-keys")
        desktop.press_keys("Return")
        program.wait_for_focus(Role.PAGE, "More Apps You Might Like")
        program.tab_to(TAB, "All")
        desktop.press_keys("Down", "Down", "Down")
        program.wait_for_focus(TAB, "Utility")
        program.wait_for(Role.LABEL, "Utility")
        program.tab_to(Role.BUTTON, "Close")
        story.picture("products-by-keys")
        desktop.press_keys("Return")
        program.wait_for_exit()
    story.judge(Outcome(
        arguments=SILENTLY, keeps=effects, links=[GOODBYE_PAGE],
        events=[events.POP_UP, events.feedback("PopUp_FeedbackClick", "57", button="Coupon"),
                events.feedback("UninstallContinue", "58", detail="No keyframes"),
                events.reconfirm("Remove"), events.COMPLETED, events.subscribed(address),
                events.left("moreproducts")]))


@listed
def failures(story):
    """A check that fails, then a removal that cannot start: both said in words that can be read."""
    with open(story.path("Feed/check.json"), "w", encoding="utf-8") as answer:
        answer.write('{"errcode": "7"}')
    os.remove(os.path.join(story.product_folder(), "unins000.dat"))
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, "My version is out of date")
        program.press(Role.BUTTON, "  Get latest version  ")
        program.wait_for(Role.LABEL, "Failed to check update!")
        story.picture("message")
        program.press(Role.BUTTON, "OK")
        program.press(Role.BUTTON, "Continue")
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, "Uninstall Failed")
        story.picture("failed")
        program.press(Role.BUTTON, "Close")
        program.wait_for_exit()
    story.judge(Outcome(
        keeps=lambda file: file != "unins000.dat",
        events=[events.POP_UP, *events.offer_taken("61", "Upgrade"),
                events.feedback("UninstallContinue", "61", button="Upgrade"),
                events.reconfirm("Remove"), events.FAILED]))


def remove(story, shown_at_the_end, *last_events, with_resources=False, wrap=(),
           at_the_end=lambda program: None, **expected):
    """A removal without digressions; what is expected may be overridden."""
    with story.start(wrap) as program:
        program.press(Role.RADIO_BUTTON, ONCE)
        program.press(Role.BUTTON, "Continue")
        if with_resources:
            program.press(Role.CHECK_BOX, RESOURCES)
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, shown_at_the_end)
        story.picture("at-the-end")
        at_the_end(program)
        program.press(Role.BUTTON, "Close")
        program.wait_for_exit()
    story.judge(Outcome(**{
        "arguments": [*SILENTLY, *["/DELRESOURCE"] * with_resources],
        "events": [events.POP_UP, events.feedback("UninstallContinue", "62"),
                   events.reconfirm("Remove", delete_all=str(int(with_resources))), *last_events],
        **expected}))


def order_uninstaller(story, **orders):
    """Puts the sample uninstaller, which can be told to fail, in the place of the setup's."""
    folder = story.product_folder()
    shutil.copy(story.sample_program("sample-uninstaller"), os.path.join(folder, "unins000.exe"))
    record = story.name_to_program(story.path("Received/uninstaller.txt"))
    with open(os.path.join(folder, "unins000.dat"), "w", encoding="utf-8") as file:
        for key, value in {**orders, "record": record}.items():
            file.write(f"{key}={value}\n")


@listed
def failure_by_exit_code(story):
    """The setup uninstaller ends with an exit code."""
    order_uninstaller(story, delay=1000, exit=3)
    remove(story, "Uninstall Failed", events.FAILED)


@listed
def failure_by_crash(story):
    """The setup uninstaller crashes."""
    order_uninstaller(story, delay=1000, end="crash")
    remove(story, "Uninstall Failed", events.FAILED)


@listed
def failure_to_start(story):
    """The setup uninstaller's file is no program."""
    put_no_program(os.path.join(story.product_folder(), "unins000.exe"))
    remove(story, "Uninstall Failed", events.FAILED, arguments=())


def put_no_program(file):
    with open(file, "w", encoding="ascii") as opened:
        opened.write("This is no program.\n")


@listed
def held_enter(story):
    """Enter is held and repeats: it presses one button, but not the one that has the keyboard
    next."""
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, FEATURE)
        program.tab_to(Role.TEXT_FIELD, DETAILS)
        with story.desktop.held("x"):
            time.sleep(3)
        program.tab_to(Role.BUTTON, "Continue")
        with story.desktop.held("Return"):
            program.wait_for_focus(Role.BUTTON, "Cancel")
            time.sleep(3)
            story.expect(program.find(Role.LABEL, QUESTION), "the question stays while it is held")
        time.sleep(1)
        story.expect(program.find(Role.LABEL, QUESTION), "and when it is released")
        story.picture("question")
        story.desktop.press_keys("Return", title=CONFIRMATION)
        program.wait_for_exit()
    details = [properties["Msgdetail"] for _, action, properties in story.events()
               if action == "UninstallContinue"][0]
    story.expect(re.fullmatch("x{3,}", details), f"a held key was repeated: {details}")
    story.judge(Outcome([events.POP_UP, events.feedback("UninstallContinue", "58", detail=details),
                         events.reconfirm("Cancel")]))


@listed
def second_copy(story):
    """A second copy ends at once, without a window; the first holds the name until it ends."""
    story.expect(not story.is_name_held(), "the program's name is free at first")
    with story.start() as program:
        program.wait_for(Role.BUTTON, "Cancel")
        story.note_first_window()
        story.expect(story.is_name_held(), "the program holds its name")
        started = time.monotonic()
        story.expect_equal(story.run_second_copy(), 0, "the second copy ends with exit code 0")
        took = time.monotonic() - started
        story.expect(took < story.soon(), f"at once ({took:.1f} s)")
        story.expect_equal(len(story.desktop.windows(MAIN)), 1, "the first is still there")
        story.desktop.press_keys("alt+F4", title=MAIN)
        program.wait_for_exit()
    story.expect(not story.is_name_held(), "the name is free again")
    story.judge(Outcome([events.POP_UP]))  # of one session, the first copy's


@listed
def dragging(story):
    """The window is dragged by its top 37 pixels, and by nothing else."""
    with story.start() as program:
        program.wait_for(Role.BUTTON, "Cancel")
        window = story.desktop.wait_for_keyboard(MAIN)

        def drag(x, y, right, down):
            return story.desktop.drag(window, x, y, right, down)

        story.expect_equal(drag(450, 5, 60, 40), (60, 40), "the top strip drags the window")
        story.expect_equal(drag(450, 36, -60, -40), (-60, -40), "its last row does too")
        story.expect_equal(drag(450, 37, 60, 40), (0, 0), "the row below does not")
        program.press(Role.BUTTON, "Cancel")
        program.wait_for_exit()
    story.judge(Outcome([events.POP_UP, events.feedback("UninstallCancel", "")]))
