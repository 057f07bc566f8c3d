"""Where the project lies, and folders that are made afresh by what writes into them."""

import os
import shutil

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
BUILD = os.path.join(ROOT, "build")
NATIVE_PROGRAMS = os.path.join(BUILD, "native", "bin")
MARK = ".made-afresh"


def make_afresh(folder):
    """Empties a folder, or makes it; returns its absolute path. Refuses a folder with content that
    was not made by this function, unless it is below the build folder."""
    folder = os.path.abspath(folder)
    if os.path.exists(folder):
        may_be_emptied = (folder.startswith(BUILD + os.sep)
                          or os.path.exists(os.path.join(folder, MARK)))
        if os.listdir(folder) and not may_be_emptied:
            raise SystemExit(f"{folder} is neither empty nor a folder of earlier output")
        shutil.rmtree(folder)
    os.makedirs(folder)
    with open(os.path.join(folder, MARK), "w", encoding="ascii"):
        pass
    return folder
