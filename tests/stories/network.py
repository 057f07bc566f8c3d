"""Stories of the program on networks of every kind: silent servers, proxies, TLS."""

import contextlib
import json
import os
import shutil
import socket
import subprocess
import time

from tests.kit.desktop import PATIENCE, wait_until
from tests.kit.driver import Role
from tests.kit.folders import ROOT
from tests.kit.listener import Listener
from tests.kit.proxies import HttpProxy, SocksProxy
from tests.kit.service import Service
from tests.kit.windowwatch import WindowWatch
from tests.stories import events, removal
from tests.stories.story import (MAIN, SPLASH, Outcome, Skipped, effects, story as listed,
                                 with_service)

# Qt asks no proxy for loopback names; it does not take the machine's own name for one.
MACHINE = socket.gethostname()
BUILT_IN = os.path.join(ROOT, "Resources", "cfg", "en.cfg")
UNDECIDED = [events.POP_UP, events.feedback("UninstallCancel", "")]


def content(file):
    with open(file, "rb") as opened:
        return opened.read()


def ask(story, server):
    """Points the program at another server."""
    story.environment["CLIPWRIGHT_SANDBOX_SERVICE"] = server.url


@listed
@with_service
def closed_splash(story):
    """The user changes their mind while the program loads: it ends, no window, nothing fetched."""
    with Listener() as silent:
        ask(story, silent)
        with story.start() as program:
            program.wait_for(Role.BUTTON, "Close")
            story.note_first_window()
            story.picture("splash")
            program.press(Role.BUTTON, "Close")
            closed = time.monotonic()
            program.wait_for_exit()
            took = time.monotonic() - closed
    story.expect(0.4 < took < story.soon(),
                 f"it ended half a second after the splash was closed ({took:.1f} s)")
    story.expect(not os.path.exists(story.cache) or not any(
        files for _, _, files in os.walk(story.cache)), "nothing was fetched")
    story.judge(Outcome(requests=0))


@listed
@with_service
def closed_splash_by_keys(story):
    """The same by the window system's close key."""
    with Listener() as silent:
        ask(story, silent)
        with story.start() as program:
            program.wait_for(Role.BUTTON, "Close")
            story.ask_to_close(SPLASH)
            program.wait_for_exit()
    story.judge(Outcome(requests=0))


@listed
@with_service
def closed_splash_among_pictures(story):
    """The splash is closed when the document is there and its pictures are not: the document is
    kept, and no earlier picture is touched."""
    published = os.path.join(story.service.root, "uninstall", "cfg", "v1", "846-en.json")
    pictures = os.path.join(story.cache, "Images")
    os.makedirs(pictures)
    with Listener() as silent:
        document = content(published).replace(f'"{story.service.url}/'.encode(),
                                              f'"{silent.url}/'.encode())
        story.service.put("uninstall/cfg/v1/846-en.json", document)
        earlier = {f"pid_{product['pid']}.png": f"earlier {product['pid']}".encode()
                   for product in json.loads(document)["recommended"]["list"]}
        for name, bytes_before in earlier.items():
            with open(os.path.join(pictures, name), "wb") as file:
                file.write(bytes_before)
        with story.start() as program:
            program.wait_for(Role.BUTTON, "Close")
            wait_until(lambda: silent.connections() == 5, PATIENCE, "five pictures asked for")
            program.press(Role.BUTTON, "Close")
            program.wait_for_exit()
        story.expect_equal(silent.connections(), 5, "it asked for five pictures at once, no more")
    story.expect_equal(json.loads(content(os.path.join(story.cache, "en.cfg"))),
                       json.loads(document), "the new document is kept")
    story.expect_equal({name: content(os.path.join(pictures, name))
                        for name in os.listdir(pictures)},
                       earlier, "the earlier pictures are, and nothing else is there")
    story.judge(Outcome(requests=1))


