"""Measures what one start of the program asks of the published service, cold and with everything
there already, and how many starts a second of one core's time serves, over TLS and without."""

import argparse
import os
import re
import subprocess
import sys
import time

from tests.kit import installation
from tests.kit.folders import make_afresh
from tests.kit.processes import Processes
from tests.kit.service import Service

SECONDS = 4  # of load
SETTLED = 3  # without a request: the start has what it wants

# Asks for one start's files over and over, over connections that are kept.
SCRIPT = """local at, paths = 0, {{{paths}}}
request = function()
  at = at % #paths + 1
  return wrk.format("GET", paths[at], {{["Accept-Encoding"] = "gzip, deflate"}})
end
"""


def start(program, environment, service):
    """Starts the program until it asks for no more; returns its requests and their bytes."""
    before = len(service.transfers())
    with Processes() as processes:
        processes.start([program], env=environment)
        deadline, last = time.monotonic() + 60, (0, time.monotonic())
        while time.monotonic() < deadline:
            count = len(service.transfers()) - before
            if count != last[0]:
                last = (count, time.monotonic())
            if count and time.monotonic() - last[1] > SETTLED:
                break
            time.sleep(0.1)
    return service.transfers()[before:]


def processor_seconds(pid):
    """Of the server's one worker."""
    with open(f"/proc/{pid}/task/{pid}/children", encoding="ascii") as file:
        worker = file.read().split()[0]
    with open(f"/proc/{worker}/stat", encoding="ascii") as file:
        fields = file.read().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def load(service, paths, folder):
    """Returns starts by second, and by second of the processor's time."""
    script = os.path.join(folder, "start.lua")
    with open(script, "w", encoding="ascii") as file:
        file.write(SCRIPT.format(paths=", ".join(f'"{path}"' for path in paths)))
    used = processor_seconds(service.pid())
    done = subprocess.run(["wrk", "-t1", "-c16", f"-d{SECONDS}s", "-s", script, service.url],
                          check=True, stdout=subprocess.PIPE, encoding="utf-8").stdout
    used = processor_seconds(service.pid()) - used
    if "Non-2xx" in done:
        raise RuntimeError(done)
    count, seconds = re.search(r"(\d+) requests in ([\d.]+)s", done).groups()
    starts = int(count) / len(paths)
    return starts / float(seconds), starts / used


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for the service and an installation")
    arguments = parser.parse_args()
    out = make_afresh(arguments.out)
    environment = {**os.environ, **installation.make(arguments.bin, os.path.join(out, "sandbox")),
                   "QT_QPA_PLATFORM": "offscreen"}
    program = os.path.join(arguments.bin, "clipwright-uninstaller-sandbox")

    with Service(os.path.join(out, "plain")) as service:
        environment["CLIPWRIGHT_SANDBOX_SERVICE"] = service.url
        for name in ("cold", "unchanged"):
            transfers = start(program, environment, service)
            document = sum(sent for path, sent in transfers if path.endswith(".json"))
            print(f"{name} start: {len(transfers)} requests, "
                  f"{sum(sent for _, sent in transfers)} bytes sent, {document} of the document")
        paths = [path for path, _ in transfers]
        print("without TLS: {:.0f} starts a second, {:.0f} a second of one core's time".format(
            *load(service, paths, out)))
    with Service(os.path.join(out, "tls"), "localhost", certificate_for="localhost") as service:
        print("over TLS 1.3: {:.0f} starts a second, {:.0f} a second of one core's time".format(
            *load(service, paths, out)))
    print(f"load average {os.getloadavg()[0]:.0f} on {os.cpu_count()} processors")
    return 0


if __name__ == "__main__":
    sys.exit(main())
