"""The program beside the uninstallers that makers' tools make, up to their first question: all of
them started in turn under the same Wine."""

import contextlib
import glob
import os
import signal
import subprocess
import time
import types

from tests.kit.folders import ROOT
from tests.stories.windows import setups
from tools.bench import processes
from tools.bench.table import Row

MIB = 1024 * 1024
LEAST_WIDTH = 250  # of the windows with a question; splashes of setups are narrower
SETTLE = 3  # seconds after the first window in which everything else is loaded


def install(prefix, binaries, folder):
    """Installs the peers; returns the commands that start their uninstallers, by their name."""
    setups.inno("Peer")(types.SimpleNamespace(prefix=prefix, binaries=binaries, out=folder))
    setup = os.path.join(folder, "peer.exe")
    subprocess.run(["makensis", "-V2", "-WX", f"-DOUTPUT={setup}",
                    os.path.join(ROOT, "tools", "bench", "peer.nsi")], check=True)
    if prefix.run(setup) != 0:
        raise OSError("the setup failed")
    programs = prefix.path("C:\\Program Files")
    return {"Inno Setup": os.path.join(programs, "Norvane", "Norvane Clipwright", "unins000.exe"),
            "NSIS": os.path.join(programs, "Peer", "uninstall.exe")}


def measured(desktop, program, environment):
    """Milliseconds to the first window; then peak memory in MiB and processor time in milliseconds
    of all processes that the program is by then: uninstallers start copies of themselves."""
    prefix = environment["WINEPREFIX"]
    others = processes_in(prefix)
    with processes.PaintWatch(desktop, LEAST_WIDTH) as paints:
        start = time.monotonic()
        with processes.running(["wine", program], environment):
            first = (paints.wait_for_paint() - start) * 1000
            time.sleep(SETTLE)
            own = processes_in(prefix) - others
            result = (first, sum(map(processes.peak_mib, own)),
                      sum(map(processes.processor_ms, own)))
            for process in own:
                with contextlib.suppress(ProcessLookupError):
                    os.kill(process, signal.SIGKILL)
            return result


def processes_in(prefix):
    """Those of a Wine prefix that run."""
    mark = f"WINEPREFIX={prefix}".encode()
    found = set()
    for folder in glob.glob("/proc/[0-9]*"):
        with contextlib.suppress(OSError), open(folder + "/environ", "rb") as variables:
            if mark in variables.read().split(b"\0"):
                found.add(int(os.path.basename(folder)))
    return found


def rows(runs, desktop, prefix, ours, binaries, folder):
    """Ours is the program as it ships. Only the time has an aim: not to be slower than Inno
    Setup's."""
    environment = prefix.environment
    result = []
    for name, peer in install(prefix, binaries, folder).items():
        aim = 1 if name == "Inno Setup" else None
        for program in (ours, peer):
            measured(desktop, program, environment)  # from the disk, once
        pairs = [(measured(desktop, ours, environment), measured(desktop, peer, environment))
                 for _ in range(runs)]
        for index, (text, unit) in enumerate((("first window", "ms"), ("peak memory", "MiB"),
                                              ("processor time", "ms"))):
            result.append(Row(f"{text}, Wine; {name}'s uninstaller", aim if index == 0 else None,
                              unit, [(one[index], other[index]) for one, other in pairs]))
        result.append(Row(f"size; {name}'s uninstaller", None, "MiB",
                          [(os.path.getsize(ours) / MIB, os.path.getsize(peer) / MIB)]))
    return result
