"""Folders that cannot be written, are full, are missing, are files, or go while the program runs.
The program works with what it can read."""

import json
import os
import subprocess
import time

from tests.faults.harness import (
    ACCOUNT_INI, BUILT_IN, CACHED, CONFIGS, DATA, EARLIER, FEED_ORDERS, INSTALLED,
    INSTALLER_ORDERS, MESSAGE, NO_REASON, PICTURES, PRODUCT_DATA, PRODUCT_INI, SPLASH,
    UNINSTALLER_ORDERS, do)
from tests.faults.servers import PICTURE, SERVED, answer, document

ANALYTICS = DATA + "/Analystic"
# What the earlier document takes on a disk of 4 KiB blocks.
EARLIER_KILOBYTES = (len(json.dumps(document(EARLIER))) + 4095) // 4096 * 4


def bound(folder):
    return f'mount --bind "$PWD/{folder}" "$PWD/{folder}"'


def read_only(folder):
    return bound(folder) + f'; mount -o remount,bind,ro "$PWD/{folder}"'


def full(folder, kilobytes):
    """A small disk of its own with the folder's content on it."""
    return (f"cp -r '{folder}' '{folder}.kept'; mount -t tmpfs -o size={kilobytes}k none "
            f"'{folder}'; cp -r '{folder}.kept/.' '{folder}'")


def inside(fault, relative):
    """A file or folder as the program sees it."""
    return f"/proc/{fault.process.pid}/root{fault.path(relative)}"


def no_pictures(fault):
    fault.expect_equal(fault.pictures_kept(), [], "pictures kept")


def without_products(whole):
    return json.dumps({**json.loads(whole), "apps": []}).encode()


def earlier_document(fault):
    fault.expect(fault.content(inside(fault, CACHED)) == fault.cached, "earlier document intact")


def some_whole_pictures(fault):
    kept = len(fault.pictures_kept(inside(fault, PICTURES)))
    fault.expect(0 < kept < 20, f"some pictures found room, {kept} did")


def is_folder(folder):
    return lambda fault: fault.expect(os.path.isdir(fault.path(folder)), f"{folder} is a folder")


def temporary_is_still_file(fault):
    fault.expect_equal(fault.content("Temp"), b"no folder", "the file")


def make_folder(folder):
    return lambda fault: os.makedirs(fault.path(folder))


def move_installation(fault):
    os.rename(fault.path(INSTALLED), fault.path(INSTALLED) + " moved")


def slow_picture(exchange):
    time.sleep(0.4)
    exchange.send(answer(PICTURE))


def wait_for_pictures(fault):
    fault.wait_until(lambda: len(fault.server.requests) > 8, 5, "some pictures")


def updated(happens, then, *mounts):
    """Something happens while the check, which takes a while, is answered with an update. The
    installer is started, and fails."""
    return [do.order(FEED_ORDERS, check_delay=1500), do.order(INSTALLER_ORDERS, delay=0, exit=1),
            do.serve(), do.open(*mounts), do.take_offer(),
            do.wait_for_library_call("check_upgrade_c"), happens, do.wait_for_installer(),
            do.press(MESSAGE, "space"), do.close(), then]


def version_told(version):
    return lambda fault: fault.expect(
        f'/NEWVER="{version}"' in fault.lines("Received/update-installer.txt"),
        f'the update installer was told of version "{version}"')


def become_read_only(fault):
    subprocess.run(["nsenter", f"--target={fault.process.pid}", "--user", "--mount",
                    "--preserve-credentials", "mount", "-o", "remount,bind,ro",
                    fault.path(PRODUCT_DATA)], check=True)


def only_ini_files(fault):
    fault.expect_equal(fault.names_in(PRODUCT_DATA), ["Clipwright.ini", "KConfig.ini"], "files")


