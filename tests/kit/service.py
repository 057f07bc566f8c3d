"""The sandbox's local service: nginx, serving a sample configuration document with its pictures as
the maker's hosts would."""

import glob
import json
import os
import shutil
import subprocess

from tests.kit.folders import ROOT
from tests.kit.processes import Processes

IMAGES = os.path.join(ROOT, "sandbox", "service", "images")

BUILT_IN = os.path.join(ROOT, "Resources", "cfg")
NGINX = shutil.which("nginx") or "/usr/sbin/nginx"

CONFIGURATION = """
{user}
pid {folder}/nginx.pid;
error_log {folder}/error.log;
daemon off;
events {{}}
http {{
  access_log {folder}/access.log;
  client_body_temp_path {folder}/tmp;
  proxy_temp_path {folder}/tmp;
  fastcgi_temp_path {folder}/tmp;
  uwsgi_temp_path {folder}/tmp;
  scgi_temp_path {folder}/tmp;
  types {{ application/json json; image/png png; }}
  server {{
    listen {port}{tls};
    root {folder}/root;{redirect}
  }}
}}
"""


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


def publish(document, url, root):
    """Points the document's pictures at this service and puts pictures there."""
    for category in document["apps"]:
        for product in category["list"]:
            name = f"icons/pid_{product['pid']}.png"
            copy(icon_of(product["pid"]), os.path.join(root, name))
            product["icon"] = f"{url}/{name}"
    for product in document["recommended"]["list"]:
        product["icon"] = f"{url}/icons/pid_{product['pid']}.png"
    for option in document["problem_type"]["list"]:
        name = f"banners/option_{option['value']}.png"
        copy(banner_of(option["value"]), os.path.join(root, name))
        option["banner_url"] = f"{url}/{name}"
    return document


def copy(source, target):
    os.makedirs(os.path.dirname(target), exist_ok=True)
    shutil.copyfile(source, target)


def make_root(url, root):
    shutil.rmtree(root, ignore_errors=True)
    published = os.path.join(root, "uninstall", "cfg", "v1")
    os.makedirs(published)
    for file in glob.glob(os.path.join(BUILT_IN, "*.cfg")):
        code = os.path.splitext(os.path.basename(file))[0]
        with open(file, encoding="utf-8") as source:
            document = publish(json.load(source), url, root)
        with open(os.path.join(published, f"846-{code}.json"), "w", encoding="utf-8") as target:
            json.dump(document, target, ensure_ascii=False)


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
        self._redirect = f"\n    return 302 {redirect_to}$request_uri;" if redirect_to else ""
        self._tls = ""
        self._processes = Processes()
        self.url = None
        self.root = os.path.join(self._folder, "root")  # what is published
        self.authority_folder = os.path.join(self._folder, "authority")

    def __enter__(self):
        os.makedirs(os.path.join(self._folder, "tmp"), exist_ok=True)
        if self._certificate_for:
            self._tls = self._make_certificate()
        self._processes.start_server(self._command_at, self._port)
        return self

    def __exit__(self, *exception):
        self._processes.__exit__(*exception)

    def _command_at(self, port):
        scheme = "https" if self._certificate_for else "http"
        self.url = f"{scheme}://{self._host}:{port}"
        make_root(self.url, self.root)
        configuration = os.path.join(self._folder, "nginx.conf")
        with open(configuration, "w", encoding="utf-8") as file:
            file.write(CONFIGURATION.format(user=USER, folder=self._folder, port=port,
                                            tls=self._tls, redirect=self._redirect))
        return [NGINX, "-c", configuration, "-e", os.path.join(self._folder, "error.log")]

    def _make_certificate(self):
        def openssl(*arguments):
            subprocess.run(["openssl", *arguments], cwd=self._folder, check=True,
                           stderr=subprocess.DEVNULL)

        os.makedirs(self.authority_folder)
        openssl("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj",
                "/CN=Sandbox authority", "-keyout", "authority.key", "-out",
                "authority/authority.pem")
        openssl("rehash", "authority")
        # Some read the files by their names' hashes, others one file of that name.
        shutil.copyfile(os.path.join(self.authority_folder, "authority.pem"),
                        os.path.join(self.authority_folder, "ca-certificates.crt"))
        openssl("req", "-newkey", "rsa:2048", "-nodes", "-subj", f"/CN={self._certificate_for}",
                "-keyout", "server.key", "-out", "server.csr")
        with open(os.path.join(self._folder, "names"), "w", encoding="ascii") as file:
            file.write(f"subjectAltName=DNS:{self._certificate_for}\n")
        openssl("x509", "-req", "-in", "server.csr", "-CA", "authority/authority.pem", "-CAkey",
                "authority.key", "-CAcreateserial", "-days", "2", "-extfile", "names", "-out",
                "server.pem")
        return (f" ssl;\n    ssl_certificate {self._folder}/server.pem;\n"
                f"    ssl_certificate_key {self._folder}/server.key")

    def requests(self):
        """The request lines that came, in order."""
        with open(os.path.join(self._folder, "access.log"), encoding="utf-8") as log:
            return [line.split('"')[1] for line in log if '"' in line]
