#!/usr/bin/env python3
"""Writes the notices of the third-party code inside Qt: attributions.py QT-SOURCE OUTPUT-FILE"""

import json
import pathlib
import sys

# Code of other systems, or of parts that the static build leaves out.
LEFT_OUT = {
    "src/3rdparty/VulkanMemoryAllocator",
    "src/3rdparty/android",
    "src/3rdparty/angle",
    "src/3rdparty/gradle",
    "src/3rdparty/wasm",
    "src/3rdparty/xcb",
    "src/dbus",
    "src/gui/opengl",
    "src/gui/vulkan",
    "src/plugins/platforms/cocoa",
    "src/testlib/3rdparty",
}


def components(source):
    for document in sorted(source.glob("src/**/qt_attribution.json")):
        if str(document.parent.relative_to(source)) in LEFT_OUT:
            continue
        # The documents have line breaks inside strings.
        entries = json.loads(document.read_text(encoding="utf-8"), strict=False)
        for entry in entries if isinstance(entries, list) else [entries]:
            yield document.parent, entry


def notice(folder, entry):
    lines = [entry["Name"], "=" * len(entry["Name"]), ""]
    lines += [entry[key] for key in ("Description", "Homepage") if key in entry]
    if "Version" in entry:
        lines.append("Version " + entry["Version"])
    lines += ["", "Licence: " + entry["License"], "", entry["Copyright"].strip(), ""]
    if entry.get("LicenseFile"):
        text = (folder / entry["LicenseFile"]).read_bytes().decode("utf-8", "replace")
        lines += [text.strip(), ""]
    return "\n".join(lines)


def main():
    source, output = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    notices = [notice(folder, entry) for folder, entry in components(source)]
    output.write_text("\n\n".join(notices), encoding="utf-8")


if __name__ == "__main__":
    main()
