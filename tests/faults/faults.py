#!/usr/bin/python3
"""Plays a table of faults against the whole program, as a black box on virtual displays, and prints
for each what happened, how long it took, and whether that is what must happen.

usage: faults.py --bin DIR --out DIR [--jobs N] [--only REGEX] [--list]

Writes the table as faults.json and faults.md into the folder DIR. The folder of a row that failed
is kept there, with its sandbox and the program's output. Exits with 1 when a row failed.
"""

import argparse
import json
import os
import queue
import re
import resource
import shutil
import sys
import threading
import time
import traceback

from tests.faults import harness
from tests.kit.folders import make_afresh
from tests.faults.table import ROWS

from tests.faults import rows_network  # the order of the imports is that of the table
from tests.faults import rows_folders
from tests.faults import rows_cache
from tests.faults import rows_ini
from tests.faults import rows_children
from tests.faults import rows_libraries
from tests.faults import rows_clock
from tests.faults import rows_ends

MARKS = {"pass": "ok  ", "fail": "FAIL", "skip": "skip"}


class Result:
    def __init__(self, row):
        self.row = row
        self.outcome = "fail"
        self.seconds = 0.0
        self.happened = ""
        self.wrong = []

    def as_json(self):
        return {"group": self.row.group, "fault": self.row.name, "outcome": self.outcome,
                "seconds": round(self.seconds, 1), "happened": self.happened, "wrong": self.wrong}


def play(row, binaries, folder):
    """Plays one row, on a screen of its own, and judges it."""
    result = Result(row)
    began = time.monotonic()
    try:
        with harness.Screen() as screen:
            fault = harness.Fault(binaries, folder, screen)
            try:
                row.play(fault)
            except harness.Skipped as reason:
                result.outcome = "skip"
                fault.note(str(reason))
            except AssertionError as wrong:
                fault.failures.append(str(wrong))
                fault.keep_picture()
            finally:
                fault.finish()
            result.happened = ", ".join(fault.seen)
            result.wrong = fault.failures
    except Exception:  # a row that does not work has failed; the others go on
        result.wrong = [traceback.format_exc()]
    result.seconds = time.monotonic() - began
    if result.wrong:
        result.outcome = "fail"
    elif result.outcome != "skip":
        result.outcome = "pass"
        shutil.rmtree(folder)
    return result


def play_all(rows, binaries, out, jobs, report):
    """Plays the rows side by side, the slow and the greedy ones last and alone."""
    waiting = queue.SimpleQueue()
    results = {}

    def work():
        while True:
            try:
                row = waiting.get_nowait()
            except queue.Empty:
                return
            run(row)

    def run(row):
        folder = os.path.join(out, "rows", f"{rows.index(row) + 1:03}")
        results[row] = play(row, binaries, folder)
        report(results[row])

    for row in rows:
        if not row.alone:
            waiting.put(row)
    workers = [threading.Thread(target=work) for _ in range(jobs)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    for row in rows:
        if row.alone:
            run(row)
    return [results[row] for row in rows]


def write_tables(results, summary, out):
    with open(os.path.join(out, "faults.json"), "w", encoding="utf-8") as file:
        json.dump({"summary": summary, "rows": [result.as_json() for result in results]}, file,
                  indent=1, ensure_ascii=False)
    with open(os.path.join(out, "faults.md"), "w", encoding="utf-8") as file:
        file.write(f"# Faults\n\n{summary}\n\n| | group | fault | what happened | seconds |\n"
                   "|---|---|---|---|---:|\n")
        for result in results:
            wrong = " **" + "; ".join(result.wrong).replace("\n", " ") + "**" if result.wrong else ""
            text = (result.happened + wrong).replace("|", "\\|")
            file.write(f"| {result.outcome} | {result.row.group} | {result.row.name} | {text} | "
                       f"{result.seconds:.1f} |\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", required=True, help="folder with the built programs")
    parser.add_argument("--out", required=True, help="folder for the tables")
    parser.add_argument("--jobs", type=int, default=2 * (os.cpu_count() or 1),
                        help="rows at once; most of a row is waiting")
    parser.add_argument("--only", default="", help="rows whose group or name match")
    parser.add_argument("--list", action="store_true", help="say which rows there are")
    arguments = parser.parse_args()

    rows = [row for row in ROWS
            if re.search(arguments.only, f"{row.group}: {row.name}", re.IGNORECASE)]
    if arguments.list:
        for row in rows:
            print(f"{row.group}: {row.name}")
        return 0
    # The core of a program that crashes is kept with its row, where the system lays cores down in
    # the working folder.
    resource.setrlimit(resource.RLIMIT_CORE,
                       (resource.getrlimit(resource.RLIMIT_CORE)[1],) * 2)
    out = os.path.abspath(arguments.out)
    make_afresh(out)

    def report(result):
        row = result.row
        print(f"{MARKS[result.outcome]} {result.seconds:5.1f} s  {row.group}: {row.name}: "
              f"{result.happened}", flush=True)
        for wrong in result.wrong:
            print("          " + wrong.replace("\n", "\n          "), flush=True)

    began = time.monotonic()
    results = play_all(rows, os.path.abspath(arguments.bin), out, arguments.jobs, report)
    counts = [sum(result.outcome == outcome for result in results) for outcome in MARKS]
    summary = "{} rows: {} passed, {} failed, {} skipped".format(len(results), *counts)
    summary += f", in {time.monotonic() - began:.0f} s"
    write_tables(results, summary, out)
    print(summary)
    return 1 if counts[1] or not results else 0


if __name__ == "__main__":
    sys.exit(main())
