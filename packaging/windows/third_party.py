#!/usr/bin/env python3
"""The third-party code inside Qt, as Qt's own scanner finds it in the sources.

usage: third_party.py QT-SOURCE OUTPUT.json: writes what the program contains of it, with licences.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys

SCANNER = "/usr/lib/qt5/bin/qtattributionsscanner"
KEPT = ("Id", "Name", "Version", "Description", "Homepage", "License", "LicenseId", "Copyright")
# Code of other systems, or of parts that the static build leaves out.
LEFT_OUT = [pathlib.Path(path) for path in (
    "src/3rdparty/VulkanMemoryAllocator",
    "src/3rdparty/android",
    "src/3rdparty/angle",
    "src/3rdparty/gradle",
    "src/3rdparty/wasm",
    "src/3rdparty/xcb",
    "src/corelib/kernel/qeventdispatcher_cf_p.h",
    "src/dbus",
    "src/gui/opengl",
    "src/gui/vulkan",
    "src/plugins/platforms/cocoa",
    "src/testlib/3rdparty",
)]


def licence_text(entry):
    """The scanner knows nothing of entries with several files of licences."""
    folder = pathlib.Path(entry["Path"])
    files = [pathlib.Path(entry["LicenseFile"])] if entry["LicenseFile"] else [
        path for path in sorted(folder.glob("*")) if re.search("licen[cs]e", path.name, re.I)]
    texts = [file.read_bytes().decode("utf-8", "replace").replace("\r\n", "\n").strip()
             for file in files]
    return "\n\n".join(texts)


def scan(source):
    output = subprocess.run([SCANNER, "--output-format", "json", "--silent", source / "src"],
                            check=True, stdout=subprocess.PIPE).stdout
    for entry in json.loads(output):
        entry = collections.defaultdict(str, entry)
        path = pathlib.Path(entry["Path"]).relative_to(source)
        if not any(path.is_relative_to(left_out) for left_out in LEFT_OUT):
            text = licence_text(entry)
            yield {key: entry[key] for key in KEPT} | {"Path": str(path), "LicenseText": text}


def load(sources):
    """Of the folder that `sources` made."""
    return json.loads((sources / "third-party.json").read_text(encoding="utf-8"))


def notice(entry):
    lines = [entry["Name"], "=" * len(entry["Name"]), ""]
    lines += [entry[key] for key in ("Description", "Homepage") if entry[key]]
    if entry["Version"]:
        lines.append("Version " + entry["Version"])
    lines += ["", "Licence: " + entry["License"], "", entry["Copyright"].strip(), ""]
    if entry["LicenseText"]:
        lines += [entry["LicenseText"], ""]
    return "\n".join(lines)


def main():
    source, output = pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2])
    entries = sorted(scan(source), key=lambda entry: (entry["Path"], entry["Id"]))
    output.write_text(json.dumps(entries, indent=1), encoding="utf-8")


if __name__ == "__main__":
    main()
