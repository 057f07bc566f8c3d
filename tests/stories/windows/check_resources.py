#!/usr/bin/python3
"""Checks what Windows itself reads in the program: check_resources.py PROGRAM VERSION"""

import subprocess
import sys
import xml.etree.ElementTree as ElementTree

MANIFEST, VERSION, ICON_GROUP = "24", "16", "14"


def resource(program, kind):
    return subprocess.run(["wrestool", "--extract", "--raw", f"--type={kind}", program],
                          check=True, stdout=subprocess.PIPE).stdout


def main():
    program, version = sys.argv[1:]
    failures = []

    def expect(condition, text):
        print(("  ok    " if condition else "  FAIL  ") + text)
        if not condition:
            failures.append(text)

    manifest = ElementTree.fromstring(resource(program, MANIFEST))  # one only, or it does not parse
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

    texts = resource(program, VERSION).decode("utf-16-le", "replace")
    expect("FileVersion\0" in texts and version in texts, f"its version is {version}")
    expect("Norvane Clipwright Uninstaller" in texts, "it says what it is")
    sizes = resource(program, ICON_GROUP)[4]
    expect(sizes == 7, f"its icon has seven sizes ({sizes})")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
