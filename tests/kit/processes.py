"""Servers that stand around the program while it is tested. None outlives this process, however it
ends."""

import os
import socket
import subprocess
import time


def start(command, **options):
    """Starts a process that the system ends with this one."""
    return subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *command], **options)


def end(process, seconds=10):
    process.terminate()
    try:
        process.wait(timeout=seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def start_server(command_at, port=None, **options):
    """Starts a server by command_at(port), at a free port unless one is given, and waits until it
    listens there. Returns its process and its port."""
    for _ in range(1 if port else 5):
        place = port or free_port()  # which somebody else may take before the server does
        process = start(command_at(place), **options)
        try:
            if _listens_soon(process, place):
                return process, place
        except BaseException:
            end(process)
            raise
        end(process)
    raise OSError(f"{command_at(place)[0]} does not serve at port {place}")


def _listens_soon(process, port):
    deadline = time.monotonic() + 20
    while process.poll() is None and time.monotonic() < deadline:
        if _listens(process, port):
            return True
        time.sleep(0.05)
    return False


def _listens(process, port):
    """Tells whether it is this process that listens there, and nobody else."""
    with open("/proc/net/tcp", encoding="ascii") as table:
        rows = [line.split() for line in table]
    sockets = {f"socket:[{row[9]}]" for row in rows
               if row[3] == "0A" and row[1].endswith(f":{port:04X}")}
    descriptors = f"/proc/{process.pid}/fd"
    try:
        return any(os.readlink(f"{descriptors}/{number}") in sockets
                   for number in os.listdir(descriptors))
    except OSError:  # it ended, or closed a file, meanwhile
        return False
