import os
import shutil
import subprocess

import pytest
from desktop import Accessible, Desktop


def program(name):
    return os.path.join(os.environ["KINTAR3_BIN"], name)


@pytest.fixture(scope="session")
def site_template(tmp_path_factory):
    folder = tmp_path_factory.mktemp("template") / "site"
    subprocess.run(
        [program("kintar-site"), "create", str(folder), "--names", "80", "--seed", "7"],
        check=True,
        capture_output=True,
    )
    return folder


@pytest.fixture
def site(site_template, tmp_path):
    """A site of one's own, freely changed by the test."""
    folder = tmp_path / "site"
    shutil.copytree(site_template, folder)
    return folder


@pytest.fixture
def make_desktop(site):
    """Makes desktops with options of their own; all are closed at the end."""
    made = []

    def make(folder=None, **options):
        desktop = Desktop(folder or site, **options)
        made.append(desktop)
        return desktop

    yield make
    for desktop in made:
        desktop.close()


@pytest.fixture
def desktop(make_desktop):
    return make_desktop()


@pytest.fixture
def make_accessible():
    made = []

    def make(desktop):
        accessible = Accessible(desktop)
        made.append(accessible)
        return accessible

    yield make
    for accessible in made:
        accessible.close()


@pytest.fixture
def accessible(desktop, make_accessible):
    return make_accessible(desktop)
