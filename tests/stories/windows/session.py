"""Stories of the user's session, which ends while the program runs."""

import os

from tests.kit.desktop import PATIENCE, wait_until
from tests.kit.driver import Role
from tests.stories import events
from tests.stories.removal import (GOODBYE_PAGE, ONCE, QUESTION, RUNNING, SILENTLY, SUCCESS)
from tests.stories.story import MAIN, Outcome, effects, story as listed


def end_session(story):
    """Asks all programs, as a log-off does."""
    story.prefix.run("wineboot", "--end-session")


def ask_for_confirmation(program):
    program.press(Role.RADIO_BUTTON, ONCE)
    program.press(Role.BUTTON, "Continue")
    program.wait_for(Role.LABEL, QUESTION)


@listed
def session_end(story):
    """Log-off is refused, and the system told why, while the uninstaller runs; afterwards the
    program ends in order."""
    story.environment["WINEDEBUG"] = "fixme+system"  # Wine does no more than log the reason
    with story.start() as program:
        ask_for_confirmation(program)
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, RUNNING)
        end_session(story)
        program.wait_for(Role.LABEL, SUCCESS)
        with open(os.path.join(story.out, "program.log"), encoding="utf-8") as file:
            log = file.read()
        told, taken_back = (log.find(f"ShutdownBlockReason{done}")
                            for done in ("Create", "Destroy"))
        story.expect(RUNNING in log and 0 <= told < taken_back,
                     "the system is told why the session cannot end, until it can")
        end_session(story)
        program.wait_for_exit()
    story.judge(Outcome(
        arguments=SILENTLY, keeps=effects, links=[GOODBYE_PAGE],
        events=[events.POP_UP, events.feedback("UninstallContinue", "62"),
                events.reconfirm("Remove"), events.COMPLETED]))


@listed
def session_end_in_a_question(story):
    """Log-off while a question is open ends the program in order: it has not been answered."""
    with story.start() as program:
        ask_for_confirmation(program)
        end_session(story)
        program.wait_for_exit()
    story.judge(Outcome([events.POP_UP, events.feedback("UninstallContinue", "62")]))


@listed
def session_end_by_force(story):
    """A log-off that is not to be refused loses no event and kills no uninstaller."""
    with story.start() as program:
        ask_for_confirmation(program)
        program.press(Role.BUTTON, "Remove")
        program.wait_for(Role.LABEL, RUNNING)
        ender = os.path.join(story.binaries, "force-session-end.exe")
        story.expect_equal(story.prefix.run(ender, MAIN), 0, "the window is told")
        program.wait_for_exit()
    wait_until(lambda: all(map(effects, story.files_left())), PATIENCE, "the uninstaller's end")
    story.judge(Outcome(
        arguments=SILENTLY, keeps=effects,
        events=[events.POP_UP, events.feedback("UninstallContinue", "62"),
                events.reconfirm("Remove")]))
