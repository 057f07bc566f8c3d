"""Real proxies on loopback, each run between entry and exit."""

import os

from tests.kit.processes import Processes


class Proxy:
    """A proxy process with a log of its own."""

    def __init__(self, folder, name):
        self.port = None
        self.log = os.path.join(folder, name + ".log")
        self._processes = Processes()

    def command_at(self, port):
        raise NotImplementedError

    def __enter__(self):
        with open(self.log, "wb") as log:
            _, self.port = self._processes.start_server(self.command_at, stdout=log, stderr=log)
        return self

    def __exit__(self, *exception):
        self._processes.__exit__(*exception)

    def lines(self):
        with open(self.log, encoding="utf-8", errors="replace") as log:
            return log.read().splitlines()


class HttpProxy(Proxy):
    """tinyproxy."""

    def __init__(self, folder, user, password):
        super().__init__(folder, "tinyproxy")
        self._configuration = os.path.join(folder, "tinyproxy.conf")
        self._credentials = f"{user} {password}"

    def command_at(self, port):
        with open(self._configuration, "w", encoding="ascii") as file:
            file.write(f"Port {port}\nListen 127.0.0.1\nLogLevel Connect\n"
                       f"BasicAuth {self._credentials}\n")
        return ["tinyproxy", "-d", "-c", self._configuration]

    def addresses(self):
        """The addresses requested. A request that was repeated with a password counts once."""
        return {line.split("GET ")[1].split()[0] for line in self.lines() if ": GET " in line}


class SocksProxy(Proxy):
    """microsocks, for SOCKS5."""

    def __init__(self, folder, user, password):
        super().__init__(folder, "microsocks")
        self._credentials = ["-u", user, "-P", password]

    def command_at(self, port):
        return ["microsocks", "-i", "127.0.0.1", "-p", str(port), *self._credentials]

    def connections(self):
        """Connections that it made for its clients."""
        return [line for line in self.lines() if "connected to" in line]
