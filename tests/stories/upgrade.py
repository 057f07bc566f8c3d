"""Stories of the upgrade that is offered instead of the removal."""

import json
import os
import time

from tests.kit.driver import Role
from tests.stories import events
from tests.stories.story import MAIN, Outcome, story as listed

OUT_OF_DATE = "My version is out of date"
OFFER = "  Get latest version  "
OFFER_TAKEN = [events.POP_UP, *events.offer_taken("61", "Upgrade")]


@listed
def upgrade(story):
    """The offer taken: checked, downloaded, installed, and the new version launched."""
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, OUT_OF_DATE)
        story.picture("reason-with-upgrade")
        program.press(Role.BUTTON, OFFER)
        program.wait_for(Role.LABEL, "Upgrading, please wait...")
        time.sleep(1)
        story.picture("upgrading")
        program.wait_for(Role.LABEL, "Upgrade completed")
        story.picture("completed")
        program.press(Role.BUTTON, "Launch")
        program.wait_for_exit()
    launched = ["launched.txt", "launched.txt.starts"]
    for file in launched:
        story.wait_for_file(os.path.join(story.product_folder(), file))
    # The program names its own data with slashes on every platform.
    update_info = story.name_to_program(
        story.path("ProgramData/Norvane Clipwright/Back_UpdateInfo.json")).replace("\\", "/")
    story.expect_equal(story.lines("Received/update-installer.txt"), [
        f'/CFGPATH="{update_info}"',
        '/NEWVER="7.3.0.1"', '/LANG="ENG"', '/SKIN="0"', '/CURVER="7.2.1.4"',
        f'/INSTALLPATH="{story.name_to_program(story.product_folder())}"',
        '/PRODUCTNAME="Norvane Clipwright"',
        '/SOURCE="Uninstaller"',
    ], "the update installer received its eight switches")
    story.expect("Version=7.3.0.1" in story.lines("ProgramData/Norvane Clipwright/Clipwright.ini"),
                 "the installed version is the new one")
    story.judge(Outcome(added=launched, events=[
        *OFFER_TAKEN, ("DoRetain", "UpgradeCompleted", {}),
        ("DoRetain", "UpgradeSuccess_launchclick", {})]))


@listed
def stuck_library(story):
    """The upgrade library never answers a check: the window can be closed, the process ends."""
    with open(story.path("Feed/orders.txt"), "a", encoding="utf-8") as orders:
        orders.write("never_return=check\n")
    with story.start() as program:
        program.wait_for(Role.RADIO_BUTTON, OUT_OF_DATE)
        story.note_first_window()
        program.press(Role.RADIO_BUTTON, OUT_OF_DATE)
        program.press(Role.BUTTON, OFFER)
        story.wait_for_file(story.path("Feed/calls.jsonl"))
        story.picture("waiting-for-the-answer")
        story.desktop.press_keys("alt+F4", title=MAIN)
        closed = time.monotonic()
        program.wait_for_exit()
        took = time.monotonic() - closed
    story.expect(took < story.soon(), f"it ended soon after its window was closed ({took:.1f} s)")
    story.expect_equal([json.loads(line)["call"] for line in story.lines("Feed/calls.jsonl")],
                       ["check_upgrade_c"], "the library was asked this one thing")
    story.judge(Outcome(OFFER_TAKEN))