ROWS = {
    "the program's data folder cannot be written": [
        do.put_earlier_document(), do.serve(), do.open(read_only(DATA)), do.close(),
        do.expect_document_kept(), no_pictures],
    "the folder of documents cannot be written": [
        do.put_earlier_document(), do.serve(), do.open(read_only(CONFIGS)), do.leave(EARLIER)],
    "the folder of pictures cannot be written": [
        do.put_earlier_document(), do.serve(), do.open(read_only(PICTURES)), do.leave(SERVED),
        no_pictures],
    "nothing at all can be written, not even the lock": [
        do.put_earlier_document(), do.serve(), do.open(read_only("")), do.close()],
    "the product's data folder cannot be written when an update is described": updated(
        lambda fault: None, version_told(""), read_only(PRODUCT_DATA)),
    "the disk is full when the document is saved": [
        do.put_earlier_document(), do.serve(), do.open(full(CONFIGS, EARLIER_KILOBYTES)),
        earlier_document, do.leave(EARLIER)],
    # Room that the part which was saved has taken, and which it gives back.
    "the disk is full when the document is saved, the earlier one was shorter": [
        do.put_earlier_document(without_products), do.serve(),
        do.open(full(CONFIGS, EARLIER_KILOBYTES)), earlier_document, do.leave(EARLIER)],
    "the disk is full when the pictures are saved": [
        make_folder(PICTURES), do.serve(), do.open(full(PICTURES, 48)), some_whole_pictures,
        do.leave(SERVED)],
    "not a byte of the disk is free": [
        do.put_earlier_document(), do.serve(),
        do.open(full(DATA, 256), f"cat /dev/zero > '{DATA}/filler' 2> /dev/null || true"),
        do.close()],
    "no folder is there but the product's": [
        do.remove("ProgramData", "Runtime"), do.serve(), do.open(), do.leave(SERVED),
        is_folder(PRODUCT_DATA)],
    "the temporary folder is a file": [
        do.write("Temp", "no folder"), do.serve(), do.open(), do.close(),
        temporary_is_still_file],
    "a file stands where the folder of documents belongs": [
        do.write(CONFIGS, "no folder"), do.serve(), do.open(), do.leave(BUILT_IN)],
    "a file stands where the folder of pictures belongs": [
        do.write(PICTURES, "no folder"), do.serve(), do.open(), do.leave(SERVED)],
    "a file stands where the analytics library keeps its records": [
        do.write(ANALYTICS, "no folder"), do.open(), do.close()],
    "a folder stands where the document belongs": [
        make_folder(CACHED), do.serve(), do.open(), do.leave(NO_REASON), is_folder(CACHED)],
    "named pipes stand where files belong": [
        make_folder(CONFIGS), *(do.replace(file, os.mkfifo) for file in (
            CACHED, PRODUCT_INI, ACCOUNT_INI, PRODUCT_DATA + "/Back_UpdateInfo.json")),
        do.serve(), do.open(), do.leave(NO_REASON)],
    "the program's data folder goes while the pictures are fetched": [
        do.serve(picture=slow_picture), do.start(), do.wait_for_window(SPLASH),
        wait_for_pictures, do.remove(DATA), do.wait_for_main_window((0, 9)), do.close()],
    "the program's data folder goes while the window is shown": [
        do.order(UNINSTALLER_ORDERS, delay=0, exit=3), do.open(), do.remove(DATA),
        do.remove_product(), do.wait_for_uninstaller(), do.pause(0.5), do.close()],
    "the product's data folder goes while an update is checked": updated(
        do.remove(PRODUCT_DATA), version_told("7.3.0.1")),
    "the product's data folder becomes read-only while an update is checked": updated(
        become_read_only, only_ini_files, bound(PRODUCT_DATA)),
    "the installation folder goes while the last question is asked": [
        do.open(), do.ask_to_remove(), do.remove(INSTALLED), do.confirm_removal(),
        do.wait_for_result("failure"), do.close(), do.expect_started(0)],
    "the registry names an installation folder that is not there": [
        move_installation, do.open(), do.remove_product(), do.wait_for_result("failure"),
        do.close()],
}
