#!/usr/bin/python3
"""The release of programs that are built: release.py BUILD SYSROOT"""

import hashlib
import json
import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import bom
import package
import reproduce
import throwaway

from tests.elevated.wineprogram import WineProgram
from tests.kit.desktop import PATIENCE, wait_until

PACKAGING = pathlib.Path("packaging/windows").resolve()
TITLE = "Norvane Clipwright Uninstaller"
AE_DEBUG = r"HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug"
WRITE_DUMP = r"winedbg --minidump C:\crash.dmp %ld %ld"
SOFT_TOKEN = "/usr/lib/softhsm/libsofthsm2.so"


def run(*command, **options):
    """Gives whether a command succeeded, and what it said."""
    done = subprocess.run([str(part) for part in command], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, encoding="utf-8", errors="replace", **options)
    return done.returncode == 0, done.stdout


class SigningOptions(unittest.TestCase):
    def test_an_error_in_them_ends_the_release_before_its_builds(self):
        with tempfile.TemporaryDirectory() as folder:
            authority = throwaway.Authority(folder)
            wrong = authority.folder / "wrong"
            wrong.write_text("not the password", encoding="ascii")
            with authority.stamping() as address:
                right = {"--certificate": authority.folder / "signer.p12",
                         "--password-file": authority.folder / "password",
                         "--timestamp": address, "--authority": authority.certificate,
                         "--timestamp-authority": authority.certificate}
                done, text = self.run_with(PACKAGING / "signing.py", "try", right)
                self.assertTrue(done, text)
                for changed, message in (
                        ({"--certificate": "none.p12"}, "none.p12: No such file or directory"),
                        ({"--password-file": folder}, f"{folder}: Is a directory"),
                        ({"--password-file": wrong}, "Wrong password"),
                        ({"--certificate": None}, "missing: --certificate"),
                        ({"--timestamp": None}, "missing: --timestamp"),
                        ({"--timestamp": "http://127.0.0.1:1/"}, "timestamping failed"),
                        ({"--key": "pkcs11:object=release"}, "missing: --pkcs11"),
                        ({"--authority": None}, "the signature does not hold")):
                    with self.subTest(changed):
                        done, text = self.run_with("./dev", "release", right | changed)
                        self.assertFalse(done)
                        self.assertIn(message, text)

    def run_with(self, program, command, options):
        return run(program, command, *(word for option in options.items() if option[1]
                                       for word in option), timeout=PATIENCE)


