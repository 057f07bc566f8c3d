"""The driver for programs on the accessibility bus: it sees and does what a screen reader does.
Needs a whole desktop and the distribution's gir1.2-atspi-2.0."""

import os

from tests.kit.desktop import Place
from tests.kit.driver import Driver, Role, Shown

# AT-SPI's numbers, which are its protocol; names of roles differ between its versions.
NUMBERS = {Role.BUTTON: 43, Role.CHECK_BOX: 7, Role.LABEL: 29, Role.LIST: 31, Role.LIST_ITEM: 32,
           Role.PAGE: 20, Role.PROGRESS_BAR: 42, Role.RADIO_BUTTON: 44, Role.TEXT_FIELD: 61}
ROLES = {number: role for role, number in NUMBERS.items()}


class AccessibilityDriver(Driver):
    """Starts the program. The library looks for its bus in the environment of this process, which
    becomes that of the desktop: there can be one such desktop in a process."""

    def __init__(self, desktop, command, environment, log):
        os.environ.update(desktop.environment)
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        self._atspi = Atspi
        self._error = GLib.Error
        # Starts the accessibility registry, which does not see programs that were started earlier.
        Atspi.get_desktop(0).get_child_count()
        with open(log, "ab") as output:
            super().__init__(desktop, desktop.start(
                command, stdout=output, stderr=output,
                env={**environment, "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"}))

    def find(self, role, name=None, window=None):
        return self._first(lambda node: node.get_role() == NUMBERS[role]
                           and name in (None, node.get_name()), window)

    def try_to_press(self, found):
        for i in range(found.get_n_actions()):
            if found.get_action_name(i) in ("Toggle", "Press"):
                found.do_action(i)
                return True
        return False

    def enter_text(self, found, text):
        found.set_text_contents(text)

    def focused(self):
        found = self._first(
            lambda node: node.get_state_set().contains(self._atspi.StateType.FOCUSED))
        if found is None:
            return None
        number = int(found.get_role())
        return ROLES.get(number, number), found.get_name()

    def place(self, found):
        extents = found.get_extents(self._atspi.CoordType.SCREEN)
        return Place(extents.x, extents.y, extents.width, extents.height)

    def everything_shown(self):
        found = []
        state = self._atspi.StateType

        def note(node):
            states = node.get_state_set()
            if not states.contains(state.SHOWING):
                return
            role, name = ROLES.get(int(node.get_role())), node.get_name()
            if role and (name or role is not Role.PAGE):
                found.append(Shown(role, name, states.contains(state.ENABLED),
                                   states.contains(state.FOCUSED)))
            for child in children(node):
                note(child)

        try:
            for top in self._windows():
                if top.get_state_set().contains(state.ACTIVE):
                    found.append(Shown(Role.WINDOW, top.get_name()))
                    for child in children(top):
                        note(child)
        except self._error:
            pass  # the tree changed while it was walked; the caller looks again
        return found

    def _first(self, is_wanted, window=None):
        """The first object that is shown and wanted, the outer before the inner ones, or None."""
        def search(node):
            if is_wanted(node) and node.get_state_set().contains(self._atspi.StateType.SHOWING):
                return node
            return next(filter(None, map(search, children(node))), None)

        try:
            return next(filter(None, map(search, self._windows(window))), None)
        except self._error:
            return None  # the tree changed while it was walked; the caller looks again

    def _windows(self, title=None):
        """Those of the program, of a title or of any."""
        bus = self._atspi.get_desktop(0)
        bus.clear_cache()  # it may hold what has gone, and the news of that may come late
        for application in children(bus):
            if application.get_process_id() == self.process.pid:
                application.clear_cache()
                return [top for top in children(application) if title in (None, top.get_name())]
        return []


def children(node):
    return filter(None, (node.get_child_at_index(i) for i in range(node.get_child_count())))
