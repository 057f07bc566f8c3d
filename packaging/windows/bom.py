"""The bill of materials of the program, in CycloneDX's JSON."""

import hashlib
import json
import pathlib
import re
import subprocess

from cyclonedx.schema import SchemaVersion
from cyclonedx.spdx import is_expression, is_supported_id
from cyclonedx.validation.json import JsonStrictValidator

import package
import third_party

COMPILER = package.TOOL + "g++-posix"
# Of the compiler's side: library, component, licence.
RUNTIME = [
    ("libgcc.a", "libgcc", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    ("libgcc_eh.a", "libgcc_eh", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    ("libstdc++.a", "libstdc++", "GPL-3.0-or-later WITH GCC-exception-3.1"),
    ("libmingwex.a", "mingw-w64", "ZPL-2.1"),
    ("libwinpthread.a", "winpthreads", "MIT AND BSD-3-Clause"),
]
# Third-party code in Qt that is a library of its own.
LIBRARIES_IN_QT = {"freetype": "libqtfreetype.a", "harfbuzz-ng": "libqtharfbuzz.a",
                   "libjpeg": "libqtlibjpeg.a", "libpng": "libqtlibpng.a",
                   "pcre2": "libqtpcre2.a"}


def run(*command):
    return subprocess.run([str(part) for part in command], check=True, encoding="utf-8",
                          stdout=subprocess.PIPE).stdout.strip()


def hashes(file):
    return [{"alg": "SHA-256", "content": hashlib.sha256(file.read_bytes()).hexdigest()}]


def licences(name):
    """By the identifiers of SPDX where it has them."""
    name = name.replace(" or ", " OR ")
    if is_supported_id(name):
        return {"licenses": [{"license": {"id": name}}]}
    if name and is_expression(name):
        return {"licenses": [{"expression": name}]}
    return {"licenses": [{"license": {"name": name or "public domain"}}]}


def upstream(version):
    """Of a Debian version."""
    return re.sub(r"\+dfsg.*$|-[^-]*$", "", version.partition(":")[2] or version)


def component(name, version, licence=None, file=None, source=None, **more):
    """Of a source package: its name, its version and its files that are at hand."""
    entry = {"type": "library", "name": name}
    if version:
        entry["version"] = version
    if file:
        entry["hashes"] = hashes(file)
    if licence is not None:
        entry |= licences(licence)
    if source:
        package_name, package_version, files = source
        quoted = package_version.replace("+", "%2B").replace(":", "%3A")
        entry["purl"] = f"pkg:deb/debian/{package_name}@{quoted}?arch=source"
        entry["bom-ref"] = f"{name}@{version}"
        if files:
            entry["externalReferences"] = [
                {"type": "source-distribution", "url": path.name, "hashes": hashes(path)}
                for path in files]
    return entry | more


def source_package(folder, binary):
    """What the sysroot was built from."""
    name, version = run("dpkg-query", "-W", "-f", "${source:Package} ${source:Version}",
                        binary).split()
    return name, version, sorted((folder / "packages").glob(f"{name}_*"))


def package_of_file(file, what):
    binary = run("dpkg-query", "-S", file).split(":")[0]
    return run("dpkg-query", "-W", "-f", what, binary)


def source_of_file(file):
    return package_of_file(file, "${source:Package} ${source:Version}").split() + [[]]


def version_of_file(file):
    """The compiler's source package has a version of its own; the package has GCC's."""
    return upstream(package_of_file(file, "${Version}"))


def qt(build, sysroot, sources):
    """Qt with the modules that are linked, and what is in them of others."""
    source = source_package(sources, "qtbase5-dev")
    version = upstream(source[1])
    archives = {pathlib.Path(path) for path in package.linked_archives(build)}
    archives = {path for path in archives if path.is_relative_to(sysroot)}
    modules = [component(path.stem.removeprefix("lib"), version, "LGPL-3.0-only", path)
               for path in sorted(archives)
               if path.name not in [*LIBRARIES_IN_QT.values(), "libjsoncpp.a"]]
    inside = []
    for part in third_party.load(sources):
        library = LIBRARIES_IN_QT.get(part["Id"])
        if library and not any(path.name == library for path in archives):
            raise SystemExit(f"{library} is not linked; where is {part['Name']}?")
        inside.append(component(
            part["Id"], part["Version"], part["LicenseId"],
            sysroot / "lib" / library if library else None, description=part["Name"],
            externalReferences=[{"type": "source-distribution", "url": path.name,
                                 "hashes": hashes(path)} for path in source[2]
                                if ".orig." in path.name]))
    return component("qtbase", version, "LGPL-3.0-only", source=source,
                     components=modules + inside)


def make(build, sysroot, sources, folder):
    """Of the programs in a folder that `package` made."""
    version = package.version_of(build)
    program = component(package.PROGRAM, version, file=folder / package.PROGRAM)
    program |= {"type": "application", "bom-ref": "program",
                "supplier": {"name": "Norvane"}, **licences("proprietary")}
    components = [qt(build, sysroot, sources)]
    jsoncpp = source_package(sources, "libjsoncpp-dev")
    components.append(component("jsoncpp", upstream(jsoncpp[1]), "MIT",
                                sysroot / "lib/libjsoncpp.a", jsoncpp))
    for library, name, licence in RUNTIME:
        file = pathlib.Path(run(COMPILER, f"-print-file-name={library}")).resolve()
        source = source_of_file(file)
        components.append(component(name, version_of_file(file), licence, file, source))
    font = package.cache_value(build, "CLIPWRIGHT_FONT")
    source = source_of_file(font)
    components.append(component("Noto Sans Bold", version_of_file(font), "OFL-1.1",
                                pathlib.Path(font), source, type="data"))
    for library in package.CLOSED_LIBRARIES:
        components.append(component(library, version, "proprietary",
                                    folder / "stand-ins" / library, **{
                                        "bom-ref": library, "scope": "excluded",
                                        "description": "stand-in, not for users"}))
    needs = [entry["bom-ref"] for entry in components if entry.get("scope") != "excluded"]
    return {"bomFormat": "CycloneDX", "specVersion": "1.6", "version": 1,
            "metadata": {"component": program}, "components": components,
            "dependencies": [{"ref": "program", "dependsOn": needs}]}


def write(bom, file):
    text = json.dumps(bom, indent=2, ensure_ascii=False) + "\n"
    error = JsonStrictValidator(SchemaVersion.V1_6).validate_str(text)
    if error:
        raise SystemExit(f"the bill of materials is not of its format: {error.data.message} at "
                         f"{error.data.json_path}")
    file.write_text(text, encoding="utf-8")