class Release(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        done, text = run(PACKAGING / "sources", SYSROOT)
        cls.sources = pathlib.Path(text.splitlines()[-1])
        cls.out = BUILD / "release"
        for script in ("package.py", "release.py"):
            done, text = run(sys.executable, PACKAGING / script, "--build", BUILD,
                             "--sysroot", SYSROOT, "--sources", cls.sources, "--out", cls.out)
            if not done:
                raise AssertionError(text)
        (cls.folder,) = [path for path in cls.out.glob("*-x86_64") if path.is_dir()]
        cls.program = cls.folder / "clipwright-uninstaller.exe"
        cls.authority = cls.out / (cls.folder.name + "-throwaway-authority.pem")

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.temporary = pathlib.Path(folder.name)

    def verify(self, program):
        return run(PACKAGING / "signing.py", "verify", "--authority", self.authority,
                   "--timestamp-authority", self.authority, program)

    def test_the_name_of_the_zip_tells_of_the_throwaway_signature(self):
        zipped = self.out / (self.folder.name + "-throwaway-signature.zip")
        shutil.unpack_archive(zipped, self.temporary)
        unpacked = self.temporary / self.folder.name
        for name in ("clipwright-uninstaller.exe", "stand-ins/data_api.dll",
                     "stand-ins/nvUpgrade.dll"):
            done, text = self.verify(unpacked / name)
            self.assertTrue(done, text)
            self.assertIn("also after the certificate's end", text)

    def test_two_builds_are_the_same_until_a_line_is_changed(self):
        built = {}
        for name, clock in reproduce.CLOCKS.items():
            reproduce.copy_sources(self.temporary / name)
            built[name] = reproduce.build(self.temporary / name, SYSROOT, ["data_api"], clock)
        programs = [folder / "bin" for folder in built.values()]
        self.assertTrue((programs[0] / "data_api.dll").is_file())
        self.assertEqual(reproduce.differences(*programs), "")
        changed = self.temporary / name / "sandbox/standins/data_api/data_api.cpp"
        text = changed.read_text("utf-8").replace("return std::fflush(record) == 0 ? 0 : -1;",
                                                  "return std::fflush(record) == 0 ? 0 : -2;")
        changed.write_text(text, "utf-8")
        reproduce.build(self.temporary / name, SYSROOT, ["data_api"], clock)
        self.assertRegex(reproduce.differences(*programs), "^Files .*data_api.dll differ\n$")

    def test_it_can_be_linked_again_and_starts(self):
        relinking = self.temporary / (self.folder.name + "-relink")
        shutil.unpack_archive(self.out / (relinking.name + ".zip"), self.temporary)
        done, text = run("sh", "link.sh", cwd=relinking, env=dict(os.environ, SYSROOT=str(SYSROOT)))
        self.assertTrue(done, text)
        for library in (self.folder / "stand-ins").glob("*.dll"):
            shutil.copy(library, relinking)
        with WineProgram(relinking, self.out / "relinked") as program:
            process = program.start()
            wait_until(lambda: program.desktop.windows(TITLE), PATIENCE, "the window")
            program.prefix.run("taskkill", "/im", self.program.name)
            self.assertEqual(process.wait(timeout=PATIENCE), 0)

    def test_a_crash_is_read_by_functions_and_lines(self):
        released, symbols, made = (self.temporary / name for name in ("bin", "symbols", "made"))
        for folder in (released, symbols, made):
            folder.mkdir()
        package.strip(BUILD / "bin" / self.program.name, released / self.program.name, symbols)
        shutil.copy(BUILD / "bin/nvUpgrade.dll", released)
        shutil.copy(BUILD / "bin/hanging-data-api.dll", made / "data_api.dll")
        package.strip(made / "data_api.dll", released / "data_api.dll", symbols)
        shutil.rmtree(made)
        dump = self.temporary / "crash.dmp"
        with WineProgram(released, self.out / "crashed") as program:
            for value, data in {"Debugger": WRITE_DUMP, "Auto": "1"}.items():
                program.prefix.set_registry(AE_DEBUG, value, "REG_SZ", data)
            process = program.start(CRASH_IN_INIT="1")
            self.assertNotEqual(process.wait(timeout=4 * PATIENCE), 0)
            shutil.copy(program.prefix.path("C:\\crash.dmp"), dump)
        done, text = run(PACKAGING / "symbolize.py", dump, self.temporary)
        self.assertTrue(done, text)
        frames = [line for line in text.splitlines() if line.startswith("    #")]
        for frame, function, place in zip(frames, (
                "crashDeliberately", "data_init", "initAnalytics"), (
                r"hanging_data_api\.cpp:\d+", r"hanging_data_api\.cpp:\d+", r"session\.cpp:\d+")):
            self.assertRegex(frame, function + ".* at .*" + place, text)
        # Without the symbols of that build-id there are addresses alone.
        (symbols / "data_api.dll.debug").unlink()
        _, text = run(PACKAGING / "symbolize.py", dump, self.temporary)
        self.assertNotIn("hanging_data_api.cpp", text)

    def test_sources_lie_beside_the_zip(self):
        sources = self.out / (self.folder.name + "-sources")
        built_from = (SYSROOT / "share/sources.txt").read_text(encoding="ascii")
        done, text = run("sha256sum", "--check", "--strict", "-", cwd=sources, input=built_from)
        self.assertTrue(done, text)
        self.assertIn("qtbase-opensource-src_", text)
        self.assertTrue((sources / "packaging/sysroot").is_file())
        self.assertTrue(list((sources / "packaging/patches").glob("*.patch")))

    def test_one_changed_byte_is_refused(self):
        content = bytearray(self.program.read_bytes())
        content[len(content) // 2] ^= 1
        changed = self.temporary / "changed.exe"
        changed.write_bytes(content)
        done, text = self.verify(changed)
        self.assertFalse(done)
        self.assertIn("MISMATCH", text)

    def test_without_a_time_stamp_the_signature_ends_with_its_certificate(self):
        another = throwaway.Authority(self.temporary)
        signed = self.temporary / "unstamped.dll"
        done, text = run("osslsigncode", "sign", "-pkcs12", another.folder / "signer.p12",
                         "-readpass", another.folder / "password",
                         "-in", BUILD / "bin/data_api.dll", "-out", signed)
        self.assertTrue(done, text)
        self.authority = another.certificate
        done, text = self.verify(signed)
        self.assertFalse(done)
        self.assertIn("the signature ends with its certificate", text)

    def test_the_signature_of_an_unknown_authority_is_refused(self):
        self.authority = throwaway.Authority(self.temporary).certificate
        done, text = self.verify(self.program)
        self.assertFalse(done)
        self.assertIn("the signature does not hold", text)

    def test_the_key_may_be_in_a_token(self):
        another = throwaway.Authority(self.temporary)
        (self.temporary / "tokens").mkdir()
        configuration = self.temporary / "softhsm2.conf"
        configuration.write_text(f"directories.tokendir = {self.temporary / 'tokens'}\n",
                                 encoding="ascii")
        environment = dict(os.environ, SOFTHSM2_CONF=str(configuration))
        pin = (another.folder / "password").read_text(encoding="ascii")
        for command in (["--init-token", "--free", "--label", "maker", "--so-pin", pin],
                        ["--import", another.folder / "signer.key", "--token", "maker",
                         "--label", "release", "--id", "01"]):
            done, text = run("softhsm2-util", *command, "--pin", pin, env=environment)
            self.assertTrue(done, text)
        library = self.temporary / "data_api.dll"
        shutil.copyfile(BUILD / "bin/data_api.dll", library)
        with another.stamping() as address:
            done, text = run(PACKAGING / "signing.py", "sign", "--pkcs11", SOFT_TOKEN,
                             "--key", "pkcs11:token=maker;object=release;type=private",
                             "--certificate", another.folder / "signer.pem",
                             "--password-file", another.folder / "password",
                             "--timestamp", address, "--authority", another.certificate,
                             "--timestamp-authority", another.certificate, library,
                             env=environment)
        self.assertTrue(done, text)

    def test_the_bill_of_materials_names_what_is_linked(self):
        materials = json.loads((self.out / (self.folder.name + ".cdx.json")).read_text("utf-8"))
        program = materials["metadata"]["component"]
        self.assertEqual(program["hashes"][0]["content"],
                         hashlib.sha256(self.program.read_bytes()).hexdigest())
        listed = {entry["name"]: entry for entry in materials["components"]}
        listed |= {entry["name"]: entry for entry in listed["qtbase"]["components"]}
        for name, licence in {
                "qtbase": "LGPL-3.0-only", "Qt5Core": "LGPL-3.0-only", "Qt5Gui": "LGPL-3.0-only",
                "qwindows": "LGPL-3.0-only", "zlib": "Zlib", "freetype": "FTL OR GPL-2.0",
                "libpng": "Libpng AND libpng-2.0", "libjpeg": "IJG AND BSD-3-Clause AND Zlib",
                "harfbuzz-ng": "MIT", "pcre2": "BSD-3-Clause", "jsoncpp": "MIT",
                "libgcc": "GPL-3.0-or-later WITH GCC-exception-3.1",
                "libstdc++": "GPL-3.0-or-later WITH GCC-exception-3.1",
                "mingw-w64": "ZPL-2.1", "winpthreads": "MIT AND BSD-3-Clause",
                "Noto Sans Bold": "OFL-1.1"}.items():
            with self.subTest(name):
                entry = listed[name]
                (told,) = entry["licenses"]
                self.assertEqual(told.get("expression") or told["license"]["id"], licence)
                self.assertRegex(entry["version"], r"^\d+(\.\d+)*$")
                checksums = entry.get("hashes") or entry["externalReferences"][0]["hashes"]
                self.assertRegex(checksums[0]["content"], "^[0-9a-f]{64}$")

    def test_a_bill_that_is_not_of_the_format_is_refused(self):
        materials = json.loads((self.out / (self.folder.name + ".cdx.json")).read_text("utf-8"))
        materials["components"][0]["type"] = "a kind that there is not"
        with self.assertRaisesRegex(SystemExit, "not of its format"):
            bom.write(materials, self.temporary / "bom.json")

    def test_checksums_are_those_of_the_files(self):
        done, text = run("sha256sum", "--check", "--strict", "SHA256SUMS", cwd=self.out)
        self.assertTrue(done, text)
        self.assertIn("-throwaway-signature.zip: OK", text)


if __name__ == "__main__":
    BUILD, SYSROOT = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
    unittest.main(argv=sys.argv[:1], verbosity=2)
