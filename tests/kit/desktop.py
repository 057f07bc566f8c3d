"""A desktop of its own for a program under test: X server, session bus with accessibility, window
manager and compositor. Needs the distribution's python3, for which pyatspi is packaged."""

import contextlib
import os
import socket
import subprocess
import threading
import time

from tests.kit import processes


class Desktop:
    """Starts the desktop on entry, ends all of it on exit."""

    def __init__(self, width=1000, height=680):
        self._size = f"{width}x{height}x24"
        self._processes = contextlib.ExitStack()

    def __enter__(self):
        with self._processes:  # which are ended when one of them does not start
            os.environ["DISPLAY"] = ":" + self._start_and_ask(
                ["Xvfb", "-screen", "0", self._size, "-nolisten", "tcp", "-displayfd"])
            os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._start_and_ask(
                ["dbus-daemon", "--session", "--nofork", "--print-address"])
            self._start(["openbox"])
            # Translucent windows need a compositor to show what lies behind their corners.
            self._start(["picom", "--config", "/dev/null", "--backend", "xrender"])
            time.sleep(0.5)
            self._processes = self._processes.pop_all()
        return self

    def __exit__(self, *exception):
        self._processes.close()

    def _start(self, command, **options):
        process = processes.start(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                 **options)
        self._processes.callback(processes.end, process)

    def _start_and_ask(self, command):
        """Starts a server that writes its address to the descriptor that it is given last."""
        read_end, write_end = os.pipe()
        try:
            self._start([*command, str(write_end)], pass_fds=[write_end])
        finally:
            os.close(write_end)
        with os.fdopen(read_end) as reply:
            address = reply.readline().strip()
        if not address:
            raise OSError(f"{command[0]} does not start")
        return address

    @staticmethod
    def save_picture(file):
        """Saves what the whole screen shows."""
        subprocess.run(["import", "-window", "root", file], check=True)

    @staticmethod
    def press_keys(title, keys):
        """Presses keys, for example "alt+F4", in the window of a title."""
        window = subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", title],
                                check=True, stdout=subprocess.PIPE, encoding="ascii").stdout.split()[0]
        subprocess.run(["xdotool", "windowfocus", "--sync", window, "key", keys], check=True)

    @staticmethod
    def type_keys(*keys):
        """Presses keys in whatever window has the keyboard."""
        subprocess.run(["xdotool", "key", *keys], check=True)

    @staticmethod
    def type_text(text):
        subprocess.run(["xdotool", "type", "--delay", "20", text], check=True)


class Listener:
    """A server that accepts connections and never says a word."""

    def __init__(self):
        self._socket = socket.create_server(("127.0.0.1", 0))
        self.url = f"http://127.0.0.1:{self._socket.getsockname()[1]}"
        self._accepted = []
        self._thread = threading.Thread(target=self._accept, daemon=True)

    def __enter__(self):
        self._thread.start()
        return self

    def __exit__(self, *exception):
        self._socket.close()
        for connection in self._accepted:
            connection.close()

    def _accept(self):
        with contextlib.suppress(OSError):
            while True:
                self._accepted.append(self._socket.accept()[0])

    def connections(self):
        return len(self._accepted)


class Application:
    """A running program, seen and driven as a screen reader's user does."""

    def __init__(self, command, environment, log):
        # Not before the desktop is there: importing it looks for the bus.
        import pyatspi  # pylint: disable=import-outside-toplevel
        self._pyatspi = pyatspi
        # Starts the accessibility registry. A program that is started before it is not seen.
        pyatspi.Registry.getDesktop(0).get_child_count()
        self._log = open(log, "wb")
        self.process = processes.start(command, env=environment, stdin=subprocess.DEVNULL,
                                      stdout=self._log, stderr=subprocess.STDOUT)

    def close(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()
        self._log.close()

    def _root(self):
        desktop = self._pyatspi.Registry.getDesktop(0)
        desktop.clear_cache()  # what was seen before may be gone, and the news of it late
        for application in desktop:
            if application and application.get_process_id() == self.process.pid:
                application.clear_cache()
                return application
        return None

    def find(self, role, name=None, window=None):
        """The first showing object of a role (and name, in a window of that title), or None."""

        def is_wanted(node):
            return (node.getRoleName() == role and (name is None or node.name == name)
                    and node.getState().contains(self._pyatspi.STATE_SHOWING))

        try:
            for top in self._root() or []:
                if window is None or top.name == window:
                    found = self._pyatspi.findDescendant(top, is_wanted)
                    if found:
                        return found
            return None
        except Exception:  # the tree changes while it is walked; the caller looks again
            return None

    def wait_for(self, role, name=None, seconds=15, window=None):
        deadline = time.monotonic() + seconds
        while time.monotonic() < deadline:
            node = self.find(role, name, window)
            if node:
                return node
            if self.process.poll() is not None:
                raise AssertionError(f"the program ended before {role} {name!r} was shown")
            time.sleep(0.1)
        raise AssertionError(f"no {role} {name!r} within {seconds} s")

    def press(self, role, name=None, window=None):
        """Performs the object's own press or toggle action, once it is enabled."""
        deadline = time.monotonic() + 15
        while time.monotonic() < deadline:
            node = self.wait_for(role, name, window=window)
            actions = node.queryAction()
            for i in range(actions.nActions):
                if actions.getName(i) in ("Toggle", "Press"):
                    actions.doAction(i)
                    return node
            time.sleep(0.1)
        raise AssertionError(f"{role} {name!r} cannot be pressed")

    def focused(self):
        """Role and name of the object that has the keyboard, or None."""
        def has_keyboard(node):
            return (node.getState().contains(self._pyatspi.STATE_FOCUSED)
                    and node.getState().contains(self._pyatspi.STATE_SHOWING))

        try:
            for top in self._root() or []:
                found = self._pyatspi.findDescendant(top, has_keyboard)
                if found:
                    return found.getRoleName(), found.name
            return None
        except Exception:  # the tree changes while it is walked; the caller looks again
            return None

    def wait_for_focus(self, role, name, seconds=5):
        deadline = time.monotonic() + seconds
        while self.focused() != (role, name):
            if time.monotonic() > deadline:
                raise AssertionError(f"{role} {name!r} has not the keyboard but {self.focused()}")
            time.sleep(0.05)

    def tab_to(self, role, name):
        """Presses Tab until an object has the keyboard; returns what had it on the way."""
        way = []
        while self.focused() != (role, name):
            assert len(way) < 40, f"Tab does not lead to {role} {name!r} but to {way}"
            before = self.focused()
            Desktop.type_keys("Tab")
            deadline = time.monotonic() + 3
            while self.focused() in (before, None) and time.monotonic() < deadline:
                time.sleep(0.05)
            way.append(self.focused())
        return way

    def place(self, role, name):
        """Where an object is on the screen."""
        return self.wait_for(role, name).queryComponent().getExtents(0)

    @staticmethod
    def type_into(node, text):
        node.queryEditableText().setTextContents(text)

    def wait_for_exit(self, seconds=15):
        return self.process.wait(timeout=seconds)


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
