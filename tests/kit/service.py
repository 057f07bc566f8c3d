"""The sandbox's local service: sample documents and pictures, published and served by nginx as
./dev publish and its configuration would have the maker's hosts do it."""

import glob
import os
import shutil
import subprocess

from tests.kit.folders import ROOT
from tests.kit.processes import Processes
from tools.publish import publish

IMAGES = os.path.join(ROOT, "sandbox", "service", "images")

BUILT_IN = os.path.join(ROOT, "Resources", "cfg")
NGINX = shutil.which("nginx") or "/usr/sbin/nginx"

CONFIGURATION = """
{user}
pid {folder}/nginx.pid;
error_log {folder}/error.log;
daemon off;
include /etc/nginx/modules-enabled/*.conf;
events {{}}
http {{
  log_format sent '$remote_addr [$time_local] "$request" $status $bytes_sent';
  access_log {folder}/access.log sent;
  client_body_temp_path {folder}/tmp;
  proxy_temp_path {folder}/tmp;
  fastcgi_temp_path {folder}/tmp;
  uwsgi_temp_path {folder}/tmp;
  scgi_temp_path {folder}/tmp;
  {server}
}}
"""

REDIRECTION = """server {{
    listen {listen};
    ssl_certificate {certificate};
    ssl_certificate_key {key};
    return 302 {target}$request_uri;
  }}"""


# Started by root, nginx would serve as a user who may not read root's folders.
USER = "user root root;" if os.geteuid() == 0 else ""


def sample_pictures(kind):
    return sorted(glob.glob(os.path.join(IMAGES, kind + "_*.png")))


# Products whose icon shows what they do; the others get one by their number.
ICONS = {927: "audio", 941: "photo", 958: "slides", 973: "screen", 1118: "pdf", 1131: "scan",
         1149: "slides", 1162: "notes", 1421: "recover", 1436: "convert", 1458: "transfer",
         1502: "cleaner", 1544: "password"}
BANNERS = {57: "price", 59: "update", 60: "learn", 61: "update", 64: "crash"}
DEFAULT_BANNER = os.path.join(ROOT, "Resources", "light", "Option0_2x.png")


def icon_of(pid):
    icons = sample_pictures("app")
    named = os.path.join(IMAGES, f"app_{ICONS.get(pid)}.png")
    return named if named in icons else icons[pid % len(icons)]


def banner_of(value):
    named = os.path.join(IMAGES, f"banner_{BANNERS.get(value)}.png")
    return named if os.path.exists(named) else DEFAULT_BANNER


def make_source(folder):
    """What is published: the built-in documents, and pictures under their links' file names."""
    shutil.rmtree(folder, ignore_errors=True)
    os.makedirs(folder)
    for file in glob.glob(os.path.join(BUILT_IN, "*.cfg")):
        shutil.copy(file, folder)
    for entry, key in publish.pictures_of(publish.read(folder)["en"]):  # the others have the same
        picture = icon_of(entry["pid"]) if key == "icon" else banner_of(entry["value"])
        shutil.copyfile(picture, os.path.join(folder, os.path.basename(entry[key])))
    return folder


class Service:
    """Runs the service between entry and exit, at a free port unless one is given. With
    certificate_for it speaks TLS, with a certificate for that host name, signed by an authority of
    its own whose certificate is then in authority_folder. With redirect_to, the address of another
    service, it serves nothing itself."""

    def __init__(self, folder, host="127.0.0.1", port=None, certificate_for=None,
                 redirect_to=None):
        self._folder = os.path.abspath(folder)
        self._host = host
        self._port = port
        self._certificate_for = certificate_for
        self._redirect_to = redirect_to
        self._processes = Processes()
        self.url = None
        self.root = os.path.join(self._folder, "root")  # what is published
        self.authority_folder = os.path.join(self._folder, "authority")

    def __enter__(self):
        os.makedirs(os.path.join(self._folder, "tmp"), exist_ok=True)
        if self._certificate_for:
            self._make_certificate()
        self._processes.start_server(self._command_at, self._port)
        return self

    def __exit__(self, *exception):
        self._processes.__exit__(*exception)

    def put(self, name, content):
        """Replaces a file of the tree, and what is served in its place."""
        publish.put(self.root, name, content)

    def _command_at(self, port):
        scheme = "https" if self._certificate_for else "http"
        self.url = f"{scheme}://{self._host}:{port}"
        listen = f"{port} ssl" if self._certificate_for else str(port)
        files = {"certificate": os.path.join(self._folder, "server.pem"),
                 "key": os.path.join(self._folder, "server.key")}
        if self._redirect_to:
            server = REDIRECTION.format(listen=listen, target=self._redirect_to, **files)
        else:
            source = make_source(os.path.join(self._folder, "source"))
            shutil.rmtree(self.root, ignore_errors=True)
            publish.write_tree(source, publish.read(source), self.url, self.root)
            server = publish.server(self.root, self.url, listen, **files)
        configuration = os.path.join(self._folder, "nginx.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION.format(user=USER, folder=self._folder, server=server))
        return [NGINX, "-c", configuration, "-e", os.path.join(self._folder, "error.log")]

    def _make_certificate(self):
        def openssl(*arguments):
            subprocess.run(["openssl", *arguments], cwd=self._folder, check=True,
                           stderr=subprocess.DEVNULL)

        os.makedirs(self.authority_folder)
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                "/CN=Sandbox authority", "-addext", "keyUsage=critical,keyCertSign", "-keyout",
                "authority.key", "-out", "authority/authority.pem")
        openssl("rehash", "authority")
        # Some read the files by their names' hashes, others one file of that name.
        shutil.copyfile(os.path.join(self.authority_folder, "authority.pem"),
                        os.path.join(self.authority_folder, "ca-certificates.crt"))
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={self._certificate_for}",
                "-keyout", "server.key", "-out", "server.csr")
        with open(os.path.join(self._folder, "names"), "w", encoding="ascii") as file:
            file.write(f"subjectAltName=DNS:{self._certificate_for}\n"
                       "authorityKeyIdentifier=keyid\n")
        openssl("x509", "-req", "-in", "server.csr", "-CA", "authority/authority.pem", "-CAkey",
                "authority.key", "-CAcreateserial", "-days", "2", "-extfile", "names", "-out",
                "server.pem")

    def pid(self):
        with open(os.path.join(self._folder, "nginx.pid"), encoding="ascii") as file:
            return int(file.read())

    def _log(self):
        with open(os.path.join(self._folder, "access.log"), encoding="utf-8") as log:
            return [line.split('"') for line in log if '"' in line]

    def requests(self):
        """The request lines that came, in order."""
        return [parts[1] for parts in self._log()]

    def transfers(self):
        """The path of each request, and the bytes that were sent for it, with the header."""
        return [(parts[1].split()[1], int(parts[2].split()[1])) for parts in self._log()]
