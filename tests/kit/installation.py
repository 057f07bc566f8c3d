"""A sample installation, made by the built make-sandbox."""

import json
import os
import shlex
import subprocess

RECORD = "Temp/Norvane Clipwright Uninstaller/Analystic/data_api.jsonl"


def make(binaries, root):
    """Makes one below root; returns what the program must find in its environment to see it."""
    made = subprocess.run([os.path.join(binaries, "make-sandbox"), root], check=True,
                          stdout=subprocess.PIPE, encoding="utf-8")
    return dict(assignment.split("=", 1) for assignment in shlex.split(made.stdout))


def lines(record):
    """What a program of the installation has recorded; nothing when it was never started."""
    try:
        with open(record, encoding="utf-8") as file:
            return file.read().splitlines()
    except FileNotFoundError:
        return []


def browser_folder(folder, record):
    """A folder for PATH whose xdg-open notes the links that it is given, and the display scale that
    it inherits beside them."""
    os.makedirs(folder, exist_ok=True)
    script = os.path.join(folder, "xdg-open")
    with open(script, "w", encoding="utf-8") as file:
        file.write(f"#!/bin/sh\nprintf '%s\\n' \"$1\" >> '{record}'\n"
                   f"printf '%s\\n' \"$QT_SCALE_FACTOR\" >> '{record}.scale'\n")
    os.chmod(script, 0o755)
    return folder


def environment(binaries, root, desktop):
    """Makes an installation; returns what a program finds in its environment that runs in it on a
    desktop. Links that it opens are noted."""
    variables = {**desktop.environment, **make(binaries, root)}
    browser = browser_folder(os.path.join(root, "bin"), os.path.join(root, "Received/links.txt"))
    # The X11 plugin warns of windows that the window manager removed a moment before it did; debug
    # lines are no warnings.
    return {**variables, "PATH": browser + os.pathsep + variables["PATH"],
            "QT_LOGGING_RULES": "qt.qpa.xcb=false;default.debug=false"}


class Installation:
    """The files of one below `root`, which the derived class sets."""

    def path(self, relative=""):
        return os.path.join(self.root, relative)

    def lines(self, relative):
        return lines(self.path(relative))

    def order(self, relative, **orders):
        """Gives orders to a sample program or library, in place of those of the same names."""
        kept = [line for line in self.lines(relative) if line.partition("=")[0] not in orders]
        with open(self.path(relative), "w", encoding="utf-8") as file:
            for line in [*(f"{key}={value}" for key, value in orders.items()), *kept]:
                file.write(line + "\n")

    def calls(self):
        """Those of the analytics library."""
        return [json.loads(line) for line in self.lines(RECORD)]
