"""Setups of the sample product, made with the tools that makers use, and stories of what their
uninstallers do when the wizard starts them."""

import contextlib
import glob
import os
import subprocess
import zipfile

from tests.kit.desktop import PATIENCE, wait_until
from tests.kit.folders import ROOT
from tests.stories import events, removal
from tests.stories.story import Story, effects, nothing, story as listed

HERE = os.path.join(ROOT, "tests", "stories", "windows")
APPLICATION = "HKLM\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{}_is1"
MENU = "C:\\ProgramData\\Microsoft\\Windows\\Start Menu\\Programs\\Norvane Clipwright"


def shipped(story):
    """The folder of the program as it ships, unpacked from its zip."""
    archive, = glob.glob(os.path.join(os.path.dirname(story.binaries), "zip", "*-x86_64.zip"))
    with zipfile.ZipFile(archive) as opened:
        opened.extractall(story.prefix.path("C:\\"), (
            name for name in opened.namelist() if name.endswith((".exe", ".dll"))))
    return story.prefix.path("C:\\" + os.path.basename(archive).removesuffix(".zip"))


def nsis(story):
    setup = os.path.join(story.out, "Clipwright sample.exe")
    subprocess.run(["makensis", "-V2", "-WX", f"-DOUTPUT={setup}", f"-DPROGRAMS={story.binaries}",
                    f"-DSHIPPED={shipped(story)}", os.path.join(HERE, "setup.nsi")], check=True)
    if story.prefix.run(setup) != 0:
        raise OSError("the setup failed")


def inno(application):
    """A setup of its own for each application, though all install the same files."""
    def install(story):
        compiler = subprocess.run([os.path.join(HERE, "inno-setup")], check=True,
                                  stdout=subprocess.PIPE, encoding="utf-8").stdout.strip()
        windows = story.prefix.windows_path
        made = story.prefix.output(
            os.path.join(compiler, "ISCC.exe"), "/Q", f"/DPROGRAMS={windows(story.binaries)}",
            f"/DSHIPPED={windows(shipped(story))}", f"/DAPP={application}",
            f"/O{windows(story.out)}", f"/F{application}", windows(os.path.join(HERE, "setup.iss")))
        setup = os.path.join(story.out, application + ".exe")
        if story.prefix.run(setup, "/VERYSILENT", "/SUPPRESSMSGBOXES") != 0:
            raise OSError(f"the setup failed: {made}")
    return install


def installed_by(*setups):
    """Marks a story whose product is installed by these, one after the other."""
    def mark(play):
        play.setups = setups
        return play
    return mark


@contextlib.contextmanager
def in_use(story, name):
    """For the length of a block, a Windows program writes into a file of the product."""
    file = os.path.join(story.product_folder(), name)
    size = os.path.getsize(file)
    holder = story.desktop.start(["wine", "cmd", "/c", "pause", f">>{name}"], env=story.environment,
                                 cwd=story.product_folder(), stdin=subprocess.PIPE)
    wait_until(lambda: os.path.getsize(file) > size, PATIENCE, f"{name} in use")
    yield
    holder.stdin.close()
    holder.wait(PATIENCE)


def is_registered(story, application):
    """Whether Windows knows the application, and whether it is in the start menu."""
    return (story.prefix.registry(APPLICATION.format(application), "DisplayName") is not None,
            os.path.exists(story.prefix.path(MENU)))


def removed_for_good(story, application, **expected):
    story.expect_equal(is_registered(story, application), (True, True), "it is registered")
    removal.remove(story, removal.SUCCESS, events.COMPLETED, events.left("uninstallprocess"),
                   links=[removal.GOODBYE_PAGE], **expected)
    story.expect_equal(is_registered(story, application), (False, False), "it no longer is")
    story.prefix.end_session()
    story.prefix.run("wineboot", "--restart")
    story.expect_equal(Story.files_left(story), story.files_left(),
                       "nothing is left of the wizard, which was running, after a restart")


@listed
@installed_by(inno("First"))
def inno_setup(story):
    """The uninstaller of an Inno Setup removes the product, but not the effect resources."""
    removed_for_good(story, "First", keeps=effects)


@listed
@installed_by(inno("First"))
def inno_setup_with_resources(story):
    """It removes the effect resources, too."""
    removed_for_good(story, "First", with_resources=True, keeps=nothing)
    story.expect(not os.path.exists(story.product_folder()), "the product's folder is gone")


@listed
@installed_by(inno("First"), inno("Second"))
def inno_setups_on_top_of_each_other(story):
    """Of two uninstallers the later one is started."""
    story.expect("unins001.exe" in story.installed, "the second setup has its own uninstaller")
    removed_for_good(story, "Second",
                     keeps=lambda file: effects(file) or file.startswith("unins000."))


@listed
@installed_by(inno("First"))
def inno_setup_with_a_file_in_use(story):
    """Its uninstaller fails while a file is in use; the wizard says so, and everything is kept."""
    with in_use(story, "ClipCore.dll"):
        removal.remove(story, "Uninstall Failed", events.FAILED)
