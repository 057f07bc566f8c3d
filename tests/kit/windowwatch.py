"""When programs show and hide their windows. Needs the distribution's python3-xlib."""

import contextlib
import struct
import threading

from Xlib import display, error
from Xlib.ext import record

from tests.kit.desktop import PATIENCE

MAP_WINDOW, UNMAP_WINDOW = 8, 10  # codes of the X protocol's requests


class WindowWatch:
    """Records, from entry to exit, when the X server is asked to show a window or to hide it. These
    are the program's own requests: what a window manager makes of them comes later, on a busy
    machine in another order. The times, by title, are seconds of the server's clock."""

    def __init__(self, desktop):
        self._name = desktop.environment["DISPLAY"]
        self.shown = {}  # for the first time
        self.hidden = {}  # for the last time
        self._titles = {}
        self._has_begun = threading.Event()

    def __enter__(self):
        self._display = display.Display(self._name)
        self._title = self._display.intern_atom("_NET_WM_NAME")
        self._recorder = display.Display(self._name)  # which does nothing else then
        nothing = dict.fromkeys(("core_replies", "delivered_events", "device_events", "errors"),
                                (0, 0))
        nothing.update(dict.fromkeys(("ext_requests", "ext_replies"), (0, 0, 0, 0)))
        self._context = self._recorder.record_create_context(
            record.FromClientTime, [record.AllClients],
            [{**nothing, "core_requests": (request, request), "client_started": False,
              "client_died": False} for request in (MAP_WINDOW, UNMAP_WINDOW)])
        self._thread = threading.Thread(target=self._recorder.record_enable_context,
                                        args=(self._context, self._note), daemon=True)
        self._thread.start()
        assert self._has_begun.wait(PATIENCE), "the X server records nothing"
        return self

    def __exit__(self, *exception):
        self._display.record_disable_context(self._context)
        self._display.sync()
        self._thread.join()
        self._recorder.close()
        self._display.close()

    def _note(self, reply):
        if reply.category == record.StartOfData:
            self._has_begun.set()
        if reply.category != record.FromClient:
            return
        for milliseconds, request, window in struct.iter_unpack("=IBxxxI", reply.data):
            if request == MAP_WINDOW:
                self.shown.setdefault(self._title_of(window), milliseconds / 1000)
            else:
                self.hidden[self._title_of(window)] = milliseconds / 1000

    def _title_of(self, identifier):
        """The title that the window had when it was shown: a hidden one may be gone already."""
        if identifier not in self._titles:
            window = self._display.create_resource_object("window", identifier)
            title = None
            with contextlib.suppress(error.XError):  # it was shown for a moment only
                title = window.get_full_property(self._title, 0)
            self._titles[identifier] = title.value.decode() if title else ""
        return self._titles[identifier]
