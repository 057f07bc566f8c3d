"""Windows programs on a virtual desktop: Wine prefixes."""

import os
import re
import shutil
import subprocess

from tests.kit.folders import ROOT

MAKER = os.path.join(ROOT, "packaging", "windows", "wine-prefix.sh")

# Ends a prefix's programs when its standard input ends: when this process does, at the latest.
GUARD = "cat >/dev/null; wineserver --kill"


class Prefix:
    """A Wine prefix between entry and exit, for programs with a given environment. On exit
    everything in it is ended and the prefix removed."""

    def __init__(self, folder, environment):
        self.folder = folder
        self.environment = environment
        self._guard = None

    def __enter__(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        made = subprocess.run(["bash", "-c", '. "$0" && make_prefix "$1" && env -0', MAKER,
                               self.folder], check=True, env=self.environment,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, encoding="utf-8")
        variables = (pair.split("=", 1) for pair in made.stdout.split("\0") if pair)
        # Wine hands variables of Qt and temporary folders of this side on to its programs.
        self.environment = {name: value for name, value in variables
                            if not name.startswith("QT_") and name not in ("TMP", "TEMP", "TMPDIR")}
        self.environment["WINEPREFIX"] = self.folder
        # In a session of its own, because this process may be killed with all its children.
        self._guard = subprocess.Popen(["setsid", "--fork", "sh", "-c", GUARD],
                                       env=self.environment, stdin=subprocess.PIPE,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._guard.wait()
        self._start_server()
        return self

    def __exit__(self, *exception):
        self._guard.stdin.close()
        self.end_session()
        shutil.rmtree(self.folder, ignore_errors=True)

    def end_session(self):
        """Ends every program, and the services."""
        self._run_server("--kill")
        self._run_server("--wait")

    def restart_session(self, wrap):
        """Ends the session and starts one in which the services, who own the connections and tell
        of the network, run under a command like the programs."""
        self.end_session()
        self._start_server(wrap)

    def run(self, *command, output=subprocess.DEVNULL):
        """Runs a program to its end and returns its exit code."""
        return subprocess.run(["wine", *command], env=self.environment, check=False,
                              stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL,
                              timeout=180).returncode  # compilers of setups among them

    def output(self, *command):
        """Runs a program to its end and returns what it printed."""
        name = self.folder + ".output"  # a pipe would be held open by Wine's services
        with open(name, "wb") as output:
            self.run(*command, output=output)
        with open(name, encoding="utf-8", errors="replace") as output:
            return output.read().strip()

    def set_registry(self, key, value, kind, data):
        if self.run("reg", "add", key, "/v", value, "/t", kind, "/d", str(data), "/f") != 0:
            raise OSError(f"cannot write {key} {value}")

    def registry(self, key, value):
        """The text of a value; None when it is missing."""
        found = re.search(r"REG_\w+\s+(.*)", self.output("reg", "query", key, "/v", value))
        return found.group(1).strip() if found else None

    def variable(self, name):
        """The path of a folder that an environment variable names to Windows programs."""
        return self.path(self.output("cmd", "/c", f"echo %{name}%"))

    def path(self, windows_path):
        """Where a file of drive C: lies on this side."""
        drive, _, rest = windows_path.partition(":\\")
        assert drive == "C"
        return os.path.join(self.folder, "drive_c", *rest.split("\\"))

    def windows_path(self, path):
        """What a file is called by Windows programs."""
        relative = os.path.relpath(path, os.path.join(self.folder, "drive_c"))
        drive, rest = ("Z:", path) if relative.startswith(os.pardir) else ("C:", "/" + relative)
        return drive + rest.replace("/", "\\")

    def _start_server(self, wrap=()):
        """Starts the server and its services, which else would start with every program. By one
        command, because `wrap` may make a namespace for each."""
        subprocess.run([*wrap, "sh", "-c", "wineserver --persistent && wine cmd /c exit"],
                       env=self.environment, check=True, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=180)

    def _run_server(self, option):
        subprocess.run(["wineserver", option], env=self.environment, check=False,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=60)
