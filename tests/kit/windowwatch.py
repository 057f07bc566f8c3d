"""The windows of a desktop over time: which come and go, when (by the X server's clock, which is
time.monotonic()) and where on the screen. Needs the distribution's python3-xlib."""

import contextlib
import threading
import time

from Xlib import X, Xatom, display, error


class Sighting:
    """A window of a title: when it came and when it went, in seconds of the X server's clock, and
    its place on the screen."""

    def __init__(self, title, came, place):
        self.title = title
        self.came = came
        self.went = None
        self.place = place  # x, y, width, height


class WindowWatch:
    """Watches a desktop from entry to exit, on a connection of its own: the window manager's list,
    and the windows that are none of its business (under Wine those without a taskbar entry)."""

    def __init__(self, desktop):
        self._name = desktop.environment["DISPLAY"]
        self._sightings = {}
        self._ending = threading.Event()
        self._thread = threading.Thread(target=self._watch, daemon=True)

    def __enter__(self):
        self._display = display.Display(self._name)
        self._root = self._display.screen().root
        self._list = self._display.intern_atom("_NET_CLIENT_LIST")
        self._title = self._display.intern_atom("_NET_WM_NAME")
        self._root.change_attributes(event_mask=X.PropertyChangeMask | X.SubstructureNotifyMask)
        self._display.sync()
        self._thread.start()
        return self

    def __exit__(self, *exception):
        self._ending.set()
        self._thread.join()
        self._display.close()

    def first(self, title):
        """The first window of that title, or None."""
        return next((seen for seen in self._sightings.values() if seen.title == title), None)

    def _watch(self):
        while not self._ending.wait(0.005):
            while self._display.pending_events():
                event = self._display.next_event()
                if event.type == X.PropertyNotify and event.atom == self._list:
                    self._compare(event.time / 1000)
                elif event.type in (X.MapNotify, X.UnmapNotify, X.DestroyNotify):
                    self._compare(time.monotonic() % (2 ** 32 / 1000))

    def _compare(self, now):
        listed = self._root.get_full_property(self._list, Xatom.WINDOW)
        present = {*(listed.value if listed else ()), *self._unmanaged()}
        for identifier in present - self._sightings.keys():
            with contextlib.suppress(error.XError):
                self._sightings[identifier] = self._look_at(identifier, now)
        for identifier in self._sightings.keys() - present:
            if self._sightings[identifier].went is None:
                self._sightings[identifier].went = now

    def _unmanaged(self):
        for window in self._root.query_tree().children:
            with contextlib.suppress(error.XError):
                attributes = window.get_attributes()
                if attributes.override_redirect and attributes.map_state == X.IsViewable:
                    yield window.id

    def _look_at(self, identifier, now):
        window = self._display.create_resource_object("window", identifier)
        title = window.get_full_property(self._title, 0)
        size = window.get_geometry()
        corner = self._root.translate_coords(window, 0, 0)
        return Sighting(title.value.decode() if title else "", now,
                        (corner.x, corner.y, size.width, size.height))
