"""Runs clang-tidy on every source of a build, and of those that passed once, on what has changed.

usage: python3 -m tools.tidy BUILD-FOLDER

A source has changed when its compiler's command, the content of a file that it includes, the
settings of clang-tidy or its version are others than when it passed. What it includes is known from
the build, which must be up to date; sources that it leaves out are checked every time. Sources that
passed are kept as empty files in the user's cache folder.
"""

import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys
import time

TIDY = "clang-tidy-19"
ROOT = pathlib.Path(__file__).resolve().parents[1]
CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache",
                     "clipwright-uninstaller", "clang-tidy")
KEPT_FOR = 30 * 24 * 3600  # seconds since a source was last found unchanged


def sources(build):
    """The first command of each source outside the build: others differ in folders only."""
    commands = {}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = pathlib.Path(entry["file"])
        if path.is_relative_to(ROOT) and not path.is_relative_to(ROOT / "build"):
            commands.setdefault(path, entry["command"])
    return commands


def dependencies(build):
    """The files that each object was made from."""
    listing = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    return {block.split(":", 1)[0]: [build / line.strip() for line in block.splitlines()[1:]]
            for block in listing.split("\n\n") if "(VALID)" in block}


@functools.lru_cache(maxsize=None)
def content(path):
    return hashlib.sha256(path.read_bytes()).hexdigest()


def key(source, command, files, version):
    """The same in every checkout."""
    settings = [path for folder in source.parents if folder.is_relative_to(ROOT)
                for path in [folder / ".clang-tidy"] if path.exists()]
    texts = [version, content(pathlib.Path(__file__).resolve()), command,
             *(f"{os.path.normpath(path)} {content(path)}" for path in [*settings, *files])]
    return hashlib.sha256("\n".join(texts).replace(str(ROOT), "").encode()).hexdigest()


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    version = subprocess.run(["dpkg-query", "-W", TIDY], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    CACHE.mkdir(parents=True, exist_ok=True)
    for mark in CACHE.iterdir():
        if time.time() - mark.stat().st_mtime > KEPT_FOR:
            mark.unlink()

    included = dependencies(build)
    marks = {}
    for source, command in sources(build).items():
        files = included.get(re.search(r" -o (\S+)", command).group(1))
        mark = CACHE / key(source, command, files, version) if files else None
        if mark and mark.exists():
            mark.touch()
        else:
            marks[source] = command, mark

    def check(source):
        command, mark = marks[source]
        # Of a source of several targets, -p would check the same text once for each.
        flags = shlex.split(re.sub(r" -o \S+ -c \S+$", "", command))[1:]
        run = subprocess.run([TIDY, "-quiet", source, "--", *flags], cwd=build, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        if run.returncode == 0 and mark:
            mark.touch()
        return source, run

    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for done, (source, run) in enumerate(pool.map(check, marks), 1):
            print(f"[{done}/{len(marks)}] {source.relative_to(ROOT)}")
            if run.returncode != 0:
                failed += 1
                print(run.stdout)
    print(f"{failed} of {len(marks)} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
