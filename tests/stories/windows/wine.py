"""Windows as the stories see it: a Wine prefix on the virtual desktop, its programs and windows."""

import contextlib
import os
import re
import shutil
import subprocess
import time

# Ends a prefix's programs when its standard input ends, as it does with whoever holds the other end.
GUARD = 'cat >/dev/null; wineserver --kill'

HERE = os.path.dirname(os.path.abspath(__file__))
SHARED = os.path.join(HERE, "../../../packaging/windows/wine-prefix.sh")


class Prefix:
    """A Wine prefix of its own, to be entered on the desktop that its programs shall use. On exit
    everything in it is ended and the prefix removed."""

    def __init__(self, folder):
        self.folder = folder
        self.environment = {}
        self._guard = None

    def __enter__(self):
        shutil.rmtree(self.folder, ignore_errors=True)
        subprocess.run(["bash", "-c", '. "$0"; make_prefix "$1"', SHARED, self.folder], check=True)
        exported = subprocess.run(["bash", "-c", '. "$0"; env -0', SHARED], check=True,
                                  stdout=subprocess.PIPE, encoding="utf-8").stdout
        self.environment = dict(pair.split("=", 1) for pair in exported.split("\0") if pair)
        self.environment["WINEPREFIX"] = self.folder
        # Wine takes variables of Qt for those of a Qt on this side.
        for variable in [name for name in self.environment if name.startswith("QT_")]:
            del self.environment[variable]
        # Not among this process's children, which may be killed with it.
        self._guard = subprocess.Popen(["setsid", "--fork", "sh", "-c", GUARD],
                                       env=self.environment, stdin=subprocess.PIPE,
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._guard.wait()
        return self

    def __exit__(self, *exception):
        self._guard.stdin.close()
        self.run_server("--kill")
        self.run_server("--wait")
        shutil.rmtree(self.folder, ignore_errors=True)

    def run_server(self, option):
        subprocess.run(["wineserver", option], env=self.environment, check=False,
                       stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL, timeout=60)

    def run(self, *command, timeout=60):
        """Runs a program to its end and returns its exit code."""
        return subprocess.run(["wine", *command], env=self.environment, check=False,
                              stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL, timeout=timeout).returncode

    def output(self, *command, timeout=60):
        """Runs a program to its end and returns what it printed."""
        file = self.folder + ".output"
        with open(file, "wb") as output:
            subprocess.run(["wine", *command], env=self.environment, check=False,
                           stdin=subprocess.DEVNULL, stdout=output, stderr=subprocess.DEVNULL,
                           timeout=timeout)
        with open(file, encoding="utf-8", errors="replace") as output:
            return output.read().strip()

    def start(self, program, log):
        with open(log, "wb") as output:
            return subprocess.Popen(["wine", program], env=self.environment,
                                    stdin=subprocess.DEVNULL, stdout=output,
                                    stderr=subprocess.STDOUT)

    def set_registry(self, key, value, kind, data):
        if self.run("reg", "add", key, "/v", value, "/t", kind, "/d", str(data), "/f") != 0:
            raise AssertionError(f"cannot write {key} {value}")

    def registry(self, key, value):
        """The text of a value; None when it is missing."""
        found = re.search(r"REG_\w+\s+(.*)", self.output("reg", "query", key, "/v", value))
        return found.group(1).strip() if found else None

    def path(self, windows_path):
        """Where a file of drive C: lies on this side."""
        drive, _, rest = windows_path.partition(":\\")
        assert drive == "C"
        return os.path.join(self.folder, "drive_c", *rest.split("\\"))


class Window:
    """A window of the program, found by its title, driven by mouse and keyboard. Places are
    those of the program's own forms, whatever the scale."""

    def __init__(self, title, seconds=30, width=None):
        self.title = title
        deadline = time.monotonic() + seconds
        while True:
            for self.id in self._search(title):
                with contextlib.suppress(subprocess.CalledProcessError, KeyError):
                    geometry = self.geometry()
                    if width is None or geometry["WIDTH"] == width:
                        return
            if time.monotonic() > deadline:
                raise AssertionError(f"no window {title!r} within {seconds} s")
            time.sleep(0.1)

    @staticmethod
    def _search(title):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"],
                               check=False, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                               encoding="ascii")
        return found.stdout.split()

    @staticmethod
    def is_there(title):
        return bool(Window._search(title))

    def geometry(self):
        found = subprocess.run(["xdotool", "getwindowgeometry", "--shell", self.id], check=True,
                               stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, encoding="ascii")
        return {name: int(value) for name, value in
                (line.split("=") for line in found.stdout.split())}

    def place(self):
        geometry = self.geometry()
        return geometry["X"], geometry["Y"]

    @staticmethod
    def _xdotool(*arguments):
        subprocess.run(["xdotool", *(str(argument) for argument in arguments)], check=True)

    def _point_at(self, x, y):
        left, top = self.place()
        self._xdotool("mousemove", left + x, top + y)
        time.sleep(0.2)  # a person sees the button change before pressing it

    def click(self, x, y):
        self._point_at(x, y)
        self._xdotool("click", 1)
        time.sleep(0.3)

    def drag(self, x, y, right, down):
        """Presses at a place of the window and moves the mouse before letting go. Returns by how
        much the window has moved."""
        before = self.place()
        self._point_at(x, y)
        self._xdotool("mousedown", 1)
        for _ in range(10):
            time.sleep(0.05)
            self._xdotool("mousemove_relative", "--", right // 10, down // 10)
        time.sleep(0.2)
        self._xdotool("mouseup", 1)
        time.sleep(0.5)
        after = self.place()
        return after[0] - before[0], after[1] - before[1]

    def press_keys(self, *keys):
        self._xdotool("windowfocus", "--sync", self.id)
        for key in keys:
            self._xdotool("key", key)
            time.sleep(0.1)

    def type(self, text):
        self._xdotool("windowfocus", "--sync", self.id)
        self._xdotool("type", "--delay", 30, text)
        time.sleep(0.3)
