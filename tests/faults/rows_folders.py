"""Folders that cannot be written, are full, are not there, are no folders, or go while the program
runs. It works with what it can read."""

import os
import shutil
import subprocess
import time

from tests.faults.harness import BUILT_IN, CONFIRMATION, CONTINUE, EARLIER, MAIN, MESSAGE, NO_REASON, REMOVE, SERVED, SPLASH, Skipped
from tests.faults.servers import PICTURE, FaultyServer, answer, dead_port
from tests.faults.table import row

GROUP = "folders"


def mounted(fault, *commands):
    """A wrapper that runs the program where these mounts are made, seen by nobody else. Root's
    rights end there: modes would not stop it."""
    if subprocess.run(["unshare", "--map-root-user", "--mount", "true"], check=False,
                      stderr=subprocess.DEVNULL).returncode:
        raise Skipped("no mount namespace of one's own may be made here")
    return ["unshare", "--map-root-user", "--mount", "sh", "-ec",
            "; ".join(commands) + '; exec "$@"', fault.root]


def read_only(folder):
    return f"mount --bind '{folder}' '{folder}'; mount -o remount,bind,ro '{folder}'"


def full(folder, kilobytes):
    """A small disk of its own with the folder's content on it."""
    return (f"cp -r '{folder}' '{folder}.kept'; mount -t tmpfs -o size={kilobytes}k none "
            f"'{folder}'; cp -r '{folder}.kept/.' '{folder}'")


