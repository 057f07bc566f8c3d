"""The published tree: what is in it, how it replaces another, and how nginx serves it."""

import gzip
import json
import os
import pathlib
import re
import ssl
import subprocess
import sys
import tempfile
import unittest
import urllib.error
import urllib.request
import warnings

import brotli

from tests.kit.folders import ROOT
from tests.kit.service import Service, make_source
from tools.publish import publish

BASE = "https://config.norvane.example"
DOCUMENT = "uninstall/cfg/v1/846-de.json"


class Publish(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.source = self.folder / "source"
        make_source(self.source)
        for file in self.source.glob("*.cfg"):
            if file.name not in ("en.cfg", "de.cfg"):
                file.unlink()
        self.tree = self.folder / "site" / "tree"

    def publish(self):
        return subprocess.run([sys.executable, "-m", "tools.publish.publish", self.tree, "--base",
                               BASE, "--from", self.source], cwd=ROOT, timeout=100, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, encoding="utf-8")

    def change(self, document, change):
        file = self.source / document
        content = json.loads(file.read_text(encoding="utf-8"))
        change(content)
        file.write_text(json.dumps(content), encoding="utf-8")

    @staticmethod
    def take_a_link(document):
        for option, key in publish.pictures_of(document):
            option.pop("banner_url", None)

    def links(self):
        content = json.loads((self.tree / "root" / DOCUMENT).read_text(encoding="utf-8"))
        return [entry[key] for entry, key in publish.pictures_of(content)]

    def entries(self):
        return {file.name for file in self.tree.parent.iterdir()}

    def test_tree_and_its_replacement(self):
        self.change("de.cfg", lambda document: document.update({"$schema": "schema.json"}))
        first = self.publish()
        self.assertEqual(first.returncode, 0, first.stdout)
        root = self.tree / "root"
        plain = (root / DOCUMENT).read_bytes()
        self.assertNotIn("$schema", json.loads(plain))
        self.assertEqual(gzip.decompress((root / (DOCUMENT + ".gz")).read_bytes()), plain)
        self.assertEqual(brotli.decompress((root / (DOCUMENT + ".br")).read_bytes()), plain)
        earlier = self.links()
        for link in earlier:
            self.assertRegex(link, BASE + r"/uninstall/pictures/\w+-[0-9a-f]{16}\.png$")
            self.assertTrue((root / link[len(BASE) + 1:]).is_file())
        self.assertIn("listen 443 ssl;", (self.tree / "nginx.conf").read_text(encoding="utf-8"))

        # Only a changed picture has a new name; that of the tree before is there for those who have
        # its document.
        content = (self.source / "option_57.png").read_bytes()
        (self.source / "option_57.png").write_bytes(content + b"\0")
        self.assertEqual(self.publish().returncode, 0)
        changed = [(old, new) for old, new in zip(earlier, self.links()) if old != new]
        self.assertEqual(len(changed), 1)
        self.assertIn("option_57-", changed[0][0])
        self.assertTrue((root / changed[0][0][len(BASE) + 1:]).is_file())
        self.assertEqual(len(self.entries()), 2)  # the link and its tree
        self.assertTrue(self.tree.is_symlink())

        # What is not in order leaves everything as it is.
        before = self.entries(), os.readlink(self.tree)
        for spoil, message in (
                (lambda: (self.source / "option_58.png").unlink(), "option_58.png is missing"),
                (lambda: self.change("de.cfg", lambda document: document.update(pid=1)),
                 "pid must be 846"),
                (lambda: self.change("de.cfg", self.take_a_link), "banner_url is missing")):
            spoil()
            refused = self.publish()
            self.assertEqual(refused.returncode, 1)
            self.assertIn(message, refused.stdout)
            self.assertEqual((self.entries(), os.readlink(self.tree)), before)
            (self.source / "option_58.png").write_bytes(content)

    def test_folder_that_is_no_tree_is_left_alone(self):
        self.tree.mkdir(parents=True)
        self.assertIn("no published tree", self.publish().stdout)
        self.assertEqual(self.entries(), {"tree"})

    def test_nginx_serves_it(self):
        with Service(self.folder / "service", "localhost", certificate_for="localhost") as service:
            trusted = ssl.create_default_context(
                cafile=os.path.join(service.authority_folder, "authority.pem"))

            def ask(path, method="GET", encoding="identity", context=trusted):
                request = urllib.request.Request(f"{service.url}/{path}", method=method,
                                                 headers={"Accept-Encoding": encoding})
                try:
                    with urllib.request.urlopen(request, context=context, timeout=30) as answer:
                        return answer.status, answer.headers, answer.read()
                except urllib.error.HTTPError as error:
                    return error.code, error.headers, b""

            files = [str(file.relative_to(service.root))
                     for file in pathlib.Path(service.root).rglob("*") if file.is_file()]
            self.assertGreater(len(files), 16 * 3 + 20)
            for file in files:
                status, headers, body = ask(file)
                if file.endswith((".gz", ".br")):
                    self.assertEqual(status, 404, file)
                    continue
                self.assertEqual((status, body),
                                 (200, pathlib.Path(service.root, file).read_bytes()), file)
                is_document = file.endswith(".json")
                self.assertEqual(headers["Content-Type"],
                                 "application/json" if is_document else "image/png")
                self.assertEqual(headers["Cache-Control"], "public, max-age=300" if is_document
                                 else "public, max-age=31536000, immutable")
                self.assertEqual(headers["Server"], "nginx")

            for encoding, unpack in (("gzip", gzip.decompress), ("br", brotli.decompress)):
                _, headers, body = ask(DOCUMENT, encoding=encoding)
                self.assertEqual((headers["Content-Encoding"], headers["Vary"]),
                                 (encoding, "Accept-Encoding"))
                self.assertEqual(unpack(body), ask(DOCUMENT)[2])
            for path in ("", "uninstall/cfg/v1/", "uninstall/pictures/", "uninstall",
                         "uninstall/cfg/v1/846-zh.json", "../server.key"):
                self.assertIn(ask(path)[0], (400, 404), path)
            for method in ("POST", "PUT", "DELETE", "OPTIONS", "PROPFIND"):
                self.assertEqual(ask(DOCUMENT, method)[0], 405, method)
            self.assertEqual(ask(DOCUMENT, "HEAD")[0], 200)

            old = ssl.create_default_context(cafile=os.path.join(
                service.authority_folder, "authority.pem"))
            old.set_ciphers("DEFAULT:@SECLEVEL=0")
            with warnings.catch_warnings(action="ignore"):  # of old versions, which is the point
                old.minimum_version = ssl.TLSVersion.TLSv1
                old.maximum_version = ssl.TLSVersion.TLSv1_1
            with self.assertRaises((urllib.error.URLError, ssl.SSLError)) as refused:
                ask(DOCUMENT, context=old)
            self.assertRegex(str(refused.exception), re.compile("protocol|alert", re.I))


if __name__ == "__main__":
    unittest.main()
