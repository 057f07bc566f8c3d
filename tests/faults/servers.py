"""A server that answers as badly as it is told to, and the documents that it serves."""

import contextlib
import json
import os
import socket
import struct
import threading
import zlib

from tests.kit.folders import ROOT

SERVED = "7001"  # marks the document that the server has


def document(marker, pictures_at=None):
    """A configuration document: a plain reason that has the marker for its value, one that offers
    the upgrade, and what the built-in document offers. Without an address it refers to no
    pictures."""
    with open(os.path.join(ROOT, "Resources/cfg/en.cfg"), encoding="utf-8") as file:
        content = json.load(file)
    homepage, *reasons = content["problem_type"]["list"]
    plain = {"value": int(marker), "title": "Marked reason", "banner_title": "Marked"}
    upgrade = next(reason for reason in reasons if reason["value"] == 61)
    content["problem_type"]["list"] = [homepage, plain, upgrade, *reasons]
    for option in content["problem_type"]["list"]:
        option["banner_url"] = f"{pictures_at}/banner_{option['value']}.png" if pictures_at else ""
    for category in content["apps"]:
        for product in category["list"]:
            product["icon"] = f"{pictures_at}/icon_{product['pid']}.png" if pictures_at else ""
    return content


def answer(body=b"", status="200 OK", *headers, length=None):
    """A whole answer. Its header claims the length; a negative one leaves the header out."""
    body = body.encode() if isinstance(body, str) else body
    lines = [f"HTTP/1.1 {status}", "Connection: close", *headers]
    if length is None or length >= 0:
        lines.append(f"Content-Length: {len(body) if length is None else length}")
    return "\r\n".join(lines).encode() + b"\r\n\r\n" + body


def png(width, height, colour_type=0, depth=1):
    """A picture of one colour. Rows of equal bytes are packed into next to nothing."""
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
    """One request and the connection it came over."""

    def __init__(self, server, connection, path):
        self.server = server
        self.connection = connection
        self.path = path

    def send(self, *contents):
        for content in contents:
            self.connection.sendall(content)

    def reset(self):
        """Closes the connection as a crashed peer or a firewall does."""
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.connection.close()

    def close(self):
        self.connection.close()

    def stall(self):
        """Sends no more until the client or the server closes."""
        self.connection.settimeout(0.2)
        while not self.server.is_closing:
            with contextlib.suppress(TimeoutError):
                if not self.connection.recv(4096):
                    return

    def document(self):
        return json.dumps(document(SERVED, self.server.url)).encode()


class FaultyServer:
    """Serves between entry and exit. A fault is bytes to send, or a function of the Exchange;
    without one, documents and pictures are as they should be. With accept, no request is read."""

    def __init__(self, document=None, picture=None, accept=None):
        self._document = document or (lambda exchange: exchange.send(answer(exchange.document())))
        self._picture = picture or answer(PICTURE)
        self._accept = accept
        self._listener = socket.create_server(("127.0.0.1", 0), backlog=128)
        self.port = self._listener.getsockname()[1]
        self.url = f"http://127.0.0.1:{self.port}"
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
        with contextlib.suppress(OSError), connection:  # the client may close at any time
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


_bound = socket.socket()
_bound.bind(("127.0.0.1", 0))


def refusing_url():
    """An address that refuses connections: its port is taken, and never listened at."""
    return f"http://127.0.0.1:{_bound.getsockname()[1]}"
