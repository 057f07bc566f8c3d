"""Measures the program against its baselines and prints one table. The figures are also written to
build/bench/bench.json, how the cost grows to build/bench/growth.svg. docs/performance.md says what
each row means."""

import argparse
import contextlib
import datetime
import functools
import glob
import json
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

from tests.kit import installation
from tests.kit.desktop import Desktop
from tests.kit.folders import BUILD, NATIVE_PROGRAMS, ROOT
from tests.kit.listener import Listener
from tests.kit.service import Service, sample_pictures
from tests.kit.wine import Prefix
from tools.bench import peers, processes
from tools.bench.table import Row, as_markdown, as_text, exponent, replaced_block

OUT = os.path.join(BUILD, "bench")
WINDOWS = os.path.join(BUILD, "windows")
MIB = 1024 * 1024
ICONS = 40
LARGE_FILE = 256 * MIB
GROWTH_AIM = 1.1  # a power of 1 is linear; caches that overflow look like a little more

PERFORMANCE = os.path.join(ROOT, "docs", "performance.md")
GROWTH_PICTURE = os.path.join(ROOT, "docs", "pictures", "growth.svg")


def program(name):
    return os.path.join(NATIVE_PROGRAMS, name)


def interleaved(runs, ours, baseline):
    """Pairs of figures, measured in turn, so that other load on the machine slows both."""
    return [(ours(), baseline()) for _ in range(runs)]


