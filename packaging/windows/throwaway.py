"""An authority for one run: a certificate that signs code for a day, and a time stamp service
(RFC 3161) on this machine. No system trusts it."""

import contextlib
import http.server
import pathlib
import subprocess
import tempfile
import threading

CONFIGURATION = """
[req]
distinguished_name = name
prompt = no
[name]
CN = Throw-away authority
[authority]
basicConstraints = critical, CA:true
keyUsage = critical, keyCertSign, cRLSign
subjectKeyIdentifier = hash
[signer]
basicConstraints = critical, CA:false
keyUsage = critical, digitalSignature
extendedKeyUsage = codeSigning
[stamper]
basicConstraints = critical, CA:false
keyUsage = critical, digitalSignature
extendedKeyUsage = critical, timeStamping
[tsa]
serial = {folder}/serial
signer_cert = {folder}/stamper.pem
signer_key = {folder}/stamper.key
certs = {folder}/authority.pem
signer_digest = sha256
default_policy = 1.2.3.4.1
digests = sha256, sha384, sha512
accuracy = secs:1
ess_cert_id_alg = sha256
"""


def openssl(*arguments, **options):
    return subprocess.run(["openssl", *map(str, arguments)], check=True, capture_output=True,
                          **options).stdout


class Authority:
    """In the folder: `authority.pem`, which both certificates come from, and `signer.p12` with the
    password in `password`."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.certificate = self.folder / "authority.pem"
        self.configuration = self.folder / "openssl.cnf"
        self.configuration.write_text(CONFIGURATION.format(folder=self.folder), encoding="utf-8")
        (self.folder / "serial").write_text("01\n", encoding="ascii")
        self._issue("authority", "/CN=Throw-away authority", 7300)
        self._issue("signer", "/CN=Throw-away signer", 1)
        self._issue("stamper", "/CN=Throw-away time stamps", 3650)
        (self.folder / "password").write_text("throw-away", encoding="ascii")
        openssl("pkcs12", "-export", "-inkey", self.folder / "signer.key",
                "-in", self.folder / "signer.pem", "-certfile", self.certificate,
                "-passout", f"file:{self.folder / 'password'}", "-out", self.folder / "signer.p12")

    def _issue(self, name, subject, days):
        by = [] if name == "authority" else ["-CA", self.certificate,
                                             "-CAkey", self.folder / "authority.key"]
        openssl("req", "-x509", "-newkey", "rsa:3072", "-nodes", "-sha256", "-days", days,
                "-config", self.configuration, "-extensions", name, "-subj", subject, *by,
                "-keyout", self.folder / f"{name}.key", "-out", self.folder / f"{name}.pem")

    def stamp(self, query):
        with tempfile.NamedTemporaryFile() as file:
            file.write(query)
            file.flush()
            return openssl("ts", "-reply", "-config", self.configuration, "-section", "tsa",
                           "-queryfile", file.name)

    @contextlib.contextmanager
    def stamping(self):
        """Serves time stamps while the context lasts; gives the address."""
        authority = self

        class Handler(http.server.BaseHTTPRequestHandler):
            def do_POST(self):
                query = self.rfile.read(int(self.headers["Content-Length"]))
                reply = authority.stamp(query)
                self.send_response(200)
                self.send_header("Content-Type", "application/timestamp-reply")
                self.send_header("Content-Length", str(len(reply)))
                self.end_headers()
                self.wfile.write(reply)

            def log_message(self, *_):
                pass

        with http.server.HTTPServer(("127.0.0.1", 0), Handler) as server:
            threading.Thread(target=server.serve_forever, daemon=True).start()
            yield f"http://127.0.0.1:{server.server_port}/"
            server.shutdown()
