"""Folders that are made afresh by what writes into them."""

import os
import shutil

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
MARK = ".made-afresh"


def make_afresh(folder):
    """Empties a folder, or makes it. Refuses one with things in it that was not made by this, unless
    it lies where the project keeps what it builds."""
    folder = os.path.abspath(folder)
    is_ours = (folder.startswith(os.path.join(ROOT, "build") + os.sep)
               or os.path.exists(os.path.join(folder, MARK)))
    if os.path.exists(folder):
        if os.listdir(folder) and not is_ours:
            raise SystemExit(f"{folder} is not empty, and was not made by this: it stays as it is")
        shutil.rmtree(folder)
    os.makedirs(folder)
    with open(os.path.join(folder, MARK), "w", encoding="ascii"):
        pass
