"""The README's own programs, carried out as they stand."""

import os
import textwrap

from desktop import TOP


def readme_program(first_line):
    """The indented block of the README that holds this line."""
    with open(os.path.join(TOP, "README.md"), encoding="utf-8") as readme:
        blocks = readme.read().split("\n\n")
    found = [block for block in blocks if first_line in block]
    assert len(found) == 1, f"one block of the README holds {first_line!r}"
    return textwrap.dedent(found[0])


def test_the_readmes_python_client_shows_the_photo_window(desktop):
    program = readme_program("import time, dbus")
    client = desktop.start("/usr/bin/python3", "-c", program)
    try:
        desktop.await_window("Lindqvist, Astrid")
    finally:
        client.kill()
        client.wait()
