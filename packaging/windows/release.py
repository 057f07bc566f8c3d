#!/usr/bin/python3
"""Makes of what `package.py` left in dist/ what is released: signed, stamped, verified and packed,
with a bill of materials and checksums.

usage: release.py --build DIR --sysroot DIR --sources DIR [--out DIR] [options of `signing.py sign`]

Without a certificate it makes an authority of its own and says so in the names of the files.
"""

import argparse
import contextlib
import hashlib
import pathlib
import shutil
import sys
import tempfile

import bom
import package
import signing
import throwaway


@contextlib.contextmanager
def throwaway_signer(options, kept_as):
    """Fills in the options; what the signature is verified with stays at `kept_as`."""
    with tempfile.TemporaryDirectory() as folder:
        authority = throwaway.Authority(folder)
        shutil.copyfile(authority.certificate, kept_as)
        with authority.stamping() as address:
            options.certificate = authority.folder / "signer.p12"
            options.password_file = authority.folder / "password"
            options.timestamp = address
            options.authority = options.timestamp_authority = kept_as
            yield


def sign(folder, options):
    """Signs the programs of a folder and packs it again; gives the zip."""
    kind = "signed" if options.certificate else "throwaway-signature"
    signer = contextlib.nullcontext() if options.certificate else throwaway_signer(
        options, folder.with_name(folder.name + "-throwaway-authority.pem"))
    programs = [folder / package.PROGRAM,
                *(folder / "stand-ins" / name for name in package.CLOSED_LIBRARIES)]
    with signer:
        for program in programs:
            signing.sign(program, options)
            signing.verify(program, options.authority, options.timestamp_authority)
    target = folder.with_name(f"{folder.name}-{kind}.zip")
    package.write_zip(folder, target)
    return target


def copy_sources(sources, target):
    """What the LGPL asks for with a static Qt: its sources, and the scripts that build it."""
    shutil.copytree(sources / "packages", target)
    shutil.copytree(pathlib.Path(__file__).resolve().parent, target / "packaging",
                    ignore=shutil.ignore_patterns("__pycache__", "zip"))


def write_checksums(out, unpacked):
    """Of everything but the folder that the zip holds."""
    files = sorted(path.relative_to(out) for path in out.rglob("*")
                   if path.is_file() and not path.is_relative_to(unpacked))
    lines = [f"{hashlib.sha256((out / file).read_bytes()).hexdigest()}  {file}\n"
             for file in files]
    (out / "SHA256SUMS").write_text("".join(lines), encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    signing.add_signing_options(parser)
    options = package.parse(parser)
    if signing.is_signer_given(options):
        signing.check_signing_options(parser, options)
    folder = options.out / package.name_of(options.build)
    try:
        sign(folder, options)
    except signing.Refused as error:
        sys.exit(str(error))
    bom.write(bom.make(options.build, options.sysroot, options.sources, folder),
              folder.with_name(folder.name + ".cdx.json"))
    copy_sources(options.sources, folder.with_name(folder.name + "-sources"))
    write_checksums(options.out, folder)
    print((options.out / "SHA256SUMS").read_text(encoding="utf-8"), end="")


if __name__ == "__main__":
    main()
