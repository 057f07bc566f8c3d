#!/usr/bin/python3
"""Makes dist/: the stripped program and its zip, what relinks it and debug symbols beside.

usage: package.py --build DIR --sysroot DIR --sources DIR [--out DIR]
"""

import argparse
import os
import pathlib
import re
import shlex
import shutil
import subprocess
import sys
import tempfile
import zipfile

import hardening
import third_party

HERE = pathlib.Path(__file__).resolve().parent
TOOL = "x86_64-w64-mingw32-"
PROGRAM = "clipwright-uninstaller.exe"
CLOSED_LIBRARIES = ["data_api.dll", "nvUpgrade.dll"]

# What the distribution's packages say of what is linked or compiled in from them.
PACKAGE_LICENCES = {
    "gcc-runtime.txt": "gcc-mingw-w64-base",
    "mingw-w64-runtime.txt": "mingw-w64-x86-64-dev",
    "noto-font.txt": "fonts-noto-core",
}


# The binary tools write a time into what they make: this one.
ENVIRONMENT = dict(os.environ, SOURCE_DATE_EPOCH="315532800")


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, encoding="utf-8",
                          stdout=subprocess.PIPE, env=ENVIRONMENT).stdout


def cache_value(build, name):
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    return re.search(rf"^{name}:\w+=(.*)$", cache, re.M).group(1)


def version_of(build):
    return cache_value(build, "CMAKE_PROJECT_VERSION")


def imported_libraries(program):
    return sorted(set(re.findall(r"DLL Name: (\S+)", run(TOOL + "objdump", "-p", program))),
                  key=str.lower)


def check_imports(program, allowed):
    """Prints what a program imports; nothing beyond the allowed list may be among it."""
    found = imported_libraries(program)
    print(f"{program.name} imports {', '.join(found)}")
    beyond = [name for name in found if name.lower() not in allowed]
    if beyond:
        sys.exit(f"{program.name}: not allowed are {', '.join(beyond)}")


def name_of(build):
    return f"clipwright-uninstaller-{version_of(build)}-windows-x86_64"


def linked_archives(build):
    """Our libraries, Qt's and jsoncpp."""
    words = shlex.split(link_command(build))
    return sorted({build / os.path.normpath(word) for word in words  # an absolute one stays
                   if re.search(r"/lib(clipwright|Qt5|q|jsoncpp)", word)
                   and word.endswith(".a") and not word.endswith(".dll.a")})


def check_protection(program, build):
    """A program is not packed that lacks a protection, or with a library that was compiled without:
    calls of the guards stand in the object files alone."""
    found = hardening.lacks(program)
    for archive in linked_archives(build):
        symbols = run(TOOL + "nm", "--undefined-only", archive)
        if "__stack_chk_fail" not in symbols:
            found.append(f"{archive.name} has no protection of the stack")
        if archive.name == "libQt5Core.a" and "__memcpy_chk" not in symbols:
            found.append(f"{archive.name} has no checked string functions")
    compiled = [line for line in run("ninja", "-C", build, "-t", "commands",
                                     "bin/" + PROGRAM).splitlines() if " -c " in line]
    if not compiled or any(".rc" not in line and "-D_FORTIFY_SOURCE=2" not in line
                           for line in compiled):
        found.append("a source is compiled without checked string functions")
    if found:
        sys.exit(f"{program.name}: " + "; ".join(found))


def build_id(program):
    found = re.search(r"RSDS signature ([0-9a-f]{32})", run(TOOL + "objdump", "-p", program))
    return found and found.group(1)


def strip(source, target, symbols):
    """Copies a program without its debug symbols, which go to a file of their own."""
    symbol_file = symbols / (source.name + ".debug")
    run(TOOL + "objcopy", "--only-keep-debug", source, symbol_file)
    run(TOOL + "objcopy", "--strip-all", f"--add-gnu-debuglink={symbol_file}", source, target)
    if not build_id(target) or build_id(target) != build_id(symbol_file):
        sys.exit(f"{target.name}: its debug symbols cannot be found by a build-id")


def copy_licences(sysroot, parts, target):
    shutil.copytree(sysroot / "share/licences", target)
    (target / "qt/third-party.txt").write_text(
        "\n\n".join(third_party.notice(part) for part in parts), encoding="utf-8", newline="\n")
    for file, package in PACKAGE_LICENCES.items():
        shutil.copyfile(f"/usr/share/doc/{package}/copyright", target / file)


def write_versions(sysroot, parts, target):
    """What to compare with the news of a weakness: the sources that were built, and the versions of
    the code of others in Qt."""
    versions = [f"{part['Name']} {part['Version']}\n" for part in parts if part["Version"]]
    names = "".join(versions).lower()
    for name in ("zlib", "libpng", "jpeg", "pcre2", "harfbuzz", "freetype"):
        if name not in names:
            sys.exit(f"no version is known of {name} in Qt")
    lines = [(sysroot / "share/sources.txt").read_text(encoding="utf-8"), "In Qt:\n", *versions]
    target.write_text("".join(lines), encoding="utf-8", newline="\n")


