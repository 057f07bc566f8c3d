"""Real proxies on loopback, each run between entry and exit."""

import os
import socket
import subprocess
import time

from service.service import free_port


class Proxy:
    """A proxy process with a log of its own."""

    def __init__(self, folder, name):
        self.port = free_port()
        self.log = os.path.join(folder, name + ".log")
        self._process = None

    def command(self):
        raise NotImplementedError

    def __enter__(self):
        with open(self.log, "wb") as log:
            self._process = subprocess.Popen(self.command(), stdout=log, stderr=log)
        deadline = time.monotonic() + 10
        while True:
            try:
                socket.create_connection(("127.0.0.1", self.port)).close()
                return self
            except OSError:
                if time.monotonic() > deadline or self._process.poll() is not None:
                    raise
                time.sleep(0.05)

    def __exit__(self, *exception):
        self._process.terminate()
        self._process.wait()

    def lines(self):
        with open(self.log, encoding="utf-8", errors="replace") as log:
            return log.read().splitlines()


class HttpProxy(Proxy):
    """tinyproxy."""

    def __init__(self, folder, user, password):
        super().__init__(folder, "tinyproxy")
        self._configuration = os.path.join(folder, "tinyproxy.conf")
        with open(self._configuration, "w", encoding="ascii") as file:
            file.write(f"Port {self.port}\nListen 127.0.0.1\nLogLevel Connect\n"
                       f"BasicAuth {user} {password}\n")

    def command(self):
        return ["tinyproxy", "-d", "-c", self._configuration]

    def addresses(self):
        """What it was asked for; a request that had to be repeated with a password counts once."""
        return {line.split("GET ")[1].split()[0] for line in self.lines() if ": GET " in line}


class SocksProxy(Proxy):
    """microsocks, for SOCKS5."""

    def __init__(self, folder, user, password):
        super().__init__(folder, "microsocks")
        self._credentials = ["-u", user, "-P", password]

    def command(self):
        return ["microsocks", "-i", "127.0.0.1", "-p", str(self.port), *self._credentials]

    def connections(self):
        """Connections that it made for its clients."""
        return [line for line in self.lines() if "connected to" in line]
