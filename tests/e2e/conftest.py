import contextlib
import itertools
import os
import shutil
import subprocess

import pytest
from database_server import DatabaseServer
from desktop import Accessible, Desktop
from site_database import ENGINE, ENGINES, set_database

TEMPLATE = "template_site"


def program(name):
    return os.path.join(os.environ["KINTAR3_BIN"], name)


def pytest_configure(config):
    config.addinivalue_line(
        "markers", f"engine({' or '.join(ENGINES)}): what the test is about, only this engine has"
    )


def pytest_collection_modifyitems(items):
    """Leaves out what is marked as about the other engine, and says so."""
    for item in items:
        marker = item.get_closest_marker("engine")
        if marker and marker.args != (ENGINE,):
            item.add_marker(pytest.mark.skip(reason=f"about {marker.args[0]} alone"))


@pytest.fixture(scope="session")
def engine_server():
    """The database server of all sites of this run; None where their databases are files."""
    if ENGINE == "sqlite":
        yield None
        return
    with contextlib.closing(DatabaseServer()) as server:
        yield server


@pytest.fixture(scope="session")
def site_template(tmp_path_factory, engine_server):
    folder = tmp_path_factory.mktemp("template") / "site"
    options = ["--names", "80", "--seed", "7"]
    if engine_server:
        options += ["--database", engine_server.make_database(TEMPLATE)]
    subprocess.run(
        [program("kintar-site"), "create", str(folder), *options], check=True, capture_output=True
    )
    return folder


numbers = itertools.count(1)


@pytest.fixture
def site(site_template, engine_server, tmp_path):
    """A site of one's own, freely changed by the test."""
    folder = tmp_path / "site"
    shutil.copytree(site_template, folder)
    if not engine_server:
        yield folder
        return
    name = f"site{next(numbers)}"
    set_database(folder, engine_server.make_database(name, TEMPLATE))
    yield folder
    engine_server.drop_database(name)


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
