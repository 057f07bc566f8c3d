"""The driver for Windows programs under Wine: it sees what UI Automation tells a screen reader, and
uses mouse and keyboard as a user does, at the places that UI Automation tells."""

import json
import socket
import subprocess

from tests.kit.desktop import PATIENCE, Place
from tests.kit.driver import Driver, Role, Shown

# UI Automation's control types.
TYPES = {Role.BUTTON: 50000, Role.CHECK_BOX: 50002, Role.LABEL: 50020, Role.LIST: 50008,
         Role.LIST_ITEM: 50007, Role.PAGE: 50026, Role.PROGRESS_BAR: 50012,
         Role.RADIO_BUTTON: 50013, Role.TEXT_FIELD: 50004}
ROLES = {number: role for role, number in TYPES.items()}


class UiAutomationDriver(Driver):
    """Starts the program of a Wine prefix, and beside it the reader that uia_reader.cpp
    describes."""

    interval = 0.3  # each look keeps the program busy for as long

    def __init__(self, desktop, prefix, command, reader, log):
        with open(log, "wb") as output:
            super().__init__(desktop, desktop.start(command, env=prefix.environment,
                                                    stdout=output, stderr=output))
        program = command[-1].rpartition("\\")[2]
        # Not over the network, which the program may be kept from.
        self._connection, other_end = socket.socketpair()
        with other_end:
            self._reader = desktop.start(["wine", reader, program], env=prefix.environment,
                                         stdin=other_end, stdout=other_end)
        self._connection.settimeout(PATIENCE)
        self._answers = self._connection.makefile(encoding="utf-8")

    def __exit__(self, *exception):
        super().__exit__(*exception)
        self._answers.close()
        self._connection.close()
        try:
            self._reader.wait(timeout=PATIENCE)
        except subprocess.TimeoutExpired:
            self._reader.kill()

    def find(self, role, name=None, window=None):
        return self._first(type=TYPES[role], name=name, window=window)

    def try_to_press(self, found):
        if not found["enabled"] or not found["rectangle"]:  # the latter when it has just gone
            return False
        left, top, width, height = found["rectangle"]
        # Wine tells a button of the mouse over it a little later.
        self.desktop.click_at(left + width // 2, top + height // 2, hover=0.2)
        return True

    def enter_text(self, found, text):
        self.try_to_press(found)
        self.desktop.press_keys("ctrl+a")
        self.desktop.type_text(text)

    def focused(self):
        found = self._first(focus=True)
        return found and (ROLES.get(found["type"], found["type"]), found["name"])

    def place(self, found):
        return Place(*found["rectangle"])

    def everything_shown(self):
        found = []

        def note(node):
            role = ROLES.get(node["type"])
            if node["offscreen"] is False and role and (node["name"] or role is not Role.PAGE):
                found.append(Shown(role, node["name"], node["enabled"], node["focused"]))
            for child in node["children"]:
                note(child)

        for top in self._ask(whole=True):
            found.append(Shown(Role.WINDOW, top["name"]))
            for child in top["children"]:
                note(child)
        return found

    def _first(self, **wish):
        return next(iter(self._ask(**wish)), None)

    def _ask(self, **request):
        given = {key: value for key, value in request.items() if value is not None}
        self._connection.sendall(json.dumps(given).encode() + b"\n")
        return json.loads(self._answers.readline())
