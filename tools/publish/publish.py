"""Makes the static tree of the configuration service, for a web server or a CDN: checked documents
at their paths, plain and compressed, pictures under names that change with their content, and a
configuration for nginx. FOLDER becomes a symbolic link, which is moved to the new tree when that is
whole."""

import argparse
import glob
import gzip
import hashlib
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import urllib.parse

import brotli

HERE = pathlib.Path(__file__).resolve().parent
CHECK = HERE.parents[1] / "Resources" / "cfg" / "check"
DOCUMENTS = "uninstall/cfg/v1"
PICTURES = "uninstall/pictures"


class Refused(Exception):
    """The source cannot be published; says why."""


def objects(parent, *keys):
    for key in keys:
        parent = parent.get(key) if isinstance(parent, dict) else None
    return [entry for entry in parent or [] if isinstance(entry, dict)]


def pictures_of(document):
    """Each object that links to a picture, and the key of the link."""
    for category in objects(document, "apps"):
        for product in objects(category, "list"):
            yield product, "icon"
    for product in objects(document, "recommended", "list"):
        yield product, "icon"
    for option in objects(document, "problem_type", "list"):
        yield option, "banner_url"


def check(source, documents):
    banners = {option["banner_url"] for document in documents.values()
               for option, key in pictures_of(document)
               if key == "banner_url" and isinstance(option.get(key), str)}
    command = [CHECK, *sources(source).values()]
    for banner in sorted(banners):
        command += ["--banner", picture_file(source, banner)]
    if subprocess.run(command, check=False).returncode != 0:
        raise Refused("the check found errors; nothing is published")


def sources(source):
    """The documents of a folder by their codes: 846-de.json, as published, or de.cfg."""
    found = {}
    for file in sorted(glob.glob(os.path.join(source, "*"))):
        code = re.fullmatch(r"846-([a-z]{2})\.json|([a-z]{2})\.cfg", os.path.basename(file))
        if code:
            found[code.group(1) or code.group(2)] = file
    if not found:
        raise Refused(f"{source} has no documents: 846-CODE.json or CODE.cfg")
    return found


def read(source):
    documents = {}
    for code, file in sources(source).items():
        with open(file, encoding="utf-8-sig") as opened:
            try:
                documents[code] = json.load(opened)
            except ValueError as error:
                raise Refused(f"{file} is not JSON: {error}") from error
    return documents


def picture_file(source, link):
    file = os.path.join(source, os.path.basename(urllib.parse.urlsplit(link).path))
    if not os.path.isfile(file):
        raise Refused(f"{file} is missing, which {link} stands for")
    return file


def put(root, name, content):
    """Writes a file, and beside a document the same compressed; pictures are compressed anyway."""
    path = os.path.join(root, name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    files = {path: content}
    if name.endswith(".json"):
        files.update({path + ".gz": gzip.compress(content, mtime=0),
                      path + ".br": brotli.compress(content)})
    for file, written in files.items():
        with open(file, "wb") as opened:
            opened.write(written)


def publish_picture(source, link, base, root):
    """Returns its new link. Its name stays while its content does, so that it can be cached for
    ever; its suffix becomes part of a file name on users' machines, and is kept."""
    file = picture_file(source, link)
    with open(file, "rb") as opened:
        content = opened.read()
    stem, suffix = os.path.splitext(os.path.basename(file))
    name = f"{PICTURES}/{stem}-{hashlib.sha256(content).hexdigest()[:16]}{suffix}"
    put(root, name, content)
    return f"{base}/{name}"


def write_tree(source, documents, base, root):
    """Writes documents and pictures below root."""
    links = {}  # old to new
    for code, document in documents.items():
        document.pop("$schema", None)  # which only editors' tools read
        for entry, key in pictures_of(document):
            link = entry.get(key)
            if link:
                if link not in links:
                    links[link] = publish_picture(source, link, base, root)
                entry[key] = links[link]
        content = json.dumps(document, ensure_ascii=False, separators=(",", ":"))
        put(root, f"{DOCUMENTS}/846-{code}.json", content.encode())


def server(root, base, listen="443 ssl", certificate=None, key=None):
    """The part of nginx's configuration that serves a tree."""
    host = urllib.parse.urlsplit(base).hostname
    with open(HERE / "nginx.conf", encoding="utf-8") as template:
        text = template.read()
    if base.startswith("http:"):
        text = re.sub(r"\n  ssl_[^\n]*", "", text)
    for place, value in (("{listen}", listen), ("{host}", host), ("{root}", root),
                         ("{certificate}", certificate or f"/etc/ssl/certs/{host}.pem"),
                         ("{key}", key or f"/etc/ssl/private/{host}.key")):
        text = text.replace(place, value)
    return text


def keep_earlier_pictures(earlier, root):
    """Those that documents of the tree before refer to: a start that has such a document will still
    ask for them."""
    for file in glob.glob(os.path.join(earlier, DOCUMENTS, "*.json")):
        with open(file, encoding="utf-8") as opened:
            document = json.load(opened)
        for entry, key in pictures_of(document):
            name = f"{PICTURES}/{os.path.basename(entry.get(key) or '')}"
            if os.path.isfile(os.path.join(earlier, name)) and \
                    not os.path.exists(os.path.join(root, name)):
                shutil.copyfile(os.path.join(earlier, name), os.path.join(root, name))


def publish(source, base, folder):
    """Replaces the tree that folder leads to by a new one, whole, or raises and leaves it."""
    folder = os.path.abspath(folder)
    if os.path.lexists(folder) and not os.path.islink(folder):
        raise Refused(f"{folder} is no published tree: those are symbolic links")
    documents = read(source)
    check(source, documents)
    earlier = os.path.realpath(folder) if os.path.exists(folder) else None
    os.makedirs(os.path.dirname(folder), exist_ok=True)
    tree = tempfile.mkdtemp(prefix=os.path.basename(folder) + "-", dir=os.path.dirname(folder))
    try:
        os.chmod(tree, 0o755)
        root = os.path.join(tree, "root")
        write_tree(source, documents, base, root)
        if earlier:
            keep_earlier_pictures(os.path.join(earlier, "root"), root)
        with open(os.path.join(tree, "nginx.conf"), "w", encoding="utf-8") as file:
            file.write(server(os.path.join(folder, "root"), base))
        os.symlink(os.path.basename(tree), tree + ".link")
        os.replace(tree + ".link", folder)
    except BaseException:
        shutil.rmtree(tree)
        raise
    if earlier:
        shutil.rmtree(earlier)
    return tree


def main():
    parser = argparse.ArgumentParser(prog="./dev publish", description=__doc__)
    parser.add_argument("folder", metavar="FOLDER", help="where the tree is to be seen")
    parser.add_argument("--base", required=True, metavar="URL",
                        help="the service's address, such as https://config.norvane.example")
    parser.add_argument("--from", required=True, dest="source", metavar="FOLDER",
                        help="documents (846-CODE.json), and pictures by their links' file names")
    arguments = parser.parse_args()
    base = urllib.parse.urlsplit(arguments.base)
    if base.scheme != "https" or not base.hostname or base.path not in ("", "/") or base.query:
        parser.error("the base must be https://HOST, with a port or without")
    try:
        tree = publish(arguments.source, arguments.base.rstrip("/"), arguments.folder)
    except Refused as refusal:
        print(refusal, file=sys.stderr)
        return 1
    files = [os.path.join(parent, name) for parent, _, names in os.walk(os.path.join(tree, "root"))
             for name in names]
    print(f"{len(files)} files, {sum(map(os.path.getsize, files))} bytes: {arguments.folder}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