def link_command(build):
    commands = run("ninja", "-C", build, "-t", "commands", "bin/" + PROGRAM).splitlines()
    return next(line for line in reversed(commands) if f"-o bin/{PROGRAM}" in line)


def write_relinking(build, sysroot, target):
    """Our object files and libraries, and the command that links them with another Qt."""
    target.mkdir()
    shutil.copyfile(HERE / "zip/relink/README.txt", target / "README.txt")
    (target / "objects").mkdir()
    words = shlex.split(link_command(build).removeprefix(": && ").removesuffix(" && :"))
    words[0] = TOOL + "g++-posix"
    lines = []
    for word in words:
        if word == f"bin/{PROGRAM}":
            lines.append(PROGRAM)
        elif word.startswith(f"{sysroot}/"):
            lines.append('"$SYSROOT"' + shlex.quote(word[len(str(sysroot)):]))
        elif not os.path.isabs(word) and (build / word).is_file():
            copy = target / "objects" / f"{len(lines):03}-{pathlib.Path(word).name}"
            run(TOOL + "objcopy", "--strip-debug", build / word, copy)
            lines.append(shlex.quote(f"objects/{copy.name}"))
        elif word.startswith("-Wl,-T,"):
            shutil.copyfile(word.removeprefix("-Wl,-T,"), target / "sections.ld")
            lines.append("-Wl,-T,sections.ld")
        elif "--out-implib" not in word:
            lines.append(shlex.quote(word))
    if str(sysroot) in "".join(lines):
        sys.exit("the link command names the sysroot in a way that is not understood")
    script = target / "link.sh"
    script.write_text(
        "#!/bin/sh\n"
        "# Links the program again: SYSROOT names a folder with a static Qt 5.15 and jsoncpp.\n"
        ': "${SYSROOT:?}"\ncd "$(dirname "$0")" || exit\nexec ' + " \\\n  ".join(lines) + "\n",
        encoding="utf-8", newline="\n")
    script.chmod(0o755)


def write_zip(folder, file):
    """The same files make the same zip: sorted, with one time."""
    with zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as archive:
        for path in sorted(path for path in folder.rglob("*") if path.is_file()):
            entry = zipfile.ZipInfo(str(path.relative_to(folder.parent)), (1980, 1, 1, 0, 0, 0))
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = (0o755 if path.suffix in (".exe", ".sh") else 0o644) << 16
            archive.writestr(entry, path.read_bytes())


def make(build, sysroot, sources, out):
    """Gives the folder whose zip lies beside it."""
    name = name_of(build)
    shutil.rmtree(out, ignore_errors=True)
    folder, symbols = out / name, out / (name + "-symbols")
    (folder / "stand-ins").mkdir(parents=True)
    symbols.mkdir()

    allowed = {line.lower() for line in
               (HERE / "allowed-dlls.txt").read_text(encoding="ascii").split("\n")
               if line and not line.startswith("#")}
    strip(build / "bin" / PROGRAM, folder / PROGRAM, symbols)
    check_imports(folder / PROGRAM, allowed)
    check_protection(folder / PROGRAM, build)
    for library in CLOSED_LIBRARIES:
        strip(build / "bin" / library, folder / "stand-ins" / library, symbols)
        check_imports(folder / "stand-ins" / library, allowed)

    for text in ("README.txt", "stand-ins/README.txt"):
        shutil.copyfile(HERE / "zip" / text, folder / text)
    parts = third_party.load(sources)
    copy_licences(sysroot, parts, folder / "licences")
    write_versions(sysroot, parts, folder / "licences/versions.txt")
    write_zip(folder, out / (name + ".zip"))
    with tempfile.TemporaryDirectory() as temporary:
        relinking = pathlib.Path(temporary) / (name + "-relink")
        write_relinking(build, sysroot, relinking)
        write_zip(relinking, out / (relinking.name + ".zip"))
    return folder


def parse(parser):
    """The options of every script that packs; more may be among the parser's."""
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--sysroot", type=pathlib.Path, required=True, help="as the build names it")
    parser.add_argument("--sources", type=pathlib.Path, required=True,
                        help="what packaging/windows/sources prints")
    parser.add_argument("--out", type=pathlib.Path, default=HERE.parents[1] / "dist")
    options = parser.parse_args()
    options.build, options.out = options.build.resolve(), options.out.resolve()
    return options


def main():
    options = parse(argparse.ArgumentParser(description=__doc__.splitlines()[0]))
    folder = make(options.build, options.sysroot, options.sources, options.out)
    for path in (folder.with_name(folder.name + ".zip"), folder / PROGRAM):
        print(f"{path.relative_to(options.out.parent)}: {path.stat().st_size / 1e6:.1f} MB")


if __name__ == "__main__":
    main()