@row(GROUP, "the program's data folder cannot be written")
def data_read_only(fault):
    earlier = fault.put_earlier_document()
    with FaultyServer() as server:
        fault.start(mounted(fault, read_only(fault.data)), CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.close_by_keys()
    fault.expect(fault.content(fault.cached) == earlier, "earlier document intact")
    fault.expect_equal(fault.picture_names(), [], "pictures kept")


@row(GROUP, "the folder of documents cannot be written")
def documents_read_only(fault):
    earlier = fault.put_earlier_document()
    with FaultyServer() as server:
        fault.start(mounted(fault, read_only(os.path.dirname(fault.cached))),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(EARLIER)
    fault.expect(fault.content(fault.cached) == earlier, "earlier document intact")


@row(GROUP, "the folder of pictures cannot be written")
def pictures_read_only(fault):
    fault.put_earlier_document()
    with FaultyServer() as server:
        fault.start(mounted(fault, read_only(fault.pictures)),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)
    fault.expect_equal(fault.picture_names(), [], "pictures kept")


@row(GROUP, "nothing at all can be written, not even the lock")
def all_read_only(fault):
    fault.put_earlier_document()
    with FaultyServer() as server:
        fault.start(mounted(fault, read_only(fault.root)), CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.close_by_keys()


@row(GROUP, "the product's data folder cannot be written when an update is described")
def product_data_read_only(fault):
    fault.order_installer(delay=0, exit=1)
    with FaultyServer() as server:
        fault.start(mounted(fault, read_only(fault.product_data)),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: fault.starts_of("update-installer"), 8, "the update installer")
        fault.press(MESSAGE, "space")
        fault.close_by_keys()
    fault.expect('/NEWVER=""' in fault.lines("Received/update-installer.txt"),
                 "no version was made up")


@row(GROUP, "the disk is full when the document is saved")
def full_for_document(fault):
    earlier = fault.put_earlier_document()
    room = (len(earlier) + 4095) // 4096 * 4
    with FaultyServer() as server:
        fault.start(mounted(fault, full(os.path.dirname(fault.cached), room)),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        seen = f"/proc/{fault.process.pid}/root{fault.cached}"
        fault.expect(fault.content(seen) == earlier, "earlier document intact")
        fault.leave(EARLIER)


@row(GROUP, "the disk is full when the pictures are saved")
def full_for_pictures(fault):
    os.makedirs(fault.pictures)
    with FaultyServer() as server:
        fault.start(mounted(fault, full(fault.pictures, 48)),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        seen = f"/proc/{fault.process.pid}/root{fault.pictures}"
        saved = os.listdir(seen)
        fault.note(f"{len(saved)} pictures kept")
        whole = [fault.content(os.path.join(seen, name)) == PICTURE for name in saved]
        fault.expect(all(whole), "every picture kept is whole")
        fault.expect(0 < len(saved) < 20, f"some pictures found room, {len(saved)} did")
        fault.leave(SERVED)


@row(GROUP, "not a byte of the disk is free")
def not_a_byte(fault):
    fault.put_earlier_document()
    with FaultyServer() as server:
        fault.start(mounted(fault, full(fault.data, 256),
                            f"cat /dev/zero > '{fault.data}/filler' 2> /dev/null || true"),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.close_by_keys()


@row(GROUP, "no folder is there but the product's")
def all_missing(fault):
    for name in ("ProgramData", "Runtime"):
        shutil.rmtree(fault.path(name))
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(SERVED)
    fault.expect(os.path.isdir(fault.product_data), "the product's data folder was made")


@row(GROUP, "the temporary folder is a file")
def temporary_is_file(fault):
    shutil.rmtree(fault.path("Temp"))
    fault.write("Temp", "no folder")
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.close_by_keys()
    fault.expect_equal(fault.content(fault.path("Temp")), b"no folder", "the file")


def occupied(name, relative, expected):
    @row(GROUP, name)
    def play(fault):
        fault.write(os.path.join("Temp/Norvane Clipwright Uninstaller", relative), "no folder")
        with FaultyServer() as server:
            fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
            fault.wait_for_main_window()
            fault.leave(expected)


occupied("a file stands where the folder of documents belongs", "Configs", BUILT_IN)
occupied("a file stands where the folder of pictures belongs", "Configs/Images", SERVED)


@row(GROUP, "a file stands where the analytics library keeps its records")
def records_occupied(fault):
    fault.write("Temp/Norvane Clipwright Uninstaller/Analystic", "no folder")
    fault.start()
    fault.wait_for_main_window()
    fault.close_by_keys()


@row(GROUP, "a folder stands where the document belongs")
def document_is_folder(fault):
    os.makedirs(fault.cached)
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.leave(NO_REASON)
    fault.expect(os.path.isdir(fault.cached), "the folder is still there")


@row(GROUP, "the program's data folder goes while the pictures are fetched")
def data_goes_while_loading(fault):
    def slow(exchange):
        time.sleep(0.4)
        exchange.send(answer(PICTURE))

    with FaultyServer(picture=slow) as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_window(SPLASH)
        fault.wait_until(lambda: len(server.requests) > 8, 5, "some pictures")
        shutil.rmtree(fault.data, ignore_errors=True)
        fault.wait_for_main_window(within=12)
        fault.close_by_keys()


@row(GROUP, "the program's data folder goes while the window is shown")
def data_goes_later(fault):
    fault.order_uninstaller(delay=0, exit=3)
    fault.start()
    fault.wait_for_main_window()
    shutil.rmtree(fault.data)
    fault.confirm_removal()
    fault.wait_until(lambda: fault.starts_of("uninstaller"), 5, "the uninstaller")
    time.sleep(0.5)
    fault.close_by_keys()


@row(GROUP, "the product's data folder goes while an update is checked")
def product_data_goes(fault):
    fault.orders("Feed/orders.txt", check_delay=1500)
    fault.order_installer(delay=0, exit=1)
    with FaultyServer() as server:
        fault.start(CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: fault.lines("Feed/calls.jsonl"), 5, "the check")
        shutil.rmtree(fault.product_data)
        fault.wait_until(lambda: fault.starts_of("update-installer"), 8, "the update installer")
        fault.press(MESSAGE, "space")
        fault.close_by_keys()
    fault.expect('/NEWVER="7.3.0.1"' in fault.lines("Received/update-installer.txt"),
                 "the update's description was taken into a new folder")


@row(GROUP, "the product's data folder becomes read-only while an update is checked")
def product_data_becomes_read_only(fault):
    fault.orders("Feed/orders.txt", check_delay=1500)
    fault.order_installer(delay=0, exit=1)
    folder = fault.product_data
    before = sorted(os.listdir(folder))
    with FaultyServer() as server:
        fault.start(mounted(fault, f"mount --bind '{folder}' '{folder}'"),
                    CLIPWRIGHT_SANDBOX_SERVICE=server.url)
        fault.wait_for_main_window()
        fault.take_offer()
        fault.wait_until(lambda: fault.lines("Feed/calls.jsonl"), 5, "the check")
        subprocess.run(["nsenter", f"--target={fault.process.pid}", "--user", "--mount",
                        "--preserve-credentials", "mount", "-o", "remount,bind,ro", folder],
                       check=True)
        fault.wait_until(lambda: fault.starts_of("update-installer"), 8, "the update installer")
        fault.press(MESSAGE, "space")
        fault.close_by_keys()
    fault.expect_equal(sorted(os.listdir(folder)), before, "files there")


@row(GROUP, "the installation folder goes while the last question is asked")
def installation_goes(fault):
    fault.start()
    fault.wait_for_main_window()
    fault.choose()
    fault.click(MAIN, CONTINUE)
    fault.wait_for_window(CONFIRMATION)
    shutil.rmtree(fault.install_dir)
    fault.remove_pressed = True
    fault.click(CONFIRMATION, REMOVE)
    fault.wait_for_result("failure", 5)
    fault.close_by_keys()
    fault.expect_equal(fault.starts_of("uninstaller"), [], "uninstallers started")


@row(GROUP, "the registry names an installation folder that is not there")
def installation_elsewhere(fault):
    os.rename(fault.install_dir, fault.install_dir + " moved")
    fault.start(CLIPWRIGHT_SANDBOX_SERVICE=dead_port())
    fault.wait_for_main_window()
    fault.confirm_removal()
    fault.wait_for_result("failure", 5)
    fault.close_by_keys()
