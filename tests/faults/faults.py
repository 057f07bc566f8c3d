#!/usr/bin/python3
"""Plays a table of faults against the whole program, as a black box on virtual desktops, and prints
for each what happened, how long it took, and whether that is what must happen.

usage: python3 -m tests.faults.faults --bin DIR --out DIR [--jobs N] [--only REGEX] [--list]

Writes the table as faults.json and faults.md into the folder of --out. The folder of a row that
failed is kept there, with its sandbox and the program's output. Exits with 1 when a row failed.
"""

import argparse
import collections
import concurrent.futures
import json
import os
import re
import resource
import shutil
import sys
import time
import traceback

from tests.faults import (
    harness, rows_cache, rows_children, rows_clock, rows_ends, rows_folders, rows_ini,
    rows_libraries, rows_network)
from tests.kit.desktop import Desktop
from tests.kit.folders import NATIVE_PROGRAMS, make_afresh

TABLE = [(f"{group}: {name}", steps) for group, rows in (
    ("network", rows_network), ("folders", rows_folders), ("cache", rows_cache),
    ("ini files", rows_ini), ("children", rows_children), ("libraries", rows_libraries),
    ("clock", rows_clock), ("ends", rows_ends)) for name, steps in rows.ROWS.items()]

# Starts so many processes that other rows would miss their limits.
ALONE = "ends: a hundred copies started at once"

OUTCOMES = ("passed", "FAILED", "skipped")

Result = collections.namedtuple("Result", "fault outcome seconds happened wrong")


def play_row(name, steps, binaries, folder):
    """Plays one row on a desktop of its own, and judges it."""
    outcome, notes, wrong = "passed", [], []
    began = time.monotonic()
    try:
        with Desktop(Desktop.MANAGED) as desktop:
            fault = harness.Fault(binaries, folder, desktop)
            notes, wrong = fault.notes, fault.failures
            try:
                for step in steps:
                    step(fault)
            except harness.Skipped as reason:
                outcome = "skipped"
                fault.note(str(reason))
            except Exception as failure:
                wrong.append(str(failure) if isinstance(failure, AssertionError)
                             else traceback.format_exc())
                fault.save_picture()
            finally:
                fault.finish()
    except Exception:  # the harness failed; the other rows go on
        wrong.append(traceback.format_exc())
    if wrong:
        outcome = "FAILED"
    else:
        shutil.rmtree(folder)
    return Result(name, outcome, time.monotonic() - began, ", ".join(notes), wrong)


def play_all(rows, binaries, out, jobs):
    """Plays rows by number, several at a time; yields their numbers and results as they come."""
    def play(number):
        return number, play_row(*rows[number], binaries, os.path.join(out, f"{number:03}"))

    together = [number for number, (name, _) in rows.items() if name != ALONE]
    with concurrent.futures.ThreadPoolExecutor(jobs) as pool:
        # In reverse order no row of half a minute is left over at the end.
        playing = [pool.submit(play, number) for number in reversed(together)]
        for done in concurrent.futures.as_completed(playing):
            yield done.result()
    for number in rows.keys() - set(together):
        yield play(number)


def write_tables(results, summary, out):
    with open(os.path.join(out, "faults.json"), "w", encoding="utf-8") as file:
        json.dump({"summary": summary, "rows": [result._asdict() for result in results]}, file,
                  indent=1, ensure_ascii=False)
    with open(os.path.join(out, "faults.md"), "w", encoding="utf-8") as file:
        file.write(f"# Faults\n\n{summary}\n\n| | fault | what happened | seconds |\n"
                   "|---|---|---|---:|\n")
        for result in results:
            text = result.happened + "".join(f" **{wrong}**" for wrong in result.wrong)
            text = text.replace("\n", " ").replace("|", "\\|")
            file.write(f"| {result.outcome} | {result.fault} | {text} | {result.seconds:.1f} |\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--bin", default=NATIVE_PROGRAMS, help="folder with the built programs")
    parser.add_argument("--out", default="build/faults", help="folder for the tables")
    parser.add_argument("--jobs", type=int, default=3 * (os.cpu_count() or 1),
                        help="rows at once; most of a row is waiting")
    parser.add_argument("--only", default="", help="rows whose group or name match")
    parser.add_argument("--list", action="store_true", help="print which rows there are")
    arguments = parser.parse_args()

    rows = dict(enumerate(
        row for row in TABLE if re.search(arguments.only, row[0], re.IGNORECASE)))
    if arguments.list:
        print("\n".join(name for name, _ in rows.values()))
        return 0
    # Where the system puts cores into the working folder, that of a crash is kept with its row.
    resource.setrlimit(resource.RLIMIT_CORE, (resource.getrlimit(resource.RLIMIT_CORE)[1],) * 2)
    out = make_afresh(arguments.out)
    began = time.monotonic()
    results = {}
    for number, result in play_all(rows, os.path.abspath(arguments.bin),
                                   os.path.join(out, "rows"), arguments.jobs):
        results[number] = result
        print(f"{result.outcome:7} {result.seconds:5.1f} s  {result.fault}: {result.happened}")
        for wrong in result.wrong:
            print("          " + wrong.replace("\n", "\n          "))
        sys.stdout.flush()
    counts = collections.Counter(result.outcome for result in results.values())
    summary = f"{len(rows)} rows: " + ", ".join(
        f"{counts[outcome]} {outcome.lower()}" for outcome in OUTCOMES)
    summary += f", in {time.monotonic() - began:.0f} s"
    write_tables([results[number] for number in sorted(results)], summary, out)
    print(summary)
    return 1 if counts["FAILED"] or not rows else 0


if __name__ == "__main__":
    sys.exit(main())
