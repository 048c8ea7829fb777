"""The commands of docs/sites.md that move a site to a database server, carried out as they stand.

Put in their places are the site's folder and the server's address alone. What a test must not do
itself, installing packages and becoming another user, stand-ins of `apt-get` and `sudo` do: the one
looks whether the package is there, the other runs the command as the private server's administrator.
"""

import contextlib
import os
import re
import subprocess
from urllib.parse import quote

import pytest
from database_server import DatabaseServer
from desktop import TOP
from site_database import open_database, setting

pytestmark = pytest.mark.engine("sqlite")  # which the site is moved away from

PASSWORD = "four words and 1"
SUDO = '#!/bin/sh\n[ "$1" != -u ] || shift 2\nexec "$@"\n'
APT_GET = '#!/bin/sh\n[ "$1" = install ] && dpkg-query --status "$2"\n'


def section(heading):
    with open(os.path.join(TOP, "docs", "sites.md"), encoding="utf-8") as document:
        return document.read().split(f"\n## {heading}\n")[1].split("\n## ")[0]


@pytest.fixture
def server():
    with contextlib.closing(DatabaseServer(administrator="postgres")) as made:
        made.ask_for_passwords()
        yield made


@pytest.fixture
def surroundings(server, tmp_path):
    """Where a user who has never been asked for a password gives the commands."""
    stand_ins = tmp_path / "bin"
    stand_ins.mkdir()
    for name, text in (("sudo", SUDO), ("apt-get", APT_GET)):
        (stand_ins / name).write_text(text)
        (stand_ins / name).chmod(0o755)
    path = (str(stand_ins), os.environ["KINTAR3_BIN"], server.programs, os.environ["PATH"])
    kept = {key: value for key, value in os.environ.items() if not key.startswith("PG")}
    return {**kept, "PATH": ":".join(path), "HOME": str(tmp_path), "PGHOST": server.folder,
            "PGUSER": "postgres", "LC_ALL": "C.UTF-8"}  # fmt: skip


def count_names(site):
    with open_database(site) as database:
        return database.execute("SELECT count(*) FROM Names").fetchone()[0]


def test_five_commands_move_a_site_to_a_database_server(site, server, surroundings, tmp_path):
    names = count_names(site)
    text = section("Moving a site to a database server")
    commands = re.findall(r"^    (.+)$", text, re.MULTILINE)
    assert len(commands) == 5
    (password_line,) = re.findall(r"`(localhost:\S+:PASSWORD)`", text)
    password_file = tmp_path / ".pgpass"
    password_file.write_text(
        password_line.replace("localhost", server.folder).replace("PASSWORD", PASSWORD)
    )
    password_file.chmod(0o600)
    for command in commands:
        here = command.replace("/srv/site", str(site)).replace("localhost", quote(server.folder, ""))
        # No terminal: a password that is asked for is read from standard input.
        done = subprocess.run(["sh", "-ec", here], env=surroundings, text=True, capture_output=True,
                              input=f"{PASSWORD}\n{PASSWORD}\n", start_new_session=True)  # fmt: skip
        assert done.returncode == 0, (command, done.stdout, done.stderr)
    assert setting(site).startswith("postgresql://kintar@")
    assert server.sql("site", "SELECT count(*) FROM Names") == [[str(names)]]
    (check,) = re.findall(r"`(kintar-site check \S+)`", text)
    told = subprocess.run(check.replace("/srv/site", str(site)).split(), env=surroundings,
                          capture_output=True, text=True)  # fmt: skip
    assert told.stdout == f"{site}: nothing is wrong\n", told.stderr
