"""Plays stories on the real program in a sample installation, as a user would, and judges each from
outside: arguments received, files gone, events recorded, links opened, exit code. Saves a picture
of each page. Exits with 1 when anything is not as it should be, with 77 when the machine does not
allow the story."""

import argparse
import concurrent.futures
import contextlib
import os
import subprocess
import sys
import time

from tests.stories.story import STORIES, Skipped

from tests.stories import (languages, network, pages, removal,  # noqa: F401: they list stories
                           upgrade)
from tests.stories.windows import contrast, scale, session, setups  # noqa: F401

SKIPPED = 77  # as CTest is told
AT_ONCE = 3  # most of a story is waiting


def platform_story(platform):
    if platform == "windows":
        from tests.stories.windows.story import WindowsStory
        return WindowsStory
    from tests.stories.native import NativeStory
    return NativeStory


def platforms(name):
    """Where a story is played: on both builds, unless it is about what Windows alone tells."""
    windows_only = STORIES[name].__module__.startswith("tests.stories.windows.")
    return ["windows"] if windows_only else ["native", "windows"]


def print_list():
    for name, tell in STORIES.items():
        program = "sandbox" if getattr(tell, "needs_service", False) else "shipped"
        print(f"{name:32}" + ", ".join(
            platform if platform == "native" else f"{platform} ({program})"
            for platform in platforms(name)))


def play(name, platform, binaries, out):
    """Plays one story in this process; returns its exit code."""
    tell = STORIES[name]
    print(f"== {name}: {tell.__doc__}")
    needs = {need: getattr(tell, need) for need in ("desktop_size", "needs_service", "setups")
             if hasattr(tell, need)}
    with platform_story(platform)(binaries, out, **needs) as story:
        try:
            tell(story)
        except Skipped as reason:
            print(f"== {name}: SKIPPED, {reason}")
            return SKIPPED
        except AssertionError as wrong:
            story.expect(False, str(wrong))
            with contextlib.suppress(OSError, subprocess.SubprocessError):  # no display any more
                story.picture("failure")
        story.summary()
    print(f"== {name}: " + ("FAILED" if story.failures else "as it should be"))
    return 1 if story.failures else 0


def play_all(names, platform, binaries, out):
    """Plays stories side by side, each in a process of its own; returns the worst exit code."""
    def play_apart(name):
        began = time.monotonic()
        played = subprocess.run(
            [sys.executable, "-m", "tests.stories.play", name, "--platform", platform,
             "--bin", binaries, "--out", out], check=False,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
            encoding="utf-8")
        return name, played, time.monotonic() - began

    outputs = {}
    with concurrent.futures.ThreadPoolExecutor(AT_ONCE) as pool:
        print(f"Playing {len(names)} stories, {AT_ONCE} at a time: {' '.join(names)}", flush=True)
        for done in concurrent.futures.as_completed(pool.submit(play_apart, name)
                                                    for name in names):
            name, played, seconds = done.result()
            outputs[name] = played
            print(f"story {len(outputs)} of {len(names)}: {name}, "
                  f"{'failed' if played.returncode else 'done'} in {seconds:.0f} s", flush=True)
    for name in names:
        print("\n" + outputs[name].stdout.rstrip())
    return max(played.returncode for played in outputs.values())


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("stories", nargs="*", metavar="STORY")
    parser.add_argument("--list", action="store_true", help="tell which stories are played on "
                        "which build, and on Windows with which program: the one that ships or "
                        "the sandbox flavour, which asks a service of ours")
    parser.add_argument("--platform", choices=("native", "windows"), default="native")
    parser.add_argument("--bin", help="folder with the built programs")
    parser.add_argument("--out",
                        help="folder for a folder of each story, with its sandbox and pictures")
    arguments = parser.parse_args()
    if arguments.list:
        print_list()
        return 0
    if not (arguments.stories and set(arguments.stories) <= STORIES.keys()
            and arguments.bin and arguments.out):
        parser.error("needed are --bin, --out and stories of --list")
    if len(arguments.stories) > 1:
        return play_all(arguments.stories, arguments.platform, arguments.bin, arguments.out)
    name = arguments.stories[0]
    return play(name, arguments.platform, arguments.bin, os.path.join(arguments.out, name))


if __name__ == "__main__":
    sys.exit(main())