@listed
@with_service
def silent_server(story):
    """A server that accepts and never answers: the window comes after ten seconds, and the open
    connection does not delay the end."""
    with Listener() as silent, WindowWatch(story.desktop) as windows:
        ask(story, silent)
        with story.start() as program:
            program.wait_for(Role.BUTTON, "Close")
            story.note_first_window()
            places = [story.desktop.place(story.desktop.wait_for_window(SPLASH))]
            program.wait_for(Role.RADIO_BUTTON, "Other")
            places.append(story.desktop.place(story.desktop.wait_for_window(MAIN)))
            wait_until(lambda: SPLASH in windows.hidden, PATIENCE, "the splash gone")
            program.press(Role.BUTTON, "Cancel")
            pressed = time.monotonic()
            program.wait_for_exit()
            ending = time.monotonic() - pressed
    loading = windows.shown[MAIN] - windows.shown[SPLASH]
    story.expect(9.8 <= loading < 10 + story.soon(),
                 f"the main window came ten seconds after the splash ({loading:.2f} s)")
    overlap = windows.hidden[SPLASH] - windows.shown[MAIN]
    story.expect(0 <= overlap < 0.5,
                 f"the splash went a twentieth of a second after that ({1000 * overlap:.0f} ms)")
    for name, place in zip(("splash", "main window"), places):
        story.expect_equal(place[:2], tuple(
            (whole - part) // 2 for whole, part in zip(story.desktop.size(), place[2:])),
            f"the {name} stood in the middle of the screen")
    story.expect(ending < story.soon(), f"the program ended promptly ({ending:.1f} s)")
    story.expect_equal(silent.connections(), 1, "it had tried the server")
    story.judge(Outcome(UNDECIDED, requests=0))


def look_and_leave(story, wrap=()):
    """Starts the program, waits for its window and cancels; returns how long the window took."""
    with story.start(wrap) as program:
        started = time.monotonic()
        program.wait_for(Role.RADIO_BUTTON, "Other")
        took = time.monotonic() - started
        program.press(Role.BUTTON, "Cancel")
        story.expect_equal(program.wait_for_exit(), 0, "the program ended with exit code 0")
    return took


@contextlib.contextmanager
def distant_service(story, host=MACHINE, **options):
    """Another service, which the program asks instead of the story's own."""
    with Service(os.path.join(story.out, "distant"), host, **options) as distant:
        ask(story, distant)
        yield distant


def through_proxy(story, proxy, mode):
    """Fetches everything through a real proxy that wants a name and a password."""
    number, scheme = mode
    with open(story.path("ProgramData/Norvane Clipwright/KConfig.ini"), "a",
              encoding="utf-8") as file:
        file.write(f"\n[ProxyInfo]\nMode=2\nType={number}\nServer={scheme}://127.0.0.1\n"
                   f"Port={proxy.port}\nUser=robin\nPassword=hood\n")
    with distant_service(story) as distant:
        look_and_leave(story)
        story.expect_equal(len(distant.requests()), 30, "document and pictures arrived")
    story.judge(Outcome(UNDECIDED, requests=0))


@listed
@with_service
def http_proxy(story):
    """Everything is fetched through an HTTP proxy that wants a name and a password."""
    with HttpProxy(story.out, "robin", "hood") as proxy:
        through_proxy(story, proxy, (0, "http"))
        story.expect_equal(len(proxy.addresses()), 30, "each of them asked for at the proxy")


@listed
@with_service
def socks_proxy(story):
    """Everything is fetched through a SOCKS5 proxy that wants a name and a password."""
    with SocksProxy(story.out, "robin", "hood") as proxy:
        through_proxy(story, proxy, (2, "socks5"))
        story.expect(1 <= len(proxy.connections()) <= 30,
                     f"over {len(proxy.connections())} connections of the proxy")


def apart(namespace):
    """Runs a command in a namespace of its own."""
    command = ["unshare", "--map-root-user", namespace]
    if subprocess.run([*command, "true"], check=False).returncode:
        raise Skipped(f"unshare {namespace} is not allowed here")
    return command


def trusting(authority_folder):
    """Runs a command where the system trusts this authority and no other."""
    return [*apart("--mount"), "sh", "-c",
            'mount --bind "$0" /etc/ssl/certs && exec "$@"', authority_folder]


@listed
def offline(story):
    """On a machine without a network the product is removed all the same; products are not
    advertised."""
    story.say_offline()

    def look(program):
        offered = program.find(Role.BUTTON, removal.MORE)
        story.expect(not offered, f"{removal.MORE!r} is not offered")

    removal.remove(story, removal.SUCCESS, events.COMPLETED, events.left("uninstallprocess"),
                   wrap=apart("--net"), at_the_end=look, links=[removal.GOODBYE_PAGE], requests=0,
                   keeps=effects)


@listed
@with_service
def https(story):
    """Everything is fetched over TLS, with a certificate that the machine trusts."""
    with distant_service(story, certificate_for=MACHINE) as distant:
        look_and_leave(story, trusting(distant.authority_folder))
        story.expect_equal(len(distant.requests()), 30, "document and pictures arrived")
    story.judge(Outcome(UNDECIDED, requests=0))


@listed
@with_service
def https_to_http(story):
    """A trusted server that leads elsewhere, without TLS: it is followed."""
    with distant_service(story, certificate_for=MACHINE,
                         redirect_to=story.service.url) as distant:
        look_and_leave(story, trusting(distant.authority_folder))
        story.expect_equal(len(distant.requests()), 1, "the document was asked for over TLS")
    story.judge(Outcome(UNDECIDED))  # which then came, with its pictures, without it


def refused_certificate(story, certificate_for, is_trusted):
    usual = look_and_leave(story)  # with the story's own service
    cached = os.path.join(story.cache, "en.cfg")
    shutil.copyfile(BUILT_IN, cached)
    with distant_service(story, certificate_for=certificate_for) as distant:
        took = look_and_leave(story, trusting(distant.authority_folder) if is_trusted else ())
        story.expect_equal(distant.requests(), [], "not one request was sent")
    story.expect(took < 5 + 2 * usual, f"the window did not wait ({took:.1f} s)")
    story.expect(content(BUILT_IN) == content(cached), "the earlier document is untouched")


@listed
@with_service
def https_unknown_authority(story):
    """A certificate of an unknown authority: nothing is fetched, the earlier document stays."""
    refused_certificate(story, MACHINE, is_trusted=False)


@listed
@with_service
def https_wrong_name(story):
    """A trusted certificate for another host: nothing is fetched, the earlier document stays."""
    refused_certificate(story, "other.host.example", is_trusted=True)
