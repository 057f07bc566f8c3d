"""Stories of the upgrade that is offered instead of the removal."""

import json
import os
import shutil
import time

from tests.kit.driver import Role
from tests.stories import events, removal
from tests.stories.story import MAIN, Outcome, story as listed

FEED_ORDERS = "Feed/orders.txt"
INSTALLER = "Program Files/Norvane/Norvane Clipwright Update/Norvane Clipwright Update"
UPGRADING = "Upgrading, please wait..."
OUT_OF_DATE = "My version is out of date"
OFFER = "  Get latest version  "
OFFER_TAKEN = [events.POP_UP, *events.offer_taken("61", "Upgrade")]


def taken_again(source):
    return events.feedback("RetainClick", "61", button="Upgrade", source=source)


def turned_down(source):
    return events.feedback("UninstallCancel", "61", button="Upgrade", source=source)


def library_calls(story):
    return [json.loads(line)["call"] for line in story.lines("Feed/calls.jsonl")]


@listed
def upgrade(story):
    """The offer taken: checked, downloaded, installed, and the new version launched."""
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, OUT_OF_DATE)
        story.picture("reason-with-upgrade")
        program.press(Role.BUTTON, OFFER)
        program.wait_for(Role.LABEL, UPGRADING)
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
def upgrade_cancelled(story):
    """Left and taken again while it downloads, which is one download; left for good, it installs
    nothing."""
    left_for_good = story.path("Feed/left")
    story.order(FEED_ORDERS, download_delay=0, finish_when=story.name_to_program(left_for_good))
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, OUT_OF_DATE)
        for _ in range(2):
            program.press(Role.BUTTON, OFFER)
            program.wait_for(Role.LABEL, UPGRADING)
            program.press(Role.BUTTON, "Cancel")
            program.wait_for(Role.BUTTON, OFFER)
        story.picture("left")
        with open(left_for_good, "w", encoding="ascii"):
            pass
        story.wait_for_file(story.path("Feed/Norvane Clipwright Package"))
        time.sleep(2)
        story.picture("downloaded")
        program.press(Role.BUTTON, "Cancel")
        program.wait_for_exit()
    # At the end it is told to stop, if its thread comes to that.
    story.expect_equal([call for call in library_calls(story) if call != "stop"],
                       ["check_upgrade_c", "download_package_c"],
                       "the library was asked once, and downloaded once")
    story.expect_equal(story.lines("Received/update-installer.txt"), [],
                       "the update installer was not started")
    left = events.pop_up("upgrade_cancel")
    story.judge(Outcome([*OFFER_TAKEN, left, taken_again("upgrade_cancel"), left,
                         turned_down("upgrade_cancel")]))


@listed
def upgrade_failed(story):
    """Every way to fail is told, and leads back to where the upgrade was offered."""
    story.order(FEED_ORDERS, check_delay=0, download_delay=0)
    check, package, installer = (story.path(file) for file in (
        "Feed/check.json", "Feed/package", INSTALLER + ".exe"))
    kept = {file: story.path("Received/" + os.path.basename(file))
            for file in (check, package, installer)}
    for file, copy in kept.items():
        shutil.copy(file, copy)

    def offer_nothing():
        with open(check, "w", encoding="ascii") as answer:
            answer.write('{"errcode": "0", "result": {"needupgrade": "0"}}')

    ways = (("nothing-newer", offer_nothing, "You are already the latest version!"),
            ("no-download", lambda: os.remove(package), "Failed to download the update."),
            ("no-installer", lambda: os.remove(installer), "Install failed."),
            ("not-startable", lambda: removal.put_no_program(installer), "Install failed."),
            ("exit-code", lambda: story.order(INSTALLER + ".txt", exit=5), "Install failed."),
            ("crash", lambda: story.order(INSTALLER + ".txt", end="crash"), "Install failed."))
    with story.start() as program:
        program.press(Role.RADIO_BUTTON, OUT_OF_DATE)
        for name, break_it, message in ways:
            break_it()
            program.press(Role.BUTTON, OFFER)
            program.wait_for(Role.LABEL, message)
            story.picture(name)
            program.press(Role.BUTTON, "OK")
            program.wait_for(Role.BUTTON, OFFER)
            for file, copy in kept.items():
                shutil.copy(copy, file)
        program.press(Role.BUTTON, "Cancel")
        program.wait_for_exit()
    story.expect_equal(story.lines("Received/update-installer.txt.starts"), ["started"] * 2,
                       "the update installer was started where it could be")
    story.expect("Version=7.2.1.4" in story.lines("ProgramData/Norvane Clipwright/Clipwright.ini"),
                 "the installed version is the old one")
    back, again = events.pop_up("upgrade_failure"), taken_again("upgrade_failure")
    story.judge(Outcome([*OFFER_TAKEN, taken_again("uninstall_action"),
                         *[back, again] * 4, back, turned_down("upgrade_failure")]))


@listed
def stuck_library(story):
    """The upgrade library never answers a check: the window can be closed, the process ends."""
    story.order(FEED_ORDERS, never_return="check")
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
    story.expect_equal(library_calls(story), ["check_upgrade_c"],
                       "the library was asked this one thing")
    story.judge(Outcome(OFFER_TAKEN))