class Bench:
    def __init__(self, runs, desktop, paints, folder, silent_service):
        self.runs = runs
        self.desktop = desktop
        self.paints = paints
        self.folder = folder
        self.environment = {**desktop.environment,
                            **installation.make(NATIVE_PROGRAMS, os.path.join(folder, "sandbox")),
                            "QT_LOGGING_RULES": "*.debug=false"}
        # Without an answer from the service the splash stays as long as possible.
        self.waiting = {**self.environment, "CLIPWRIGHT_SANDBOX_SERVICE": silent_service}

    # Whole processes, native

    splash = property(lambda self: [program("clipwright-uninstaller-sandbox")])
    bare_window = property(lambda self: [program("baseline-window")])

    def start(self):
        paint = functools.partial(processes.time_to_paint, self.paints)
        paint(self.splash, self.waiting)  # from the disk, once
        paint(self.bare_window, self.waiting)
        return [Row("start to painted splash: time", 1.1, "ms",
                    interleaved(2 * self.runs + 1, lambda: paint(self.splash, self.waiting),
                                lambda: paint(self.bare_window, self.waiting)))]

    # The splash's spin: 100 x 100 pixels in the middle of 720 x 480, each 10 ms.
    spin_baseline = property(lambda self: [
        program("baseline-repaint"), "310", "190", "100", "100", "10", "1"])

    def _bar_baseline(self):
        """The bar has 100 values, and gets a new one with every third tick of 100 ms."""
        with processes.running([program("bench-uninstall-page")], self.waiting,
                               subprocess.PIPE) as page:
            place = page.stdout.readline().decode("ascii").split()
        return [program("baseline-repaint"), *place, "100", "3"]

    def instructions(self):
        frames, bar_frames = 30, 9
        bar_baseline = self._bar_baseline()
        count = functools.partial(processes.instructions_by_frame, environment=self.waiting)
        ours = count(self.splash, frames=frames)
        start = count(self.bare_window, frames=0)
        spin = count(self.spin_baseline, frames=frames)
        page = count([program("bench-uninstall-page")], frames=bar_frames)
        bar = count(bar_baseline, frames=bar_frames)

        def millions(parts):
            return statistics.median(parts) / 1e6

        return [
            Row("start to painted splash: instructions", 1.2, "million",
                [(millions(ours[:1]), millions(start[:1]))]),
            # The first few are the start's.
            Row("splash, one picture: instructions", 2, "million",
                [(millions(ours[5:]), millions(spin[5:]))]),
            Row("uninstall page, one picture: instructions", 2, "million",
                [(millions(page[3:]), millions(bar[3:]))]),
        ]

    def processor_time(self):
        per_second = functools.partial(processes.processor_per_second, self.paints)
        bar_baseline = self._bar_baseline()
        return [
            Row("splash: processor time per second", 1.2, "ms",
                interleaved(self.runs, lambda: per_second(self.splash, self.waiting, 2),
                            lambda: per_second(self.spin_baseline, self.waiting, 2))),
            Row("uninstall page: processor time per second", 1.2, "ms",
                interleaved(self.runs,
                            lambda: per_second([program("bench-uninstall-page")], self.waiting, 4),
                            lambda: per_second(bar_baseline, self.waiting, 4))),
        ]

    def memory(self):
        """With the main window shown: no service answers, so it comes at once."""
        refused = {**self.environment, "CLIPWRIGHT_SANDBOX_SERVICE": "http://127.0.0.1:9"}
        peak = functools.partial(processes.peak_memory, self.paints, environment=refused, seconds=2)
        return [Row("peak memory, native", 1.1, "MiB",
                    interleaved(1, lambda: peak(self.splash), lambda: peak(self.bare_window)))]

    # Downloads

    def downloads(self):
        with Service(os.path.join(self.folder, "service")) as service:
            names = publish_icons(service)
            environment = {**self.environment, "CLIPWRIGHT_SANDBOX_SERVICE": service.url}
            target = os.path.join(self.folder, "downloads")
            os.makedirs(target)
            images = os.path.join(self.environment["TMPDIR"], "Norvane Clipwright Uninstaller",
                                  "Configs", "Images")

            configuration = [program("bench-downloads"), "configuration"]
            same_by_curl = ["curl", "--silent", "--fail", "--parallel", "--parallel-max", "5",
                            "--remote-name-all", "--output-dir", target,
                            *(f"{service.url}/{name}" for name in names)]

            def by_program(measure):
                shutil.rmtree(images, ignore_errors=True)
                result = measure(configuration, environment)
                if len(os.listdir(images)) != ICONS:
                    raise RuntimeError("not every icon arrived")
                return result

            rows = [Row(f"{ICONS} icons and a document", 1.3, "ms",
                        interleaved(2 * self.runs, lambda: by_program(processes.timed)[0],
                                    lambda: processes.timed(same_by_curl)[0])),
                    Row(f"{ICONS} icons and a document: instructions", None, "million",
                        [(by_program(processes.instructions) / 1e6,
                          processes.instructions(same_by_curl) / 1e6)])]

            large_name = "uninstall/pictures/large.png"  # of these the service has any
            with open(os.path.join(service.root, large_name), "wb") as large:
                for _ in range(LARGE_FILE // MIB):
                    large.write(os.urandom(MIB))
            growths = []
            copy = os.path.join(target, "large")

            file = [program("bench-downloads"), "file", f"{service.url}/{large_name}", copy]
            same_file_by_curl = ["curl", "--silent", "--fail", "--output", copy,
                                 f"{service.url}/{large_name}"]

            def file_by_program():
                milliseconds, growth = processes.timed(file, environment)
                if os.path.getsize(copy) != LARGE_FILE:
                    raise RuntimeError("the file did not arrive whole")
                os.remove(copy)
                growths.append((int(growth) / MIB, None))
                return milliseconds

            def file_by_curl():
                milliseconds, _ = processes.timed(same_file_by_curl)
                os.remove(copy)
                return milliseconds

            rows += [Row("256 MiB file", 1.0, "ms",
                         interleaved(self.runs, file_by_program, file_by_curl)),
                     Row("256 MiB file: instructions", None, "million",
                         [(processes.instructions(file, environment) / 1e6,
                           processes.instructions(same_file_by_curl) / 1e6)]),
                     Row("256 MiB file: growth of memory, MiB", 16, "", growths)]
        return rows

    # One process, by Google Benchmark

    def in_process(self, name, pattern, runs):
        """Processor times in microseconds, by name, of each run."""
        result = os.path.join(self.folder, "result.json")
        environment = {**self.environment, "QT_QPA_PLATFORM": "offscreen"}
        with open(os.path.join(OUT, f"{name}.log"), "wb") as log:
            subprocess.run([program(f"bench-{name}"), f"--benchmark_filter={pattern}",
                            f"--benchmark_repetitions={runs}", "--benchmark_min_time=0.05",
                            "--benchmark_enable_random_interleaving=true",
                            f"--benchmark_out={result}", "--benchmark_out_format=json"],
                           env=environment, check=True, stdout=log, stderr=log)
        with open(result, encoding="utf-8") as file:
            entries = json.load(file)["benchmarks"]
        factors = {"ns": 1e-3, "us": 1, "ms": 1e3}
        times = {}
        for entry in entries:
            if entry.get("error_occurred"):
                raise RuntimeError(f"{entry['name']}: {entry['error_message']}")
            if entry["run_type"] == "iteration":
                key = entry["run_name"].split("/iterations:")[0]
                times.setdefault(key, []).append(entry["cpu_time"] * factors[entry["time_unit"]])
        return times

    def pairs(self, times, name, scale=1.0):
        return [(ours * scale, base * scale)
                for ours, base in zip(times[f"{name}/ours"], times[f"{name}/baseline"])]

    def content(self):
        times = self.in_process("content", "^(document|event)", 2 * self.runs)
        return [
            Row("document of 5 MB: loading", 2.5, "ms", self.pairs(times, "document_load", 1e-3)),
            Row("document of 5 MB: again, µs", 1, "",
                [(ours, None) for ours in times["document_again/ours"]]),
            Row("one analytics event", 3, "µs", self.pairs(times, "event")),
        ]

    def interface(self):
        times = self.in_process("interface", "^(main_window|tab_change)", self.runs)
        rows = []
        for name, text, aim in (("main_window", "main window, built and shown", 1.5),
                                ("tab_change", "tab with 300 products", 1.5)):
            row = Row(text, aim, "ms", self.pairs(times, name, 1e-3))
            styled = statistics.median(times[f"{name}/styled_baseline"]) * 1e-3
            row.notes["styled baseline"] = styled
            rows += [row, Row(f"{text}; baseline with the style sheet", aim, "ms",
                              [(ours * 1e-3, base * 1e-3) for ours, base in
                               zip(times[f"{name}/ours"], times[f"{name}/styled_baseline"])])]
        return rows

    def growth(self):
        texts = {"grow_document_load": "loading a document",
                 "grow_picture_queue": "queueing pictures",
                 "grow_reasons": "feedback page", "grow_products": "product list"}
        times = {**self.in_process("content", "^grow", 1),
                 **self.in_process("interface", "^grow", 1)}
        curves = {}
        for key, values in times.items():
            name, size = key.split("/")
            curves.setdefault(texts[name], []).append((int(size), statistics.median(values)))
        rows = []
        for name, points in curves.items():
            row = Row(f"growth: {name}, power", GROWTH_AIM, "", [(exponent(points), None)])
            row.notes["microseconds"] = dict(sorted(points))
            rows.append(row)
        plot(curves, os.path.join(OUT, "growth.svg"))
        return rows

    # Windows

    def windows(self):
        aims = {"start to painted splash: time, Wine": 1.1, "size of the stripped .exe": 1.2,
                "peak memory, Wine": 1.15}
        names = [os.path.join(WINDOWS, "bin", f"{name}.exe")
                 for name in ("clipwright-uninstaller", "clipwright-uninstaller-sandbox",
                              "baseline-window")]
        if not all(map(os.path.exists, names)):
            return [Row(name, aim, "", skipped="there is no Windows build: ./dev windows")
                    for name, aim in aims.items()]
        shipped, sandbox, bare = stripped(names, os.path.join(self.folder, "stripped"))
        start, size, memory = aims
        with Prefix(os.path.join(self.folder, "prefix"), self.waiting) as prefix:
            environment = prefix.environment
            ours, base = ["wine", sandbox], ["wine", bare]
            paint = functools.partial(processes.time_to_paint, self.paints, environment=environment)
            peak = functools.partial(processes.peak_memory, self.paints, environment=environment,
                                     seconds=12)  # the splash waits for ten
            for command in (base, ours):  # Wine starts services with its first program
                paint(command)
            rows = [
                Row(start, aims[start], "ms",
                    interleaved(self.runs, lambda: paint(ours), lambda: paint(base))),
                Row(size, aims[size], "MiB",
                    [((os.path.getsize(shipped) - resources_size()) / MIB,
                      os.path.getsize(bare) / MIB)]),
                Row(memory, aims[memory], "MiB", interleaved(1, lambda: peak(ours),
                                                             lambda: peak(base))),
            ]
            return rows + peers.rows(self.runs, self.desktop, prefix, shipped,
                                     os.path.join(WINDOWS, "bin"), self.folder)


def publish_icons(service):
    """Publishes a catalogue whose products have ICONS icons; returns the names of all files."""
    pictures = sample_pictures("app")
    names = [f"uninstall/pictures/pid_{number}.png" for number in range(ICONS)]
    for number, name in enumerate(names):
        with open(pictures[number % len(pictures)], "rb") as picture:
            service.put(name, picture.read())
    products = [{"pid": number, "name": f"Product {number}", "icon": f"{service.url}/{name}"}
                for number, name in enumerate(names)]
    document = {"apps": [{"key": "utilities", "list": products}],
                "problem_type": {"list": [{"value": 57, "title": "A reason"}]}}
    published = "uninstall/cfg/v1/846-en.json"
    service.put(published, json.dumps(document).encode())
    return [published, *names]


def stripped(programs, folder):
    """Copies as they ship, with the libraries beside them. Symbols for a debugger would be loaded
    with the rest of a program."""
    os.makedirs(folder)
    for library in glob.glob(os.path.join(os.path.dirname(programs[0]), "*.dll")):
        shutil.copy(library, folder)
    copies = [os.path.join(folder, os.path.basename(name)) for name in programs]
    for name, copy in zip(programs, copies):
        subprocess.run(["x86_64-w64-mingw32-strip", "-o", copy, name], check=True)
    return copies


def resources_size():
    """Of the style sheet, pictures, font, catalogues and documents, as they are compiled in."""
    objects = glob.glob(f"{WINDOWS}/Resources/**/qrc_*.obj", recursive=True)
    objects += glob.glob(f"{WINDOWS}/packaging/**/*.rc.res", recursive=True)
    if not objects:
        raise RuntimeError("the compiled-in resources are not found")
    output = subprocess.run(["x86_64-w64-mingw32-size", *objects], check=True,
                            stdout=subprocess.PIPE, encoding="ascii").stdout
    return sum(sum(map(int, line.split()[:3])) for line in output.splitlines()[1:])


def plot(curves, file):
    import matplotlib
    matplotlib.use("svg")
    matplotlib.rcParams["svg.hashsalt"] = "growth"  # the same figures give the same picture
    from matplotlib import pyplot
    figure, axes = pyplot.subplots(figsize=(7, 5))
    for name, points in curves.items():
        sizes, costs = zip(*sorted(points))
        axes.loglog(sizes, [cost / 1000 for cost in costs], marker="o", label=name)
    sizes = sorted({size for points in curves.values() for size, _ in points})
    axes.loglog(sizes, [size / 100 for size in sizes], "--", color="grey", label="linear")
    axes.set(xlabel="entries", ylabel="milliseconds of processor time")
    axes.grid(True, which="major", alpha=0.3)
    axes.legend()
    figure.savefig(file, metadata={"Date": None})


def machine():
    with open("/proc/cpuinfo", encoding="utf-8") as text:
        model = next((line.split(":", 1)[1].strip() for line in text
                      if line.startswith("model name")), "an unknown processor")
    return (f"{datetime.date.today().isoformat()}, {os.cpu_count()} processors ({model}), load "
            f"{os.getloadavg()[1]:.1f}")


def record(rows, where):
    with open(PERFORMANCE, encoding="utf-8") as file:
        text = file.read()
    block = f"Measured {where}.\n\n{as_markdown(rows)}"
    with open(PERFORMANCE, "w", encoding="utf-8") as file:
        file.write(replaced_block(text, block))
    growth = os.path.join(OUT, "growth.svg")
    if os.path.exists(growth):
        shutil.copyfile(growth, GROWTH_PICTURE)


GROUPS = ("start", "instructions", "processor_time", "memory", "downloads", "content", "interface",
          "growth", "windows")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--runs", type=int, default=5, help="interleaved runs of each row")
    parser.add_argument("--only", choices=GROUPS, help="only one group of rows")
    parser.add_argument("--record", action="store_true", help="write the figures into docs/")
    arguments = parser.parse_args()
    if arguments.record and arguments.only:
        parser.error("only a whole table is recorded")
    os.makedirs(OUT, exist_ok=True)

    where = machine()
    rows = []
    with contextlib.ExitStack() as stack:
        folder = stack.enter_context(tempfile.TemporaryDirectory())
        # A window manager and a compositor would take part of the processors.
        desktop = stack.enter_context(Desktop(Desktop.BARE))
        paints = stack.enter_context(processes.PaintWatch(desktop))
        listener = stack.enter_context(Listener())
        bench = Bench(arguments.runs, desktop, paints, folder, listener.url)
        for group in [arguments.only] if arguments.only else GROUPS:
            began = time.monotonic()
            rows += getattr(bench, group)()
            print(f"  {group}: {time.monotonic() - began:.0f} s", file=sys.stderr)

    with open(os.path.join(OUT, "bench.json"), "w", encoding="utf-8") as file:
        json.dump({"machine": where, "rows": [row.as_json() for row in rows]}, file, indent=2)
    print(as_text(rows))
    if arguments.record:
        record(rows, where)


if __name__ == "__main__":
    main()
