#!/usr/bin/python3
"""Checks what Windows itself reads in the program: check_resources.py PROGRAM VERSION"""

import sys
import xml.etree.ElementTree as ElementTree

import pefile

SYSTEM_FOLDER = "%SystemRoot%\\system32\\"
MAKERS_LIBRARIES = {"data_api.dll", "nvupgrade.dll"}
# What the program and Qt ask for by a name without a folder.
ASKED_FOR = {"shcore.dll", "uiautomationcore.dll", "qttestability.dll"}


def resource(image, kind):
    """The first resource of a kind; there must be no other."""
    kinds = {entry.id: entry for entry in image.DIRECTORY_ENTRY_RESOURCE.entries}
    (named,) = kinds[pefile.RESOURCE_TYPE[kind]].directory.entries
    (language,) = named.directory.entries
    place = language.data.struct
    return image.get_data(place.OffsetToData, place.Size)


def main():
    program, version = sys.argv[1:]
    image = pefile.PE(program)
    failures = []

    def expect(condition, text):
        print(("  ok    " if condition else "  FAIL  ") + text)
        if not condition:
            failures.append(text)

    manifest = ElementTree.fromstring(resource(image, "RT_MANIFEST"))
    tags = {element.tag.partition("}")[2]: element for element in manifest.iter()}
    expect(tags["requestedExecutionLevel"].get("level") == "requireAdministrator",
           "it asks for administrator rights")
    identities = [element.get("name") for element in manifest.iter()
                  if element.tag.endswith("assemblyIdentity")]
    own = next(element for element in manifest.iter() if element.tag.endswith("assemblyIdentity"))
    expect(own.get("version") == version + ".0", f"it is of version {version} there, too")
    expect("Microsoft.Windows.Common-Controls" in identities, "it uses common controls 6")
    expect(tags["longPathAware"].text == "true", "it takes long paths")
    expect(sum(element.tag.endswith("supportedOS") for element in manifest.iter()) == 4,
           "it names the systems that it supports")
    expect(not {tag for tag in tags if "dpi" in tag.lower()}, "it declares nothing about DPI")

    pinned = {element.get("name").lower() for element in manifest.iter()
              if element.tag.endswith("}file") and element.get("loadFrom") == SYSTEM_FOLDER}
    imported = {entry.dll.decode().lower() for entry in image.DIRECTORY_ENTRY_IMPORT}
    expect(MAKERS_LIBRARIES < imported, "it imports the maker's libraries")
    free = (imported | ASKED_FOR) - MAKERS_LIBRARIES - pinned
    expect(not free, f"all others come from the system's folder ({', '.join(free) or 'none free'})")

    texts = image.FileInfo[0]
    strings = next(info for info in texts if info.Key == b"StringFileInfo").StringTable[0].entries
    expect(strings[b"FileVersion"] == version.encode(), f"its version is {version}")
    expect(strings[b"FileDescription"] == b"Norvane Clipwright Uninstaller", "it says what it is")
    sizes = resource(image, "RT_GROUP_ICON")[4]
    expect(sizes == 7, f"its icon has seven sizes ({sizes})")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
