"""A site that cannot be opened: the message box is a real window, and everybody else is served."""

import re
import select
import subprocess

import pytest
from desktop import BUS_NAME, PROPERTIES, ROOT, await_true
from site_database import set_database, setting

SERVER = f"{BUS_NAME}.Server"
CREATE_FAILED = "TarnSys Create Routine Failed"


def without_settings(site):
    (site / "kintar3.ini").unlink()


def without_database(site):
    (site / "site.db").unlink()


def damaged_database(site):
    (site / "site.db").write_bytes(b"This is no database. " * 400)


def torn_database(site):
    whole = (site / "site.db").read_bytes()
    (site / "site.db").write_bytes(whole[:512] + b"\xff" * 16384)


def folder_for_database(site):
    (site / "site.db").unlink()
    (site / "site.db").mkdir()


def unknown_database(site):
    set_database(site, setting(site).replace("/site", "/nosite"))


def empty_database(site):
    set_database(site, re.sub("/site[0-9]+", "/postgres", setting(site)))


def no_server(site):
    set_database(site, "postgresql://kintar@/site?host=/nowhere")


def without_data_folder(site):
    (site / "Data").rename(site / "Elsewhere")


def about_a_file(damage):
    return pytest.param(damage, marks=pytest.mark.engine("sqlite"))


def about_a_server(damage):
    return pytest.param(damage, marks=pytest.mark.engine("postgresql"))


BREAKAGES = [
    without_settings,
    about_a_file(without_database),
    about_a_file(damaged_database),
    about_a_file(torn_database),
    about_a_file(folder_for_database),
    about_a_server(unknown_database),
    about_a_server(empty_database),
    about_a_server(no_server),
    without_data_folder,
]


def has_answered(process):
    return bool(select.select([process.stdout], [], [], 0)[0])


def creating(desktop):
    process = desktop.start("kintarctl", "raw", stdin=subprocess.PIPE, stdout=subprocess.PIPE)
    process.stdin.write("create objKintar\n")
    process.stdin.flush()
    return process


def assert_is_served(client):
    """Everything that does not need what the box is about."""
    client.root.Ping(dbus_interface="org.freedesktop.DBus.Peer")
    assert str(client.root.Get(SERVER, "Version", dbus_interface=PROPERTIES)) == "4.4.12"
    told = client.root.Introspect(dbus_interface="org.freedesktop.DBus.Introspectable")
    assert f'<interface name="{SERVER}">' in told
    other = client.create("objImageType")
    client.release(other)


def press_ok(accessible):
    ok = {"role": "push button", "window": "Kintar3", "action": "Press"}
    await_true(lambda: accessible.ask("OK", **ok)["found"], what="the button")


@pytest.mark.parametrize("damage", BREAKAGES)
def test_the_box_opens_others_are_served_and_the_call_is_answered_after_it(
    make_desktop, make_accessible, site, damage
):
    damage(site)
    desktop = make_desktop(site)
    accessible = make_accessible(desktop)
    process = creating(desktop)
    desktop.await_window("Kintar3")
    assert await_true(
        lambda: accessible.ask(CREATE_FAILED, role="label")["found"], what="the message"
    )
    assert_is_served(desktop.client())
    assert not has_answered(process)
    press_ok(accessible)
    await_true(lambda: has_answered(process), 30.0, "the answer")
    assert process.stdout.readline() == f"{ROOT}/objKintar/1\n"
    desktop.await_no_window("Kintar3")
    # A failed start-up is no failed creation: the object lives, and ends like any other.
    process.stdin.write(f"release {ROOT}/objKintar/1\ncreate objImageType\n")
    process.stdin.flush()
    assert process.stdout.readline().startswith(f"{ROOT}/objImageType/")
    process.stdin.close()
    assert process.wait(timeout=60) == 0


def test_another_creation_does_not_wait_for_the_box(make_desktop, make_accessible, site):
    without_settings(site)
    desktop = make_desktop(site)
    accessible = make_accessible(desktop)
    first = creating(desktop)
    desktop.await_window("Kintar3")
    # The count is 2 now: this one's start-up is skipped, and it waits for nothing.
    second = desktop.client().create("objAlarmPopUp")
    assert bool(second.get("Enabled"))
    assert not has_answered(first)
    press_ok(accessible)
    await_true(lambda: has_answered(first), 30.0, "the answer")
    first.stdin.close()
    assert first.wait(timeout=60) == 0
