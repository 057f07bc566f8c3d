#!/usr/bin/python3
"""Builds and packs what ships twice, in two folders under two clocks, and compares byte by byte.

usage: reproduce.py --build DIR --sysroot DIR --sources DIR [--out DIR]

Both builds are made in the folder of --build, from copies of the sources. When they are the same,
the first becomes dist/; else the files that differ are named.
"""

import argparse
import os
import shutil
import subprocess
import sys

import bom
import package

PROJECT = package.HERE.parents[1]
TARGETS = [package.PROGRAM.removesuffix(".exe"),
           *(name.removesuffix(".dll") for name in package.CLOSED_LIBRARIES)]
LATER = ["faketime", "-f", "+400d"]
CLOCKS = {"first": [], "second-by-a-later-clock": LATER}


def copy_sources(folder):
    """With the times of now."""
    shutil.copytree(PROJECT, folder, copy_function=shutil.copy,
                    ignore=shutil.ignore_patterns(".git", "__pycache__", "build", "dist"))


def build(folder, sysroot, targets, clock):
    """Gives the folder of the build. Objects from ccache would name other builds' folders."""
    environment = dict(os.environ, CCACHE_DISABLE="1", CLIPWRIGHT_SYSROOT=str(sysroot))
    for command in (["--preset", "windows"],
                    ["--build", "--preset", "windows", "--target", *targets]):
        subprocess.run([*clock, "cmake", *command], cwd=folder, env=environment, check=True)
    return folder / "build/windows"


def pack(folder, options, clock):
    """Gives the folder with all that is made of a build."""
    out = folder / "dist"
    built = build(folder, options.sysroot, TARGETS, clock)
    subprocess.run([*clock, sys.executable, package.__file__, "--build", built, "--sysroot",
                    options.sysroot, "--sources", options.sources, "--out", out], check=True)
    packed = out / package.name_of(built)
    bom.write(bom.make(built, options.sysroot, options.sources, packed),
              packed.with_name(packed.name + ".cdx.json"))
    return out


def differences(first, second):
    """Of all files in two folders, in lines; none when they are the same."""
    done = subprocess.run(["diff", "--recursive", "--brief", first, second], encoding="utf-8",
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.stdout if done.returncode else ""


def main():
    options = package.parse(argparse.ArgumentParser(description=__doc__.splitlines()[0]))
    shutil.rmtree(options.build, ignore_errors=True)
    for name in CLOCKS:
        copy_sources(options.build / name)
    outs = [pack(options.build / name, options, clock) for name, clock in CLOCKS.items()]
    found = differences(*outs)
    if found:
        sys.exit("The two builds differ:\n" + found)
    shutil.rmtree(options.out, ignore_errors=True)
    shutil.copytree(outs[0], options.out)
    print("Both builds are the same, byte by byte:",
          *(path.relative_to(outs[0]) for path in sorted(outs[0].rglob("*")) if path.is_file()),
          sep="\n")


if __name__ == "__main__":
    main()
