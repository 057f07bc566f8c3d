"""The network does its worst while the configuration document and its pictures are fetched. The
window comes all the same, at the latest after the ten seconds that loading may take, and a document
of an earlier run is kept byte for byte."""

import gzip
import itertools
import time

from tests.faults.harness import BUILT_IN, EARLIER, PROMPT, SERVED
from tests.faults.servers import PICTURE, FaultyServer, answer, dead_port
from tests.faults.table import row

GROUP = "network"


def keeps_earlier(fault, url, at_least=0.0, within=PROMPT):
    """Whatever became of the document: the one of an earlier run is shown and untouched."""
    earlier = fault.put_earlier_document()
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=url)
    fault.wait_for_main_window(at_least, within)
    fault.leave(EARLIER)
    fault.expect(fault.content(fault.cached) == earlier, "earlier document byte for byte intact")


def bad_document(name, document=None, at_least=0.0, within=PROMPT, accept=None, memory=None):
    @row(GROUP, name)
    def play(fault):
        earlier = fault.put_earlier_document()
        with FaultyServer(document, accept=accept) as server:
            fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window(at_least, within)
            if memory:
                fault.expect_memory_below(memory)
            fault.leave(EARLIER)
        fault.expect(fault.content(fault.cached) == earlier,
                     "earlier document byte for byte intact")
        if not accept:
            fault.expect(server.requests, "the document was asked for")
        fault.expect(not any(".png" in path for path in server.requests), "no picture asked for")


# The whole of the ten seconds, and what starting up takes besides.
FULL_TIME = {"at_least": 9.9, "within": 16.0}


