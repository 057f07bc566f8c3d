"""The ini files that the product's setup left behind, damaged in every way that text can be. What
cannot be read counts as missing; nothing is written back."""

import os
import random
import time

from tests.faults.harness import ACCOUNT_INI, BUILT_IN, PRODUCT_INI, do

WHOLE = ("[System]\nProductID=8461\nDefInstallLang=ENG\n\n"
         "[Product]\nProductID=846\nVersion=7.2.1.4\n")
ACCOUNT = "[Uid]\nUid=20260417\n\n[AccountInfo]\nEmail=robin@mail.example\n\n[ProxyInfo]\n"
RANDOM = random.Random(20260417).randbytes(20_000)
NOTHING = {"version": "", "language": "", "product": 0}


def product_ini(content, version="7.2.1.4", language="ENG", product=8461, printed="^$"):
    """The program reports the version and the language that it has read."""
    def expect_read(fault):
        info = fault.base_info()
        fault.note(f"version {info[2][:20]!r}, language {info[5][:20]!r}")
        fault.expect_equal((info[2], info[5], info[1]), (version, language, product),
                           "version, language and product that were read")
        written = content if isinstance(content, bytes) else content.encode()
        fault.expect(fault.content(PRODUCT_INI) == written, "the file was left alone")

    return [do.write(PRODUCT_INI, content), do.expect_output(printed), do.open(),
            do.leave(BUILT_IN), expect_read]


def account_ini(content, uid="20260417"):
    return [do.write(ACCOUNT_INI, content), do.open(), do.leave(BUILT_IN),
            lambda fault: fault.expect_equal(fault.base_info()[12], uid, "the account")]


def unreadable(put):
    """Both files are replaced by something that cannot be opened."""
    return [do.replace(PRODUCT_INI, put), do.replace(ACCOUNT_INI, put), do.open(),
            do.leave(BUILT_IN),
            lambda fault: fault.expect_equal(fault.base_info()[2], "", "the version")]


def grow(fault):
    with open(fault.path(PRODUCT_INI), "a", encoding="ascii") as ini:
        while time.monotonic() < fault.started + 1.5 and not fault.has_ended():
            ini.write(f"; {'x' * 1000}\n" * 20)
            ini.flush()
            time.sleep(0.001)


ROWS = {
    "UTF-8 with a mark in front": product_ini(b"\xef\xbb\xbf" + WHOLE.encode()),
    "UTF-16, little end first": product_ini(b"\xff\xfe" + WHOLE.encode("utf-16-le"), **NOTHING),
    "UTF-16, big end first": product_ini(b"\xfe\xff" + WHOLE.encode("utf-16-be"), **NOTHING),
    "lines that end as on Windows": product_ini(WHOLE.replace("\n", "\r\n")),
    "lines that end as on an old Macintosh": product_ini(WHOLE.replace("\n", "\r")),
    "empty": product_ini(b"", **NOTHING),
    "zero bytes in place of the text": product_ini(bytes(len(WHOLE)), **NOTHING),
    "zero bytes behind the text": product_ini(WHOLE.encode() + bytes(4096)),
    "random bytes": product_ini(RANDOM, **NOTHING),
    "random bytes behind the text": product_ini(WHOLE.encode() + b"\n[Junk]\n" + RANDOM),
    "letters of another code page": product_ini(
        WHOLE.replace("7.2.1.4", "Größe").encode("latin-1"), version="Größe"),
    "a section that is not closed": product_ini(WHOLE.replace("[Product]", "[Product")),
    "a section's name of a million brackets": product_ini(
        "[" * 1_000_000 + WHOLE, language="", product=0),
    "a line of ten megabytes": product_ini("Long=" + "x" * 10_000_000 + "\n" + WHOLE),
    "a value of ten megabytes": product_ini(
        WHOLE.replace("7.2.1.4", "7" * 10_000_000), version="7" * 10_000_000),
    "two hundred thousand keys": product_ini(
        WHOLE + "[Many]\n" + "".join(f"k{i}=v\n" for i in range(200_000))),
    "cut in the middle of a line": product_ini(
        WHOLE[:WHOLE.index("ENG") + 2], version="", language="EN"),
    "values of another kind": product_ini(
        WHOLE.replace("7.2.1.4", "@Invalid()").replace("8461", "@Variant(\\0\\0\\0\\x7f\\0)"),
        version="", product=0, printed="^QVariant::load: unknown user type"),
    "a language that is a path": product_ini(
        WHOLE.replace("ENG", "../../../../etc/passwd"), language="../../../../etc/passwd"),
    "a folder in the place of each ini file": unreadable(os.makedirs),
    "ini files that are links to themselves": unreadable(lambda file: os.symlink(file, file)),
    "proxy settings that are words": account_ini(ACCOUNT + "Mode=manual\nType=best\nPort=many\n"),
    "proxy settings beyond all numbers": account_ini(
        ACCOUNT + "Mode=99999999999999999999\nType=-7\nPort=4294967297\nServer=http://x\n"),
    "a proxy that is not there": account_ini(
        ACCOUNT + "Mode=2\nServer=http://127.0.0.1\nPort=9\n"),
    "a proxy whose name is garbage": account_ini(
        ACCOUNT.encode() + b"Mode=2\nPort=80\nServer=http://\xff\xfe\x01 %s%n\n"),
    "account in random bytes": account_ini(RANDOM, uid=""),
    "an ini file that grows while it is read": [
        do.start(), grow, do.wait_for_main_window(), do.leave(BUILT_IN)],
}
