#!/usr/bin/python3
"""Checks what protects a finished Windows program: hardening.py PROGRAM

Says what is missing and exits with 1 when anything is.
"""

import struct
import sys

import pefile

FLAGS = {
    "IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE": "its address is not random",
    "IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA": "its address is not random over 64 bits",
    "IMAGE_DLLCHARACTERISTICS_NX_COMPAT": "its data may be executed",
}
# What the compiler's runtime says before it ends a program.
GUARDS = {
    b"*** stack smashing detected ***": "its stack is not protected",
    b"*** buffer overflow detected ***": "its string functions are not checked",
}


def has_whole_function_table(image):
    """Whether exceptions find each function, in order, and its handler. Functions that were left
    out stand before all others as empty ranges."""
    directory = image.OPTIONAL_HEADER.DATA_DIRECTORY[
        pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_EXCEPTION"]]
    (text,) = [section for section in image.sections if section.Name.rstrip(b"\0") == b".text"]
    code = range(text.VirtualAddress, text.VirtualAddress + text.Misc_VirtualSize + 1)
    memory = image.get_memory_mapped_image()
    last = 0
    for start, end, unwind in struct.iter_unpack(
            "<III", memory[directory.VirtualAddress:][:directory.Size]):
        if start == end == last == 0:
            continue
        if start < last or start >= end or start not in code or end not in code:
            return False
        last = end
        flags, codes = memory[unwind] >> 3, memory[unwind + 2]
        if flags & 3:  # for exceptions, for the end
            handler, = struct.unpack_from("<I", memory, unwind + 4 + 2 * (codes + codes % 2))
            if handler not in code:
                return False
    return last > 0


def lacks(program):
    """What a program lacks, one text each."""
    image = pefile.PE(program, fast_load=True)
    found = [text for flag, text in FLAGS.items() if not getattr(image.OPTIONAL_HEADER, flag)]
    relocations = image.OPTIONAL_HEADER.DATA_DIRECTORY[
        pefile.DIRECTORY_ENTRY["IMAGE_DIRECTORY_ENTRY_BASERELOC"]]
    if not relocations.Size or image.FILE_HEADER.IMAGE_FILE_RELOCS_STRIPPED:
        found.append("it cannot be moved: relocations are missing")
    if not has_whole_function_table(image):
        found.append("its table of functions, by which exceptions find handlers, is broken")
    for section in image.sections:
        if section.IMAGE_SCN_MEM_WRITE and section.IMAGE_SCN_MEM_EXECUTE:
            name = section.Name.rstrip(b"\0").decode()
            found.append(f"its section {name} can be written and executed")
    return found + [text for guard, text in GUARDS.items() if guard not in image.__data__[:]]


def main():
    found = lacks(sys.argv[1])
    for text in found:
        print(f"{sys.argv[1]}: {text}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
