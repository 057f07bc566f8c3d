#!/usr/bin/python3
"""Prints the functions and lines of a crash: symbolize.py DUMP FOLDER

DUMP is a minidump. FOLDER holds, at any depth, the programs as they were released and their debug
symbols (.debug), which are found by their build-ids.
"""

import pathlib
import re
import subprocess
import sys

import pefile

import package

# Address and place of a frame.
FRAME = "frame ${frame.index} ${frame.pc} ${module.file.basename}{ ${function.name-with-args}}\\n"


def debugger(dump, folder):
    """What LLDB reads in the dump; it unwinds with the tables in the programs."""
    places = sorted({path.parent for path in folder.rglob("*") if path.suffix in (".exe", ".dll")})
    commands = [f'settings append target.exec-search-paths "{place}"' for place in places]
    commands += [f'settings set frame-format "{FRAME}"',
                 f'target create --core "{dump}"',
                 "image list --uuid --header --basename", "thread backtrace all"]
    arguments = [word for command in commands for word in ("-o", command)]
    return subprocess.run(["lldb-19", "--no-lldbinit", "--batch", *arguments], check=True,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                          encoding="utf-8").stdout


def lines_at(symbols, address):
    """The functions at an address of a file, the innermost of inlined ones first."""
    return subprocess.run([package.TOOL + "addr2line", "-C", "-f", "-i", "-p", "-e", symbols,
                           hex(address)], check=True, stdout=subprocess.PIPE,
                          encoding="utf-8").stdout.strip()


def symbolize(dump, folder):
    by_build_id = {package.build_id(path): path for path in folder.rglob("*.debug")}
    text = debugger(dump, folder)
    modules = {}
    for uuid, base, name in re.findall(r"^\[ *\d+\] ([0-9A-F-]{36})\S* (0x[0-9a-f]+) (\S+)", text,
                                       re.M):
        symbols = by_build_id.get(uuid.replace("-", "").lower())
        if symbols:
            image = pefile.PE(symbols, fast_load=True).OPTIONAL_HEADER.ImageBase
            modules[name] = symbols, image - int(base, 16)
    for line in text.partition("thread backtrace all")[2].splitlines():
        frame = re.search(r"frame (\d+) (0x[0-9a-f]+) (\S+)", line)
        if frame and frame[3] in modules:
            symbols, move = modules[frame[3]]
            # A return address belongs to the line after the call.
            address = int(frame[2], 16) - (frame[1] != "0") + move
            inlined = lines_at(symbols, address).replace("\n", "\n        ")
            yield f"    #{frame[1]} {frame[3]} {inlined}"
        elif frame:
            yield f"    #{frame[1]} {frame[3]} {frame[2]}"
        elif line.strip():
            yield line


def main():
    for line in symbolize(pathlib.Path(sys.argv[1]).resolve(), pathlib.Path(sys.argv[2]).resolve()):
        print(line)


if __name__ == "__main__":
    main()
