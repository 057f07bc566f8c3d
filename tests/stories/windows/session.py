"""Stories of the user's session, which ends while the program runs."""

import os

from tests.kit.desktop import PATIENCE, wait_until
from tests.kit.driver import Role
from tests.kit.installation import RECORD
from tests.kit.listener import Listener
from tests.stories import events, upgrade
from tests.stories.removal import (GOODBYE_PAGE, MORE, ONCE, QUESTION, RUNNING, SILENTLY, SUCCESS,
                                   TAB)
from tests.stories.story import MAIN, Outcome, effects, everything, story as listed

UPGRADED = "Upgrade completed"
VERSION = "7.3.0.1"
LEAVING = [events.POP_UP, events.feedback("UninstallContinue", "62")]
REMOVING = [*LEAVING, events.reconfirm("Remove")]


def end_session(story):
    """Asks all programs, as a log-off does."""
    story.prefix.run("wineboot", "--end-session")


def end_session_by_force(story):
    ender = os.path.join(story.binaries, "force-session-end.exe")
    story.expect_equal(story.prefix.run(ender, MAIN), 0, "the window is told")


def judge(story, expected):
    """Judges one run of several."""
    story.judge(expected)
    os.remove(story.path(RECORD))


def ask_for_confirmation(program):
    program.press(Role.RADIO_BUTTON, ONCE)
    program.press(Role.BUTTON, "Continue")
    program.wait_for(Role.LABEL, QUESTION)


def remove(program):
    ask_for_confirmation(program)
    program.press(Role.BUTTON, "Remove")
    program.wait_for(Role.LABEL, RUNNING)


def take_offer(program):
    program.press(Role.RADIO_BUTTON, upgrade.OUT_OF_DATE)
    program.press(Role.BUTTON, upgrade.OFFER)


def install(story, program):
    """Takes the offer, and waits for the update installer, which then takes its time."""
    story.order(upgrade.INSTALLER + ".txt", delay=10000)
    take_offer(program)
    story.wait_for_file(story.path("Received/update-installer.txt"))


def is_updated(story):
    return f"Version={VERSION}" in story.lines("ProgramData/Norvane Clipwright/Clipwright.ini")


def refuse(story, program, reason, outcome):
    """Asks for a log-off, which is refused until the outcome is shown."""
    end_session(story)
    program.wait_for(Role.LABEL, outcome)
    with open(os.path.join(story.out, "program.log"), encoding="utf-8") as file:
        log = file.read()
    told, taken_back = (log.find(f"ShutdownBlockReason{done}") for done in ("Create", "Destroy"))
    story.expect(reason in log and 0 <= told < taken_back,
                 "the system is told why the session cannot end, until it can")


@listed
def session_end(story):
    """Log-off is refused, and the system told why, while the uninstaller or the update installer
    runs; afterwards the program ends in order."""
    story.environment["WINEDEBUG"] = "fixme+system"  # Wine does no more than log the reason
    with story.start() as program:
        install(story, program)
        refuse(story, program, upgrade.UPGRADING, UPGRADED)
        end_session(story)
        program.wait_for_exit()
    judge(story, Outcome([*upgrade.OFFER_TAKEN, ("DoRetain", "UpgradeCompleted", {})]))
    with story.start() as program:
        remove(program)
        refuse(story, program, RUNNING, SUCCESS)
        end_session(story)
        program.wait_for_exit()
    judge(story, Outcome(arguments=SILENTLY, keeps=effects, links=[GOODBYE_PAGE],
                         events=[*REMOVING, events.COMPLETED]))


@listed
def session_end_at_rest(story):
    """Log-off ends the program in order wherever nothing works on the product: while it loads or
    downloads, with a question or a message that has not been answered."""
    story.order(upgrade.FEED_ORDERS, download_delay=3000)

    def end_at(arrive, expected, keeps=everything):
        with story.start() as program:
            arrive(program)
            end_session(story)
            program.wait_for_exit()
        judge(story, Outcome(expected, keeps=keeps))

    def arrive_at_message(program):
        with open(story.path("Feed/check.json"), "w", encoding="utf-8") as answer:
            answer.write('{"errcode": "7"}')
        take_offer(program)
        program.wait_for(Role.LABEL, "Failed to check update!")

    def arrive_at_download(program):
        take_offer(program)
        program.wait_for(Role.LABEL, upgrade.UPGRADING)

    def arrive_at_products(program):
        os.remove(os.path.join(story.product_folder(), "unins000.dat"))
        ask_for_confirmation(program)
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, "Uninstall Failed")
        program.press(Role.BUTTON, MORE)
        program.wait_for(TAB, "Creativity")

    end_at(lambda program: program.wait_for(Role.BUTTON, "Continue"), [events.POP_UP])
    end_at(ask_for_confirmation, LEAVING)
    end_at(arrive_at_download, upgrade.OFFER_TAKEN)
    end_at(arrive_at_message, upgrade.OFFER_TAKEN)
    end_at(arrive_at_products,
           [*REMOVING, events.FAILED, ("DoUninstall", "UninstallCompleted",
                                       {"ButtonClick": "Click_more", "result": "failure"})],
           keeps=lambda file: file != "unins000.dat")
    with Listener() as silent:
        settings = story.path("ProgramData/Norvane Clipwright/KConfig.ini")
        with open(settings, "a", encoding="utf-8") as file:
            file.write("\n[ProxyInfo]\nMode=2\nType=0\nServer=http://127.0.0.1\n"
                       f"Port={silent.url.rpartition(':')[2]}\n")
        end_at(lambda program: program.wait_for(Role.BUTTON, "Close"), [],
               keeps=lambda file: file != "unins000.dat")


@listed
def session_end_by_force(story):
    """A log-off that is not to be refused loses no event and kills no installer or uninstaller."""
    with story.start() as program:
        install(story, program)
        end_session_by_force(story)
        program.wait_for_exit()
    story.expect(not is_updated(story), "the update installer still runs")
    wait_until(lambda: is_updated(story), PATIENCE, "the update installer's end")
    judge(story, Outcome(upgrade.OFFER_TAKEN))
    with story.start() as program:
        remove(program)
        end_session_by_force(story)
        program.wait_for_exit()
    wait_until(lambda: all(map(effects, story.files_left())), PATIENCE, "the uninstaller's end")
    judge(story, Outcome(arguments=SILENTLY, keeps=effects, events=REMOVING))
