"""The photo window, driven over the bus and looked at on the screen."""

import os
import shutil
import time

import dbus
import pytest
from card_events import (
    FULL_RIGHTS_OPERATOR,
    NO_RIGHTS_OPERATOR,
    people_with_photos,
    person,
    photo_path,
    show,
    title_of,
)
from clock import clocked
from desktop import ForeignWindow, WindowManager, await_true
from PIL import Image, ImageChops, ImageStat
from site_database import rows

def likeness(picture, photo):
    """Mean difference per channel between the photo and the picture's best matching area.

    The photo stands at the top, scaled to fit and centred; the window's lower part is text.
    """
    with Image.open(photo) as image:
        wanted = image.convert("RGB")
    width, height = picture.size
    best = 255.0
    for area_height in range(height // 2, height):
        scale = min(width / wanted.width, area_height / wanted.height)
        size = (round(wanted.width * scale), round(wanted.height * scale))
        left = (width - size[0]) // 2
        top = (area_height - size[1]) // 2
        part = picture.crop((left, top, left + size[0], top + size[1]))
        difference = ImageChops.difference(part, wanted.resize(size, Image.LANCZOS))
        best = min(best, sum(ImageStat.Stat(difference).mean) / 3)
    return best


LIKE = 12.0


def await_photo(desktop, window, photo):
    """Waits until the window shows that photo."""
    return await_true(
        lambda: likeness(desktop.picture(window), photo) < LIKE, what=f"the photo {photo.name}"
    )


@pytest.fixture
def kintar(desktop):
    return desktop.client().create("objKintar")


def test_an_event_shows_the_photo_of_the_person(desktop, site, kintar):
    for name_id in people_with_photos(site, 3):
        someone = person(site, name_id)
        show(kintar, someone)
        window = desktop.await_window(".*" + someone["FName"])
        await_photo(desktop, window, photo_path(site, name_id))
        assert desktop.title(window) == title_of(someone)


def test_a_person_without_a_photo_shows_none_and_not_the_one_before(desktop, site, kintar):
    first = people_with_photos(site, 1)[0]
    show(kintar, person(site, first))
    window = desktop.await_window(".*" + person(site, first)["FName"])
    await_photo(desktop, window, photo_path(site, first))
    ((without,), *_) = rows(
        site, "SELECT ID FROM Names WHERE ID NOT IN (SELECT NameID FROM Images) ORDER BY ID"
    )
    show(kintar, person(site, without))
    desktop.await_window(".*" + person(site, without)["FName"])
    await_true(
        lambda: likeness(desktop.picture(window), photo_path(site, first)) > 2 * LIKE,
        what="the earlier photo to be gone",
    )


def test_the_window_never_takes_the_keyboard(desktop, site, kintar):
    foreign = ForeignWindow(desktop)
    try:
        for name_id in people_with_photos(site, 2):
            show(kintar, person(site, name_id))
            window = desktop.await_window(".*" + person(site, name_id)["FName"])
            await_photo(desktop, window, photo_path(site, name_id))
            assert foreign.has_focus()
            foreign.keys_received()
            desktop.type("abc")
            await_true(lambda: foreign.keys_received() >= 3, what="the keys at the other window")
        left, top, width, height = desktop.geometry(window)
        desktop.click(left + width // 2, top + height - 10)
        assert foreign.has_focus(), "not even a click in the window takes the keyboard"
    finally:
        foreign.close()


def test_the_window_rises_and_is_an_ordinary_one_again(desktop, site, kintar):
    someone = person(site, people_with_photos(site, 1)[0])
    show(kintar, someone)
    window = desktop.await_window(".*" + someone["FName"])
    manager = WindowManager(desktop)
    left, top, _, _ = desktop.geometry(window)
    foreign = ForeignWindow(desktop, geometry=(left + 10, top + 10, 300, 300))
    try:

        def raised():
            # Again and again: the display may be about to put its window in front once more.
            desktop.run("xdotool", "windowraise", str(foreign.window.id))
            return manager.stacking()[-1] == foreign.window.id

        await_true(raised, what="the other on top")
        show(kintar, someone)
        await_true(lambda: manager.stacking()[-1] == window, what="the photo window on top")
        await_true(
            lambda: "_NET_WM_STATE_ABOVE" not in manager.states(window), what="an ordinary window"
        )
        assert manager.stacking()[-1] == window
        assert desktop.geometry(window)[:2] == (left, top)
    finally:
        foreign.close()
        manager.close()


def test_commands_appear_for_an_operator_with_the_right_only(desktop, site, kintar, accessible):
    someone = person(site, people_with_photos(site, 1)[0])
    show(kintar, someone, operator=NO_RIGHTS_OPERATOR)
    desktop.await_window(".*" + someone["FName"])
    accessible.double_click("Label_1")
    time.sleep(0.3)  # nothing is to happen: there is nothing to wait for
    assert not accessible.is_showing("lblEnable")
    show(kintar, someone, operator=FULL_RIGHTS_OPERATOR)
    await_true(lambda: accessible.text("Label_2") == "Main door  Head Office", what="the event")
    accessible.double_click("Label_2")
    await_true(lambda: accessible.is_showing("lblEnable"), what="Enable Card")
    assert accessible.is_showing("lblDisAble")


def test_disabling_a_card_drops_the_command_for_the_person_shown(
    make_desktop, site, make_accessible
):
    desktop = make_desktop(
        environment={
            "KINTAR3_SERVER": clocked("@2012-03-14 17:05:00", LC_ALL="en_US.UTF-8")
        }
    )
    accessible = make_accessible(desktop)
    kintar = desktop.client().create("objKintar")
    someone = person(site, people_with_photos(site, 1)[0])
    show(kintar, someone, code="0012345")
    desktop.await_window(".*" + someone["FName"])
    await_true(lambda: accessible.text("Label_2"), what="the event")
    accessible.double_click("Label_1")
    await_true(lambda: accessible.is_showing("lblDisAble"), what="Disable Card")
    accessible.click("lblDisAble")
    dropped = site / "Data" / "^IMP1.txt"
    await_true(dropped.exists, what="the command")
    content = dropped.read_bytes()
    expected = (
        f"I L{someone['LocGrp']} NameID ^{someone['ID']}^^^\r\n"
        "T Cards\r\n"
        "F Code ^0012345^^^\r\n"
        "F StopDate ^3/14/2012  17:05:"
    ).encode()
    assert content.startswith(expected)
    assert content[len(expected) + 2 :] == b"^^^\r\nW\r\n"
    assert (site / "Errors" / "KintrAscii.txt").read_bytes() == content
    await_true(lambda: not accessible.is_showing("lblDisAble"), what="the commands to go")


def test_the_window_keeps_its_place_between_runs(desktop, site, accessible):
    client = desktop.client()
    kintar = client.create("objKintar")
    someone = person(site, people_with_photos(site, 1)[0])
    show(kintar, someone)
    window = desktop.await_window(".*" + someone["FName"])
    opened = accessible.place("lblName")
    desktop.run("xdotool", "windowmove", "--sync", str(window), "400", "300")
    desktop.run("xdotool", "windowsize", "--sync", str(window), "320", "420")
    placed = await_true(
        lambda: desktop.geometry(window) if desktop.geometry(window)[2] == 320 else None
    )
    await_true(lambda: accessible.place("lblName") != opened, what="the program's word of it")
    for _ in range(3):
        client.release(kintar)
        desktop.await_no_window(".*" + someone["FName"])
        kintar = client.create("objKintar")
        show(kintar, someone)
        window = desktop.await_window(".*" + someone["FName"])
        await_true(lambda: desktop.geometry(window) == placed, what="the place it had")


def test_a_saved_place_outside_the_screen_comes_back_on_it(make_desktop, site):
    desktop = make_desktop(screen="800x600x24")
    settings = desktop.environment["XDG_CONFIG_HOME"]
    client = desktop.client()
    kintar = client.create("objKintar")
    someone = person(site, people_with_photos(site, 1)[0])
    show(kintar, someone)
    window = desktop.await_window(".*" + someone["FName"])
    client.release(kintar)
    desktop.await_no_window(".*" + someone["FName"])
    files = [os.path.join(root, name) for root, _, names in os.walk(settings) for name in names]
    placements = [path for path in files if "Left" in open(path, encoding="utf-8").read()]
    assert placements, "the placement was saved"
    text = open(placements[0], encoding="utf-8").read()
    lines = [
        line.split("=")[0] + "=99999999" if line.split("=")[0].endswith(("Left", "Top")) else line
        for line in text.splitlines()
    ]
    with open(placements[0], "w", encoding="utf-8") as file:
        file.write("\n".join(lines) + "\n")
    kintar = client.create("objKintar")
    show(kintar, someone)
    window = desktop.await_window(".*" + someone["FName"])
    left, top, width, height = desktop.geometry(window)
    assert left >= 0 and top >= 0 and left + width <= 800 and top + height <= 600


def test_an_event_shows_again_after_the_operator_closed_the_window(desktop, site, kintar):
    someone = person(site, people_with_photos(site, 1)[0])
    show(kintar, someone)
    window = desktop.await_window(".*" + someone["FName"])
    manager = WindowManager(desktop)
    manager.close_window(window)
    desktop.await_no_window(".*" + someone["FName"])
    show(kintar, someone)
    window = desktop.await_window(".*" + someone["FName"])
    await_photo(desktop, window, photo_path(site, someone["ID"]))
    manager.close()


def test_a_client_that_dies_takes_its_window_with_it(desktop, site):
    someone = person(site, people_with_photos(site, 1)[0])
    process = desktop.start(
        "kintarctl", "photo", "--id", str(someone["ID"]), "--locgrp", str(someone["LocGrp"]),
        "--lname", someone["LName"], "--fname", someone["FName"],
    )  # fmt: skip
    desktop.await_window(".*" + someone["FName"])
    process.kill()
    process.wait()
    desktop.await_no_window(".*" + someone["FName"])
    assert desktop.server_runs()


@pytest.mark.parametrize("hostile", ["huge_iTXt_chunk.png", "huge_sPLT_chunk.png"])
def test_a_hostile_photo_stops_nothing(desktop, site, kintar, hostile):
    bad, good = people_with_photos(site, 2)
    source = os.path.join(os.path.dirname(__file__), "..", "data", "hostile-photos", hostile)
    shutil.copy(source, photo_path(site, bad))
    show(kintar, person(site, bad))
    window = desktop.await_window(".*" + person(site, bad)["FName"])
    show(kintar, person(site, good))
    desktop.await_window(".*" + person(site, good)["FName"])
    await_photo(desktop, window, photo_path(site, good))
    show(kintar, person(site, bad))
    desktop.await_window(".*" + person(site, bad)["FName"])
    await_true(
        lambda: likeness(desktop.picture(window), photo_path(site, good)) > 2 * LIKE,
        what="the other photo to be gone",
    )


def test_an_unreadable_date_is_an_error_that_says_so(kintar):
    with pytest.raises(dbus.DBusException) as raised:
        kintar.set("DateTime", "half past five")
    assert raised.value.get_dbus_name() == "net.tarnholm.Kintar3.Error.RunTime"
    assert raised.value.get_dbus_message() == "Run-time error '13': Type mismatch"
