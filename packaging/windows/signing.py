#!/usr/bin/python3
"""Signs Windows programs, and checks signatures: now, and a day after the certificate has ended.

usage: signing.py sign --certificate FILE.p12 --password-file FILE --timestamp URL PROGRAM...
       signing.py sign --pkcs11 MODULE --key ID --certificate FILE.pem --password-file FILE ...
       signing.py try [the same options, or none]
       signing.py verify [--authority FILE] [--timestamp-authority FILE] PROGRAM...

`try` signs a script of one line, so that an error in the options ends a release before its builds.
The authorities are files of certificates; unless given, they are those that the system trusts.
"""

import argparse
import calendar
import pathlib
import re
import subprocess
import sys
import tempfile
import time

TITLE = "Norvane Clipwright Uninstaller"
DAY = 24 * 60 * 60


class Refused(Exception):
    """A signature that does not hold, or a program that cannot be signed."""


def osslsigncode(*arguments):
    run = subprocess.run(["osslsigncode", *map(str, arguments)], encoding="utf-8",
                         errors="replace", stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return run.returncode == 0, run.stdout


def sign(program, options):
    """In place; asks for a time stamp."""
    if options.pkcs11:
        # The engine takes the PIN from the key's address alone.
        pin = f";pin-source=file:{options.password_file.resolve()}"
        key = ["-pkcs11module", options.pkcs11, "-certs", options.certificate,
               "-key", options.key + pin]
    else:
        key = ["-pkcs12", options.certificate, "-readpass", options.password_file]
    signed = program.with_name(program.name + ".signed")
    signed.unlink(missing_ok=True)
    done, text = osslsigncode("sign", *key, "-h", "sha256", "-n", TITLE,
                              "-ts", options.timestamp, "-in", program, "-out", signed)
    if not done:
        signed.unlink(missing_ok=True)
        raise Refused(f"{program.name} cannot be signed:\n{text}")
    signed.replace(program)


def verify(program, authority=None, timestamp_authority=None):
    """Gives the time at which the certificate ends."""
    trusted = (["-CAfile", authority] if authority else [])
    trusted += ["-TSA-CAfile", timestamp_authority] if timestamp_authority else []
    holds, text = osslsigncode("verify", *trusted, "-in", program)
    if not holds:
        raise Refused(f"{program.name}: the signature does not hold\n{text}")
    end = re.search(r"notAfter : (.*) GMT", text).group(1)
    end_time = calendar.timegm(time.strptime(end, "%b %d %H:%M:%S %Y"))
    holds, text = osslsigncode("verify", *trusted, "-time", end_time + DAY, "-in", program)
    if not holds:
        raise Refused(f"{program.name}: the signature ends with its certificate\n{text}")
    return end_time


def try_signing(options):
    with tempfile.TemporaryDirectory() as folder:
        script = pathlib.Path(folder) / "trial.ps1"
        script.write_text("exit\n", encoding="ascii")
        sign(script, options)
        verify(script, options.authority, options.timestamp_authority)


def readable_file(name):
    try:
        with open(name, "rb"):
            return pathlib.Path(name)
    except OSError as error:
        raise argparse.ArgumentTypeError(f"{name}: {error.strerror}") from None


def add_signing_options(parser):
    parser.add_argument("--certificate", type=readable_file,
                        help="a PKCS#12 file; with --pkcs11, a PEM file")
    parser.add_argument("--password-file", type=readable_file,
                        help="holds the password of the PKCS#12 file, or the token's PIN")
    parser.add_argument("--pkcs11", metavar="MODULE", type=pathlib.Path,
                        help="the library of the token that has the key")
    parser.add_argument("--key", metavar="ID", help="the key's address in it: pkcs11:object=...")
    parser.add_argument("--timestamp", metavar="URL", help="a service of time stamps (RFC 3161)")
    add_authorities(parser)


def add_authorities(parser):
    for option in ("--authority", "--timestamp-authority"):
        parser.add_argument(option, type=readable_file, metavar="FILE")


def is_signer_given(options):
    """With any of its options, because check_signing_options() tells of those that are missing."""
    return any((options.certificate, options.password_file, options.pkcs11, options.key,
                options.timestamp, options.authority, options.timestamp_authority))


def check_signing_options(parser, options):
    needed = ["certificate", "password_file", "timestamp"]
    if options.pkcs11 or options.key:
        needed += ["pkcs11", "key"]
    for name in needed:
        if not getattr(options, name):
            parser.error("missing: --" + name.replace("_", "-"))


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    commands = parser.add_subparsers(dest="command", required=True)
    signer, trial, verifier = map(commands.add_parser, ("sign", "try", "verify"))
    add_signing_options(signer)
    add_signing_options(trial)
    add_authorities(verifier)
    for command in (signer, verifier):
        command.add_argument("programs", nargs="+", type=pathlib.Path)
    options = parser.parse_args()
    try:
        if options.command == "try":
            if is_signer_given(options):
                check_signing_options(trial, options)
                try_signing(options)
            return
        if options.command == "sign":
            check_signing_options(signer, options)
            for program in options.programs:
                sign(program, options)
        for program in options.programs:
            end = verify(program, options.authority, options.timestamp_authority)
            print(f"{program.name}: the signature holds, also after the certificate's end on "
                  f"{time.strftime('%F', time.gmtime(end))}")
    except Refused as error:
        sys.exit(str(error))


if __name__ == "__main__":
    main()
