"""Stories of the display's scale: it is measured by the physical pixels that the system hides from
programs that know no DPI, and the window has that size."""

from tests.kit.driver import Role
from tests.stories import events
from tests.stories.story import MAIN, Outcome, story as listed


def scale(story, dots_per_inch, factor):
    story.prefix.set_registry("HKCU\\Control Panel\\Desktop", "LogPixels", "REG_DWORD",
                              dots_per_inch)
    story.prefix.end_session()  # it is read when a session begins
    with story.start() as program:
        program.wait_for(Role.BUTTON, "Cancel")
        window = story.desktop.wait_for_keyboard(MAIN)
        story.expect_equal(story.desktop.place(window)[2:], (720 * factor, 480 * factor),
                           f"at {dots_per_inch} dots per inch the factor is {factor}")
        story.picture("feedback")
        story.desktop.press_keys("alt+F4", title=MAIN)
        program.wait_for_exit()
    story.judge(Outcome([events.POP_UP]))


@listed
def scale_144_on_windows_7(story):
    """Before Windows 8.1 the dots per inch count, which are 96 to a program that knows no DPI."""
    story.prefix.set_registry("HKCU\\Software\\Wine", "Version", "REG_SZ", "win7")
    scale(story, 144, 1)


@listed
def scale_96(story):
    """The usual scale."""
    scale(story, 96, 1)


@listed
def scale_120(story):
    """A scale of five quarters."""
    scale(story, 120, 1.25)


@listed
def scale_144(story):
    """A scale of three halves is rounded up."""
    scale(story, 144, 2)


@listed
def scale_192(story):
    """A scale of two."""
    scale(story, 192, 2)


@listed
def scale_288(story):
    """A scale of three."""
    scale(story, 288, 3)


scale_288.desktop_size = (2200, 1480)
