"""A sample installation, made by the built make-sandbox."""

import os
import shlex
import subprocess


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
