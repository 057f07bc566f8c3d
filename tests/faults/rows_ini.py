"""The ini files that the product's setup left behind, after every accident that may befall text.
What cannot be read counts as missing; nothing is written back."""

import os
import random
import time

from tests.faults.harness import BUILT_IN
from tests.faults.servers import dead_port
from tests.faults.table import row

GROUP = "ini files"

WHOLE = ("[System]\nProductID=8461\nDefInstallLang=ENG\n\n"
         "[Product]\nProductID=846\nVersion=7.2.1.4\n")
RANDOM = random.Random(20260417).randbytes(20_000)


def product_ini(name, content, version="7.2.1.4", language="ENG", product=8461, said=None):
    """The version and language that the program reads are those that it reports."""
    @row(GROUP, name)
    def play(fault):
        file = fault.write("ProgramData/Norvane Clipwright/Clipwright.ini", content)
        written = fault.content(file)
        if said:
            fault.expect_said(said)
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
        fault.wait_for_main_window()
        fault.leave(BUILT_IN)
        info = fault.base_info()
        fault.note(f"version {info[2][:20]!r}, language {info[5][:20]!r}")
        fault.expect_equal((info[2], info[5], info[1]), (version, language, product),
                           "version, language and product that were read")
        fault.expect(fault.content(file) == written, "the file was left alone")


NOTHING = {"version": "", "language": "", "product": 0}

product_ini("UTF-8 with a mark in front", b"\xef\xbb\xbf" + WHOLE.encode())
product_ini("UTF-16, little end first", b"\xff\xfe" + WHOLE.encode("utf-16-le"), **NOTHING)
product_ini("UTF-16, big end first", b"\xfe\xff" + WHOLE.encode("utf-16-be"), **NOTHING)
product_ini("lines that end as on Windows", WHOLE.replace("\n", "\r\n"))
product_ini("lines that end as on an old Macintosh", WHOLE.replace("\n", "\r"))
product_ini("empty", b"", **NOTHING)
product_ini("zero bytes in place of the text", bytes(len(WHOLE)), **NOTHING)
product_ini("zero bytes behind the text", WHOLE.encode() + bytes(4096))
product_ini("random bytes", RANDOM, **NOTHING)
product_ini("random bytes behind the text", WHOLE.encode() + b"\n[Junk]\n" + RANDOM)
product_ini("letters of another code page", WHOLE.replace("7.2.1.4", "Größe").encode("latin-1"),
            version="Größe")
product_ini("a section that is not closed", WHOLE.replace("[Product]", "[Product"),
            version="7.2.1.4")
product_ini("a section's name of a million brackets", "[" * 1_000_000 + WHOLE, language="",
            product=0)
product_ini("a line of ten megabytes", "Long=" + "x" * 10_000_000 + "\n" + WHOLE)
product_ini("a value of ten megabytes", WHOLE.replace("7.2.1.4", "7" * 10_000_000),
            version="7" * 10_000_000)
product_ini("two hundred thousand keys", WHOLE + "[Many]\n" + "".join(f"k{i}=v\n" for i in range(200_000)))
product_ini("cut in the middle of a line", WHOLE[:WHOLE.index("ENG") + 2], version="",
            language="EN")
product_ini("values of another kind", WHOLE.replace("7.2.1.4", "@Invalid()")
            .replace("8461", "@Variant(\\0\\0\\0\\x7f\\0)"), version="", product=0,
            said="^QVariant::load: unknown user type")
product_ini("a language that is a path", WHOLE.replace("ENG", "../../../../etc/passwd"),
            language="../../../../etc/passwd")


@row(GROUP, "a folder in the place of each ini file")
def folders(fault):
    for name in ("Clipwright.ini", "KConfig.ini"):
        os.remove(os.path.join(fault.product_data, name))
        os.makedirs(os.path.join(fault.product_data, name))
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
    fault.wait_for_main_window()
    fault.leave(BUILT_IN)
    fault.expect_equal(fault.base_info()[2], "", "the version")


@row(GROUP, "ini files that are links to themselves")
def loops(fault):
    for name in ("Clipwright.ini", "KConfig.ini"):
        file = os.path.join(fault.product_data, name)
        os.remove(file)
        os.symlink(file, file)
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
    fault.wait_for_main_window()
    fault.leave(BUILT_IN)


def account_ini(name, content, uid="20260417"):
    @row(GROUP, name)
    def play(fault):
        fault.write("ProgramData/Norvane Clipwright/KConfig.ini", content)
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
        fault.wait_for_main_window()
        fault.leave(BUILT_IN)
        fault.expect_equal(fault.base_info()[12], uid, "the account that was read")


ACCOUNT = "[Uid]\nUid=20260417\n\n[AccountInfo]\nEmail=robin@mail.example\n\n[ProxyInfo]\n"
account_ini("proxy settings that are words", ACCOUNT + "Mode=manual\nType=best\nPort=many\n")
account_ini("proxy settings beyond all numbers",
            ACCOUNT + "Mode=99999999999999999999\nType=-7\nPort=4294967297\nServer=http://x\n")
account_ini("a proxy that is not there", ACCOUNT + "Mode=2\nServer=http://127.0.0.1\nPort=9\n")
account_ini("a proxy whose name is garbage",
            ACCOUNT.encode() + b"Mode=2\nPort=80\nServer=http://\xff\xfe\x01 %s%n\n")
account_ini("account in random bytes", RANDOM, uid="")


@row(GROUP, "an ini file that grows while it is read")
def growing(fault):
    file = os.path.join(fault.product_data, "Clipwright.ini")
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
    with open(file, "a", encoding="ascii") as ini:
        while fault.elapsed() < 1.5 and not fault.has_ended():
            ini.write(f"; {'x' * 1000}\n" * 20)
            ini.flush()
            time.sleep(0.001)
    fault.wait_for_main_window()
    fault.leave(BUILT_IN)
