"""Starts the program on the developer's own display, in a sample installation with the local
service, and prints what the setup uninstaller received."""

import argparse
import os
import subprocess
import sys

from tests.kit import installation
from tests.kit.folders import make_afresh
from tests.kit.service import Service


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for the sample installation")
    arguments = parser.parse_args()

    root = make_afresh(arguments.out)
    environment = {**os.environ, **installation.make(arguments.bin, root)}
    print(f"The sample installation is in {root}", flush=True)
    with Service(os.path.join(root, "service")) as service:
        environment["CLIPWRIGHT_SANDBOX_SERVICE"] = service.url
        program = os.path.join(arguments.bin, "clipwright-uninstaller-sandbox")
        code = subprocess.run([program], env=environment, check=False).returncode
    print("What the setup uninstaller received:")
    received = installation.lines(os.path.join(root, "Received", "uninstaller.txt"))
    for line in received or ["(never started)"]:
        print("  " + line)
    return code


if __name__ == "__main__":
    sys.exit(main())
