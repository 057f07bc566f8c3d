"""Documents and pictures on the disk that are not what they were."""

import json
import os
import subprocess

from tests.faults.harness import CACHED, CANCEL, EARLIER, MAIN, NO_REASON, do
from tests.faults.servers import PICTURE, SERVED, answer, png


def cut_at_every_length(fault):
    done = subprocess.run([os.path.join(fault.binaries, "truncated-documents"),
                           fault.path(CACHED)], env={**fault.environment,
                                                     "QT_QPA_PLATFORM": "offscreen"},
                          check=False, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          encoding="utf-8", timeout=600)  # twelve, had it a processor to itself
    fault.note(done.stdout.strip().replace("\n", ", "))
    fault.expect_equal(done.returncode, 0, "exit code")


def damaged(change, shown=NO_REASON):
    """No network, and only this document, which is left as it is, whatever is shown of it."""
    return [do.put_earlier_document(change), do.open(), do.leave(shown)]


def is_whole_again(fault):
    reasons = json.loads(fault.content(CACHED))["problem_type"]["list"]
    fault.expect(len(reasons) > 2, "the document on the disk is whole again")


def odd_pictures(make):
    """Every picture is like this one. The page that shows them answers as quickly as ever. The
    library for pictures may print what it thinks of them."""
    def serve(fault):
        picture = make()
        fault.serve(picture=answer(picture))
        fault.note(f"pictures of {len(picture)} bytes")

    return [serve, do.expect_output("^libpng "), do.open(), do.choose(down=2),
            do.wait_for_event("PopUp_FeedbackClick"), do.expect_memory_below(200),
            do.click(MAIN, CANCEL), do.wait_for_exit()]


ROWS = {
    "the document cut at every length, in one process": [
        do.put_earlier_document(), cut_at_every_length],
    "document empty": damaged(lambda whole: b""),
    "document cut to its first byte": damaged(lambda whole: whole[:1]),
    "document cut in the middle": damaged(lambda whole: whole[:len(whole) // 2]),
    "document cut by its last byte": damaged(lambda whole: whole[:-1]),
    "document of zero bytes, of full length": damaged(lambda whole: bytes(len(whole))),
    "document in UTF-16": damaged(lambda whole: whole.decode().encode("utf-16"), EARLIER),
    "document of which one bit is wrong": damaged(lambda whole: b"\x5b" + whole[1:]),
    "document with garbage behind it": damaged(lambda whole: whole + b"\0\xff garbage"),
    "document with line ends of another system": damaged(
        lambda whole: json.dumps(json.loads(whole), indent=1).replace("\n", "\r\n").encode(),
        EARLIER),
    "a damaged document is replaced by the next one fetched": [
        do.put_earlier_document(lambda whole: whole[:1000]), do.serve(), do.open(),
        do.leave(SERVED), is_whole_again],
    "pictures empty": odd_pictures(lambda: b""),
    "pictures are text": odd_pictures(lambda: b"This is no picture.\n" * 100),
    "pictures are a page of HTML": odd_pictures(
        lambda: b"<html><body>Please sign in</body></html>"),
    "pictures cut in the middle": odd_pictures(lambda: PICTURE[:len(PICTURE) // 2]),
    "pictures with nothing but a head": odd_pictures(lambda: PICTURE[:33]),
    "pictures of 400 million pixels, of 49 KB each": odd_pictures(lambda: png(20_000, 20_000)),
    "pictures of 3600 million pixels": odd_pictures(lambda: png(60_000, 60_000)),
    "pictures that claim two thousand million columns": odd_pictures(
        lambda: PICTURE[:16] + b"\x7f\xff\xff\xff\x7f\xff\xff\xff" + PICTURE[24:]),
}
