"""Processes of tests: servers, proxies, window managers, the program itself."""

import contextlib
import os
import socket
import subprocess
import time


def end(process, seconds=10):
    """Ends a process and waits for it; one that has ended already may be ended again."""
    process.terminate()
    try:
        process.wait(timeout=seconds)
    except subprocess.TimeoutExpired:
        process.kill()
        process.wait()


class Processes:
    """Starts processes and ends them on exit, the last one first. The system ends them when the
    thread that started them ends before that, however it ends."""

    def __init__(self):
        self._started = contextlib.ExitStack()

    def __enter__(self):
        return self

    def __exit__(self, *exception):
        self._started.close()

    def start(self, command, **options):
        """Starts a process. Unless the options say otherwise it reads nothing, and its output is
        discarded."""
        streams = dict.fromkeys(("stdin", "stdout", "stderr"), subprocess.DEVNULL)
        process = subprocess.Popen(["setpriv", "--pdeathsig", "TERM", *command],
                                   **{**streams, **options})
        self._started.callback(end, process)
        return process

    def start_and_ask(self, command, **options):
        """Starts a server that writes its address to the descriptor given as its last argument.
        Returns the process and the address, which is empty when the server did not start."""
        read_end, write_end = os.pipe()
        try:
            process = self.start([*command, str(write_end)], pass_fds=[write_end], **options)
        finally:
            os.close(write_end)
        with os.fdopen(read_end) as reply:
            return process, reply.readline().strip()

    def start_server(self, command_at, port=None, **options):
        """Starts a server by command_at(port), at a free port unless one is given, and waits until
        it listens there. Returns the process and the port."""
        for _ in range(1 if port else 5):  # another process may take a free port first
            chosen = port or free_port()
            process = self.start(command_at(chosen), **options)
            if _listens_soon(process, chosen):
                return process, chosen
            end(process)
        raise OSError(f"{command_at(chosen)[0]} does not serve at port {chosen}")


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


def _listens_soon(process, port):
    deadline = time.monotonic() + 20
    while process.poll() is None and time.monotonic() < deadline:
        if _listens(process, port):
            return True
        time.sleep(0.05)
    return False


def _listens(process, port):
    """Tells whether this very process listens at the port."""
    with open("/proc/net/tcp", encoding="ascii") as table:
        rows = [line.split() for line in table]
    sockets = {f"socket:[{row[9]}]" for row in rows
               if row[3] == "0A" and row[1].endswith(f":{port:04X}")}
    descriptors = f"/proc/{process.pid}/fd"
    try:
        return any(os.readlink(f"{descriptors}/{number}") in sockets
                   for number in os.listdir(descriptors))
    except OSError:  # the process ended, or closed a file, meanwhile
        return False
