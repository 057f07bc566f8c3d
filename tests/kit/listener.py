"""A server that accepts connections and never answers."""

import contextlib
import socket
import threading


class Listener:
    """Listens between entry and exit."""

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
