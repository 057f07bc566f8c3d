"""Documents and pictures on the disk that are not what they were."""

import functools
import json
import os
import subprocess

from tests.faults import harness
from tests.faults.harness import EARLIER, NO_REASON, SERVED
from tests.faults.servers import PICTURE, FaultyServer, answer, dead_port, png
from tests.faults.table import row

GROUP = "cache"


@row(GROUP, "the document cut at every length, in one process")
def every_length(fault):
    fault.put_earlier_document()
    done = subprocess.run([os.path.join(fault.binaries, "truncated-documents"), fault.cached],
                          env={**fault.environment, "QT_QPA_PLATFORM": "offscreen"}, timeout=120,
                          check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          encoding="utf-8")
    fault.note(done.stdout.strip().replace("\n", ", "))
    fault.expect_equal(done.returncode, 0, "exit code")


def damaged(name, damage, expected):
    """No network, and only this document: it is left as it is, whatever is shown of it."""
    @row(GROUP, name)
    def play(fault):
        left = damage(fault.put_earlier_document())
        fault.write(fault.cached, left)
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
        fault.wait_for_main_window()
        fault.leave(expected)
        fault.expect(fault.content(fault.cached) == left, "the document was left alone")


damaged("document empty", lambda whole: b"", NO_REASON)
damaged("document cut to its first byte", lambda whole: whole[:1], NO_REASON)
damaged("document cut in the middle", lambda whole: whole[:len(whole) // 2], NO_REASON)
damaged("document cut by its last byte", lambda whole: whole[:-1], NO_REASON)
damaged("document of zero bytes, of full length", lambda whole: bytes(len(whole)), NO_REASON)
damaged("document in UTF-16", lambda whole: whole.decode().encode("utf-16"), EARLIER)
damaged("document of which one bit is wrong", lambda whole: b"\x5b" + whole[1:], NO_REASON)
damaged("document with garbage behind it", lambda whole: whole + b"\0\xff garbage", NO_REASON)
damaged("document with line ends of another system",
        lambda whole: json.dumps(json.loads(whole), indent=1).replace("\n", "\r\n").encode(),
        EARLIER)


@row(GROUP, "a damaged document is replaced by the next one fetched")
def replaced(fault):
    fault.write(fault.cached, fault.put_earlier_document()[:1000])
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)
    fault.expect(len(json.loads(fault.content(fault.cached))["problem_type"]["list"]) > 2,
                 "the document on the disk is whole again")


@functools.lru_cache
def enormous(side):
    return png(side, side)


def odd_picture(name, picture, megabytes=200):
    """Every picture is like this one. The page that shows it is as quick as ever to answer. What
    the library for pictures says about them is its own affair."""
    @row(GROUP, name)
    def play(fault):
        fault.expect_said("^libpng ")
        whole = answer(picture())
        with FaultyServer(picture=whole) as server:
            fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window()
            fault.choose(down=2)
            fault.wait_until(lambda: "PopUp_FeedbackClick" in fault.actions(), 10, "a reason chosen")
            fault.expect_memory_below(megabytes)
            fault.click(harness.MAIN, harness.CANCEL)
            fault.wait_for_exit()
        fault.note(f"{len(fault.picture_names())} pictures of {len(picture())} bytes")


odd_picture("pictures empty", lambda: b"")
odd_picture("pictures are text", lambda: b"This is no picture.\n" * 100)
odd_picture("pictures are a page of HTML", lambda: b"<html><body>Please sign in</body></html>")
odd_picture("pictures cut in the middle", lambda: PICTURE[:len(PICTURE) // 2])
odd_picture("pictures with nothing but a head", lambda: PICTURE[:33])
odd_picture("pictures of 400 million pixels, of 49 KB each", lambda: enormous(20_000))
odd_picture("pictures of 3600 million pixels", lambda: enormous(60_000))
odd_picture("pictures that claim two thousand million columns",
            lambda: PICTURE[:16] + b"\x7f\xff\xff\xff\x7f\xff\xff\xff" + PICTURE[24:])
