"""A virtual desktop for programs under test, with its windows, keyboard and mouse. Needs the
distribution's python3-xlib and xdotool."""

import collections
import contextlib
import os
import re
import subprocess
import threading
import time

from Xlib import X, Xatom, Xutil, display, error

from tests.kit.processes import Processes, end

# Seconds after which something is missing. No measure of speed: it may be the machine that is slow.
PATIENCE = 60

Place = collections.namedtuple("Place", "x y width height")


def wait_until(condition, seconds, what, interval=0.05):
    """Waits for a condition and returns its value; raises AssertionError when it does not come.
    What it is may be a function, which is called at the end."""
    deadline = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise AssertionError(f"not within {seconds:g} s: {what() if callable(what) else what}")
        time.sleep(interval)


class Desktop:
    """A desktop between entry and exit. BARE is an X server alone, MANAGED has a window manager,
    WHOLE also a compositor and a session bus with accessibility. Several desktops may exist in one
    process; each is to be used by one thread at a time.

    Programs appear on it when they are started with its environment. This process's own environment
    stays as it is."""

    BARE, MANAGED, WHOLE = range(3)

    _starting = threading.Lock()  # servers that look for a free number at once may find the same

    def __init__(self, extent=WHOLE, width=1000, height=680):
        self._extent = extent
        self._size = f"{width}x{height}x24"
        self._entered = contextlib.ExitStack()
        self._processes = None
        self._server = self._manager = None
        self._display = self._root = None
        self.environment = {name: value for name, value in os.environ.items()
                            if name not in ("WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}

    def __enter__(self):
        with self._entered:  # ends what was started when something else does not start
            self._processes = self._entered.enter_context(Processes())
            self._start_server()
            # Without an address, programs would start a bus of their own and leave it behind.
            bus = "unix:path=/nonexistent"
            if self._extent == self.WHOLE:
                _, bus = self._processes.start_and_ask(
                    ["dbus-daemon", "--session", "--nofork", "--print-address"],
                    env=self.environment)
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus
            self._display = self._entered.enter_context(
                contextlib.closing(display.Display(self.environment["DISPLAY"])))
            # A key whose release is late on a busy machine must not count as held.
            self._display.change_keyboard_control(auto_repeat_mode=X.AutoRepeatModeOff)
            self._display.set_error_handler(lambda *ignored: None)  # windows go while looked at
            self._root = self._display.screen().root
            if self._extent >= self.MANAGED:
                self._start_manager()
            if self._extent == self.WHOLE:
                self._start_compositor()
            self._entered = self._entered.pop_all()
        return self

    def __exit__(self, *exception):
        with contextlib.suppress(error.ConnectionClosedError, OSError):
            self._entered.close()

    def _start_server(self):
        with self._starting:
            for _ in range(5):
                self._server, number = self._processes.start_and_ask(
                    ["Xvfb", "-screen", "0", self._size, "-nolisten", "tcp", "-noreset",
                     "-displayfd"])
                if number:
                    self.environment["DISPLAY"] = ":" + number
                    return
        raise OSError("Xvfb does not start")

    def _start_manager(self):
        """Starts the window manager, and waits until it closes a window by its key. A window that
        appears earlier may never be managed, and a key be lost: the server tells of a new keyboard
        with the first key, and the manager then grabs its keys anew."""
        self._manager = self.start(["openbox"])
        wait_until(lambda: self._root_property("_NET_SUPPORTING_WM_CHECK"), PATIENCE,
                   "a window manager")
        probe = self._root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        probe.set_wm_hints(flags=Xutil.InputHint, input=1)
        probe.set_wm_protocols([self._display.intern_atom("WM_DELETE_WINDOW")])
        pauses = iter(2 ** count / 4 for count in range(20))
        mapped_again = time.monotonic()

        def is_closed():
            nonlocal mapped_again
            if self.has_keyboard(probe.id):
                self.press_keys("alt+F4")
            elif not self._is_managed(probe.id) and time.monotonic() >= mapped_again:
                mapped_again = time.monotonic() + next(pauses)
                probe.unmap()
                probe.map()
            return any(self._display.next_event().type == X.ClientMessage
                       for _ in range(self._display.pending_events()))

        wait_until(is_closed, PATIENCE, "a window that the window manager closes")
        probe.destroy()  # which the manager sees after the keys
        wait_until(lambda: not self._is_managed(probe.id), PATIENCE, "the window's end")

    def _start_compositor(self):
        """Without one, a translucent window does not show what lies behind it. It paints the whole
        screen each time, because picom 12 leaves holes between two parts of a window that change at
        once."""
        self.start(["picom", "--config", "/dev/null", "--backend", "xrender", "--no-use-damage"])
        selection = self._display.intern_atom("_NET_WM_CM_S0")
        wait_until(lambda: self._display.get_selection_owner(selection), PATIENCE, "a compositor")

    def vanish(self):
        """Ends the display, with every window on it."""
        end(self._server)

    def lose_manager(self):
        self._manager.kill()
        self._manager.wait()

    def pids(self):
        """The processes by which programs show their windows."""
        return [process.pid for process in (self._server, self._manager) if process]

    def start(self, command, **options):
        """Starts a program that ends with the desktop at the latest."""
        return self._processes.start(command, **{"env": self.environment, **options})

    def run(self, *command, env=None):
        """Runs a command to its end and returns what it printed; raises when it fails."""
        return subprocess.run(command, env=env or self.environment, check=True, encoding="utf-8",
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL, timeout=30).stdout

    def save_picture(self, file):
        """Saves what the whole screen shows."""
        self.run("import", "-window", "root", file)

    def colours(self, picture, place):
        """The colours of a part of a picture, the commonest first."""
        told = self.run("convert", picture, "-crop", "{2}x{3}+{0}+{1}".format(*place),
                        "-depth", "8", "-format", "%c", "histogram:info:-")
        found = re.findall(r"^ *(\d+): \((\d+),(\d+),(\d+)", told, re.MULTILINE)
        return [tuple(map(int, colour))
                for _, *colour in sorted(found, key=lambda line: -int(line[0]))]

    # Windows

    def size(self):
        screen = self._display.screen()
        return screen.width_in_pixels, screen.height_in_pixels

    def windows(self, title, size=None):
        """The visible windows of a title, and of a (width, height) where one is given."""
        return [window.id for window in self._descendants(self._root)
                if self._title(window) == title and self._is_viewable(window)
                and size in (None, self.place(window.id)[2:])]

    def wait_for_window(self, title, size=None, seconds=PATIENCE):
        return wait_until(lambda: self.windows(title, size), seconds, f"window {title!r}")[0]

    def place(self, window):
        """Where a window is on the screen, without the window manager's frame."""
        resource = self._resource(window)
        try:
            geometry = resource.get_geometry()
            corner = self._root.translate_coords(resource, 0, 0)
        except error.XError:
            return Place(0, 0, 0, 0)  # it has gone
        return Place(corner.x, corner.y, geometry.width, geometry.height)

    def has_keyboard(self, window):
        """Tells whether keys go to a window, and those of the window manager concern it."""
        if self._extent >= self.MANAGED and not (
                self._is_managed(window)
                and list(self._root_property("_NET_ACTIVE_WINDOW") or []) == [window]):
            return False
        with contextlib.suppress(error.XError):
            focus = self._display.get_input_focus().focus
            while hasattr(focus, "id") and focus != self._root:
                if focus.id == window:
                    return self._is_viewable(focus)
                focus = focus.query_tree().parent
        return False

    def wait_for_keyboard(self, title, size=None, seconds=PATIENCE):
        """Waits until the window of a title has the keyboard; returns the window. Keys that are
        pressed before the window manager has noticed are lost on their way. A window that does not
        get the keyboard by itself is activated."""
        deadline = time.monotonic() + seconds
        patience_ends = time.monotonic() + 1
        while True:
            window = next(iter(self.windows(title, size)), None)
            if window and self.has_keyboard(window):
                return window
            if time.monotonic() > deadline:
                raise AssertionError(f"{title!r} has no keyboard within {seconds:g} s")
            if window and time.monotonic() > patience_ends:
                patience_ends = time.monotonic() + 1
                command = "windowactivate" if self._extent >= self.MANAGED else "windowfocus"
                self._xdotool(command, window, check=False)
            time.sleep(0.02)

    # Keyboard and mouse

    def press_keys(self, *keys, title=None, size=None):
        """Presses keys, for example "alt+F4": in the window of a title as soon as it has the
        keyboard, or in the window that has it already."""
        if title is not None:
            self.wait_for_keyboard(title, size)
        self._xdotool("key", "--delay", 30, *keys)

    @contextlib.contextmanager
    def held(self, key):
        """Holds a key for the length of a block; it repeats as on a user's keyboard."""
        self._display.change_keyboard_control(auto_repeat_mode=X.AutoRepeatModeOn)
        self._display.sync()
        self._xdotool("keydown", key)
        try:
            yield
        finally:
            self._xdotool("keyup", key)
            self._display.change_keyboard_control(auto_repeat_mode=X.AutoRepeatModeOff)
            self._display.sync()

    def type_text(self, text):
        self._xdotool("type", "--delay", 20, text)

    def click(self, window, x, y):
        """Clicks at a place of a window."""
        place = self.place(window)
        self.click_at(place.x + x, place.y + y)

    def click_at(self, x, y, hover=0.0):
        """Clicks at a place of the screen, after the mouse has been there for so many seconds."""
        self._xdotool("mousemove", "--sync", x, y, "sleep", hover, "click", 1)

    def drag(self, window, x, y, right, down):
        """Presses the button at a place of a window and moves the mouse before releasing it.
        Returns by how much the window has moved."""
        def wait_for(condition):
            with contextlib.suppress(AssertionError):  # a window that is not dragged
                wait_until(condition, 2, "a dragged window")

        def moved():
            place = self.place(window)
            return place.x - before.x, place.y - before.y

        before = self.place(window)
        self._xdotool("mousemove", "--sync", before.x + x, before.y + y)
        cursor = self._cursor()
        self._xdotool("mousedown", 1)
        # It moves from where the mouse is when a busy program asks the window manager for it.
        wait_for(lambda: self._cursor() != cursor)
        for _ in range(10):
            time.sleep(0.05)
            self._xdotool("mousemove_relative", "--", right // 10, down // 10)
        wait_for(lambda: moved() == (right, down))
        self._xdotool("mouseup", 1)
        time.sleep(0.5)
        return moved()

    def _xdotool(self, *arguments, check=True):
        subprocess.run(["xdotool", *map(str, arguments)], env=self.environment, check=check,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=30)

    # What the X server knows

    def _resource(self, window):
        return self._display.create_resource_object("window", window)

    def _cursor(self):
        """A number that changes with what the mouse pointer looks like."""
        self._display.xfixes_query_version()
        return self._display.xfixes_get_cursor_image(self._root).cursor_serial

    def _is_managed(self, window):
        return window in (self._root_property("_NET_CLIENT_LIST") or [])

    def _root_property(self, name):
        found = self._root.get_full_property(self._display.intern_atom(name), X.AnyPropertyType)
        return found.value if found else None

    def _descendants(self, window):
        with contextlib.suppress(error.XError):
            for child in window.query_tree().children:
                yield child
                yield from self._descendants(child)

    def _title(self, window):
        with contextlib.suppress(error.XError):
            for name in (self._display.intern_atom("_NET_WM_NAME"), Xatom.WM_NAME):
                found = window.get_full_property(name, X.AnyPropertyType)
                if found:
                    value = found.value
                    return value if isinstance(value, str) else value.decode("utf-8", "replace")
        return None

    @staticmethod
    def _is_viewable(window):
        with contextlib.suppress(error.XError):
            return window.get_attributes().map_state == X.IsViewable
        return False