def reset_in_the_middle(exchange):
    whole = answer(exchange.document())
    exchange.send(whole[:len(whole) // 2])
    time.sleep(0.2)
    exchange.reset()


def stall_in_the_middle(exchange):
    whole = answer(exchange.document())
    exchange.send(whole[:len(whole) // 2])
    exchange.stall()


def drip(exchange):
    for byte in answer(exchange.document()):
        exchange.send(bytes([byte]))
        time.sleep(0.1)


def cut_short(exchange):
    content = exchange.document()
    exchange.send(answer(content[:-100], length=len(content)))


def cut_short_unannounced(exchange):
    exchange.send(answer(exchange.document()[:-100], length=-1))


def endless_document(exchange):
    exchange.send(answer(b'{"problem_type":{"list":[', length=-1))
    while not exchange.server.is_closing:
        exchange.send(b'{"value":1},' * 8192)


def endless_headers(exchange):
    exchange.send(b"HTTP/1.1 200 OK\r\n")
    for number in itertools.count():
        if exchange.server.is_closing:
            return
        exchange.send(f"X-Header-{number}: {'x' * 4000}\r\n".encode() * 16)


def endless_early_hints(exchange):
    while not exchange.server.is_closing:
        exchange.send(b"HTTP/1.1 103 Early Hints\r\n\r\n")
        time.sleep(0.01)


def redirect_to_itself(exchange):
    exchange.send(answer(b"", "302 Found", None, f"Location: {exchange.path}"))


def redirect_in_a_ring(exchange):
    number = int(exchange.path.partition("?")[2].partition("&")[0] or 0)
    exchange.send(answer(b"moved", "302 Found", None,
                         f"Location: /ring?{(number + 1) % 3}&.json"))


def bad_gzip(exchange):
    exchange.send(answer(gzip.compress(exchange.document())[:-30], "200 OK", None,
                         "Content-Encoding: gzip"))


def gzip_bomb(exchange):
    # A kilobyte for each megabyte of blanks.
    exchange.send(answer(gzip.compress(b" " * (512 * 1024 * 1024), 9), "200 OK", None,
                         "Content-Encoding: gzip"))


def bad_chunks(exchange):
    exchange.send(b"HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nZZZZ\r\n{}\r\n-5\r\n")


@row(GROUP, "nobody listens at the address")
def refused(fault):
    keeps_earlier(fault, dead_port())


@row(GROUP, "the host's name does not resolve")
def unknown_host(fault):
    keeps_earlier(fault, "http://no-such-host.invalid")


@row(GROUP, "the address is no address")
def no_address(fault):
    keeps_earlier(fault, "http://[not:an:address")


@row(GROUP, "the address has an unknown scheme")
def unknown_scheme(fault):
    keeps_earlier(fault, "gopher://127.0.0.1")


@row(GROUP, "TLS is spoken to a server that speaks none")
def tls_to_plain(fault):
    with FaultyServer(accept=lambda exchange: exchange.send(answer(b"", "400 Bad Request"))) as server:
        keeps_earlier(fault, server.url.replace("http:", "https:"))


@row(GROUP, "no network, nothing cached, nothing ever was")
def first_start_offline(fault):
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
    fault.wait_for_main_window()
    fault.leave(BUILT_IN)
    fault.expect(fault.content(fault.cached) is None, "no document was made up")


bad_document("accepted, then silent", accept=lambda exchange: exchange.stall(), **FULL_TIME)
# A reset that comes while the framework still connects may never be told by it, on a busy machine in
# one case of ten. Then the limit of the loading phase ends the wait.
bad_document("connection reset at once", accept=lambda exchange: exchange.reset(), within=12.0)
bad_document("connection closed at once", accept=lambda exchange: exchange.connection.close())
bad_document("answer of random bytes", accept=lambda exchange: exchange.send(bytes(range(256)) * 8))
bad_document("reset in the middle of the document", reset_in_the_middle)
bad_document("stalled in the middle of the document", stall_in_the_middle, **FULL_TIME)
bad_document("document drips in, a byte at a time", drip, **FULL_TIME)
bad_document("document shorter than announced", cut_short)
bad_document("document cut short without a word", cut_short_unannounced)
bad_document("document without end", endless_document, within=16.0, memory=300)
bad_document("headers without end", endless_headers, within=16.0, memory=300)
bad_document("interim answers without end", endless_early_hints, within=16.0)
bad_document("404 with a page of HTML", answer("<html>no such page</html>", "404 Not Found"))
bad_document("500 with a document that looks good", lambda exchange: exchange.send(
    answer(exchange.document(), "500 Internal Server Error")))
bad_document("200 with nothing", answer(b""))
bad_document("204, no content", answer(b"", "204 No Content", -1))
bad_document("captive portal: 200 with HTML", answer("<!doctype html><title>Log in</title>"))
bad_document("JSON that is no object", answer("[1, 2, 3]"))
bad_document("object without a reason", answer('{"problem_type": {"list": []}}'))
bad_document("reasons of the wrong kind", answer('{"problem_type": {"list": [1, "x", null, []]}}'))
bad_document("a hundred thousand brackets", answer("[" * 100_000))
bad_document("UTF-16 in place of UTF-8", lambda exchange: exchange.send(
    answer(exchange.document().decode().encode("utf-16"))))
bad_document("redirected to itself, for good", redirect_to_itself, **FULL_TIME)
bad_document("redirected in a ring, for good", redirect_in_a_ring, **FULL_TIME)
bad_document("redirected to a file of this machine",
             answer(b"", "302 Found", None, "Location: file:///etc/passwd"))
bad_document("redirected to nowhere", answer(b"", "302 Found", None, "Location: http://"))
bad_document("asks for a name and a password",
             answer(b"", "401 Unauthorized", None, 'WWW-Authenticate: Basic realm="x"'))
bad_document("compressed document that is damaged", bad_gzip)
# Qt unpacks what has arrived before anybody may object: there is no less memory than the bomb's.
bad_document("half a gigabyte of blanks, compressed", gzip_bomb, within=16.0, memory=800)
bad_document("chunks of impossible sizes", bad_chunks)


@row(GROUP, "large but honest document")
def large_document(fault):
    with FaultyServer(lambda exchange: exchange.send(answer(
            exchange.document()[:-1] + b', "notes": "' + b"x" * 4_000_000 + b'"}'))) as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)


def bad_pictures(name, picture, arrived=0, at_least=0.0, within=PROMPT):
    """The document arrives, its pictures do not: it is shown without them, none is left in part."""
    @row(GROUP, name)
    def play(fault):
        with FaultyServer(picture=picture) as server:
            fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window(at_least, within)
            fault.leave(SERVED)
        saved = fault.picture_names()
        fault.note(f"{len(saved)} of {len(set(server.requests)) - 1} pictures kept")
        if arrived is not None:
            fault.expect_equal(len(saved), arrived, "pictures kept")
        whole = all(fault.picture(name) == PICTURE for name in saved)
        fault.expect(whole, "every picture kept is whole")


def slow_picture(exchange):
    time.sleep(3)
    exchange.send(answer(PICTURE))


def every_other_picture(exchange):
    if sum(map(ord, exchange.path)) % 2:
        exchange.send(answer(PICTURE)[:-10])
        exchange.reset()
    else:
        exchange.send(answer(PICTURE))


def endless_picture(exchange):
    exchange.send(answer(PICTURE, length=-1))
    while not exchange.server.is_closing:
        exchange.send(bytes(65536))
        time.sleep(0.002)


bad_pictures("every picture is missing", answer("<html></html>", "404 Not Found"))
bad_pictures("every picture's connection is reset", lambda exchange: exchange.reset())
bad_pictures("every picture is shorter than announced", answer(PICTURE, length=len(PICTURE) + 9))
bad_pictures("every other picture is cut off", every_other_picture, arrived=None)
bad_pictures("every picture takes three seconds", slow_picture, arrived=None, **FULL_TIME)
bad_pictures("every picture stalls", lambda exchange: exchange.stall(), **FULL_TIME)
bad_pictures("every picture is without end", endless_picture, within=16.0)
bad_pictures("every picture is redirected to itself", redirect_to_itself, **FULL_TIME)
bad_pictures("every picture is redirected to a file of this machine",
             answer(b"", "302 Found", None, "Location: file:///etc/passwd"))


@row(GROUP, "the server dies while the pictures are fetched")
def server_dies(fault):
    def stall_after_some(exchange):
        if len(server.requests) < 8:
            exchange.send(answer(PICTURE))
        else:
            server.close()
            exchange.reset()

    with FaultyServer(picture=stall_after_some) as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)
    fault.expect(fault.picture_names(), "the pictures that came are kept")
