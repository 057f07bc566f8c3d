#!/usr/bin/env python3
"""Fails on an #include by which a floor of the product reaches another that it does not link to:
check_includes.py FLOORS.JSON SRC. The configuration writes the first; includes are written from
the second."""

import json
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"', re.MULTILINE)


def target_of(file, targets):
    """The target in whose folder a file lies, or None. Folders may lie in each other's."""
    owners = [name for name, target in targets.items()
              if pathlib.Path(target["folder"]) in file.parents]
    return max(owners, key=lambda name: len(targets[name]["folder"]), default=None)


def wrong_includes(targets, src):
    for source in sorted([*src.rglob("*.h"), *src.rglob("*.cpp")]):
        own = target_of(source, targets)
        for name in INCLUDE.findall(source.read_text(encoding="utf-8")):
            other = target_of(src / name, targets) if (src / name).is_file() else own
            if own == other or own and other in targets[own]["links"]:
                continue
            yield f"{source.relative_to(src)}: {own} must not include {name} of {other}"


def main():
    targets = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    wrong = list(wrong_includes(targets, pathlib.Path(sys.argv[2])))
    print("\n".join(wrong))
    return 1 if wrong or not targets else 0


if __name__ == "__main__":
    sys.exit(main())
