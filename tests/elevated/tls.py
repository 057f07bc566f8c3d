"""The program speaks TLS of 1.2 and later only: tls.py PLATFORM BIN OUT

Each server speaks one version alone. What ends a handshake is the version: certificates are judged
after it.
"""

import os
import socket
import ssl
import subprocess
import sys
import threading
import unittest

from tests.elevated.wineprogram import WineProgram
from tests.kit import installation
from tests.kit.folders import make_afresh
from tests.kit.processes import Processes

PLATFORM, BINARIES, OUT = "", "", ""
PROGRAM = "clipwright-uninstaller-sandbox"
# Of this machine's library, at both ends: old versions are possible.
LAX = """openssl_conf = default_conf
[default_conf]
ssl_conf = ssl
[ssl]
system_default = lax
[lax]
MinProtocol = TLSv1
CipherString = DEFAULT:@SECLEVEL=0
"""


class Server:
    """Takes one connection, and knows the version of its handshake: None when there was none."""

    def __init__(self, version, certificate, key):
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.set_ciphers("ALL:@SECLEVEL=0")
        context.minimum_version = context.maximum_version = version
        context.load_cert_chain(certificate, key)
        self._context = context
        self._listener = socket.create_server(("127.0.0.1", 0))
        self._listener.settimeout(60)
        self.url = f"https://127.0.0.1:{self._listener.getsockname()[1]}"
        self.version = None
        self._thread = threading.Thread(target=self._serve)
        self._thread.start()

    def _serve(self):
        with self._listener:
            connection, _ = self._listener.accept()
        connection.settimeout(60)
        try:
            with self._context.wrap_socket(connection, server_side=True) as secured:
                self.version = secured.version()
        except (ssl.SSLError, OSError):
            connection.close()

    def answer(self):
        self._thread.join()
        return self.version


class Tls(unittest.TestCase):
    def setUp(self):
        self.out = make_afresh(os.path.join(OUT, self.id().rpartition(".")[2]))
        self.key, self.certificate = (os.path.join(self.out, name) for name in ("key", "pem"))
        subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-subj",
                        "/CN=127.0.0.1", "-keyout", self.key, "-out", self.certificate],
                       check=True, stderr=subprocess.DEVNULL)

    def handshake(self, start, version):
        """The version of the handshake of a program that start(its service) starts."""
        server = Server(version, self.certificate, self.key)
        end = start(server.url)
        answer = server.answer()
        end()
        return answer

    def judge(self, start):
        for version, expected in ((ssl.TLSVersion.TLSv1, None), (ssl.TLSVersion.TLSv1_1, None),
                                  (ssl.TLSVersion.TLSv1_2, "TLSv1.2")):
            with self.subTest(version.name):
                self.assertEqual(self.handshake(start, version), expected)

    def test_versions(self):
        if PLATFORM == "windows":
            program = self.enterContext(WineProgram(BINARIES, os.path.join(self.out, "wine"),
                                                    PROGRAM + ".exe"))

            def start(service):
                process = program.start(CLIPWRIGHT_SANDBOX_SERVICE=service)
                return lambda: program.end(process)
        else:
            processes = self.enterContext(Processes())
            lax = os.path.join(self.out, "openssl.cnf")
            with open(lax, "w", encoding="ascii") as file:
                file.write(LAX)
            environment = {**os.environ, "OPENSSL_CONF": lax, "QT_QPA_PLATFORM": "offscreen",
                           **installation.make(BINARIES, os.path.join(self.out, "sandbox"))}

            def start(service):
                process = processes.start(
                    [os.path.join(BINARIES, PROGRAM)],
                    env={**environment, "CLIPWRIGHT_SANDBOX_SERVICE": service})

                def end():
                    process.kill()
                    process.wait()

                return end
        self.judge(start)


if __name__ == "__main__":
    PLATFORM, BINARIES, OUT = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
