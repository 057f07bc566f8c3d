"""A server that answers as badly as it is told to, document and pictures each in their own way."""

import contextlib
import json
import socket
import struct
import threading
import zlib

from tests.faults import harness


def answer(body=b"", status="200 OK", length=None, *headers):
    """A whole answer. The length is what its header claims; a negative one leaves the header out."""
    if isinstance(body, str):
        body = body.encode()
    claimed = len(body) if length is None else length
    lines = [f"HTTP/1.1 {status}", "Connection: close", *headers]
    if claimed >= 0:
        lines.append(f"Content-Length: {claimed}")
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + body


def png(width, height, colour_type=0, depth=1):
    """A picture of one colour. A row of the same bytes costs next to nothing, however long."""
    def chunk(kind, content):
        return (struct.pack(">I", len(content)) + kind + content
                + struct.pack(">I", zlib.crc32(kind + content)))

    channels = {0: 1, 2: 3, 6: 4}[colour_type]
    row = b"\0" + b"\0" * ((width * channels * depth + 7) // 8)
    packer = zlib.compressobj(9)
    packed = b"".join(packer.compress(row) for _ in range(height)) + packer.flush()
    return (b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, colour_type, 0, 0, 0))
            + chunk(b"IDAT", packed) + chunk(b"IEND", b""))


PICTURE = png(8, 8, colour_type=2, depth=8)


class Exchange:
    """One request: what a fault may do with the connection it came over."""

    def __init__(self, server, connection, path):
        self.server = server
        self.connection = connection
        self.path = path

    def send(self, content):
        self.connection.sendall(content)

    def reset(self):
        """Closes the connection as a crashed peer or a firewall does."""
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.connection.close()

    def stall(self):
        """Says no more, until the client has had enough or the row is over."""
        while not self.server.is_closing:
            self.connection.settimeout(0.2)
            with contextlib.suppress(TimeoutError):
                if not self.connection.recv(4096):
                    return

    def document(self):
        return json.dumps(harness.document(harness.SERVED, self.server.url)).encode()


class FaultyServer:
    """Serves between entry and exit. A fault is bytes to send, or a function that is given the
    exchange; without one, documents and pictures are as they should be."""

    def __init__(self, document=None, picture=None, accept=None):
        self._document = document or (lambda exchange: exchange.send(answer(exchange.document())))
        self._picture = picture or answer(PICTURE)
        self._accept = accept
        self._listener = socket.create_server(("127.0.0.1", 0), backlog=128)
        self.url = f"http://127.0.0.1:{self._listener.getsockname()[1]}"
        self.requests = []
        self.is_closing = False

    def __enter__(self):
        threading.Thread(target=self._serve, daemon=True).start()
        return self

    def __exit__(self, *exception):
        self.close()

    def close(self):
        self.is_closing = True
        with contextlib.suppress(OSError):  # closed already
            self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()

    def _serve(self):
        with contextlib.suppress(OSError):
            while not self.is_closing:
                connection, _ = self._listener.accept()
                threading.Thread(target=self._handle, args=(connection,), daemon=True).start()

    def _handle(self, connection):
        # Whatever the client does to the connection is its right.
        with contextlib.suppress(OSError), connection:
            if self._accept:
                self._accept(Exchange(self, connection, None))
                return
            request = b""
            while b"\r\n\r\n" not in request:
                received = connection.recv(65536)
                if not received:
                    return
                request += received
            path = request.split(b" ", 2)[1].decode("ascii", "replace")
            self.requests.append(path)
            fault = self._document if path.endswith(".json") else self._picture
            if callable(fault):
                fault(Exchange(self, connection, path))
            else:
                connection.sendall(fault)


# Bound and never listening: nobody else comes to listen there.
_CLOSED = socket.socket()
_CLOSED.bind(("127.0.0.1", 0))


def dead_port():
    """An address at which nobody listens."""
    return f"http://127.0.0.1:{_CLOSED.getsockname()[1]}"
