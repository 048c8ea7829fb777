"""A display on which nobody manages windows, as on a kiosk: everything is usable all the same."""

import dbus
import pytest
from card_events import people_with_photos, person, show, title_of
from desktop import ForeignWindow, await_true
from Xlib import display


@pytest.fixture
def desktop(make_desktop):
    return make_desktop(environment={"KINTAR3_MANAGER": "none"})


def stacking(desktop):
    """The windows of the display, from the lowest to the highest."""
    connection = display.Display(desktop.environment["DISPLAY"])
    try:
        return [child.id for child in connection.screen().root.query_tree().children]
    finally:
        connection.close()


@pytest.fixture
def foreign(desktop):
    window = ForeignWindow(desktop, geometry=(0, 0, 600, 500))
    yield window
    window.close()


def test_the_photo_rises_above_other_windows_and_leaves_them_the_keyboard(desktop, site, foreign):
    kintar = desktop.client().create("objKintar")
    for who in people_with_photos(site, 2):
        someone = person(site, who)
        desktop.run("xdotool", "windowraise", str(foreign.window.id))
        show(kintar, someone)
        photo = desktop.await_window(title_of(someone))

        def in_front():
            order = stacking(desktop)
            return order.index(photo) > order.index(foreign.window.id)

        await_true(in_front, what="the photo in front")
        assert foreign.has_focus()


def test_the_alarm_leaves_the_keyboard_where_it_is_and_hands_it_to_the_workstation(
    desktop, foreign, accessible
):
    other = ForeignWindow(desktop, title="Other", geometry=(700, 600, 200, 200))
    try:
        alarm = desktop.client().create("objAlarmPopUp")
        alarm.set("WsHandle", dbus.Int32(foreign.window.id))
        alarm.set("EventString", "Door forced open")
        desktop.await_window("Alarm.*")
        assert other.has_focus()
        accessible.press("cmdSwitch")
        await_true(foreign.has_focus, what="the keyboard at the workstation's window")
        assert stacking(desktop)[-1] == foreign.window.id
        desktop.await_no_window("Alarm.*")
    finally:
        other.close()


def test_dialogs_get_the_keyboard(desktop, foreign, accessible):
    search = desktop.client().create("objNameSearch")
    search.set("LocGrp", dbus.Int32(1))
    names = desktop.await_window(".*Search Names")
    await_true(lambda: desktop.focused_window() == names, what="the keyboard at the name search")
    desktop.type("l")
    await_true(lambda: accessible.text("Text_0") == "l", what="the letter")
    accessible.press("Label_0")
    criteria = desktop.await_window("Select Name List Criteria")
    await_true(lambda: desktop.focused_window() == criteria, what="the keyboard at the criteria")
    desktop.type("mo")
    await_true(lambda: accessible.text("Text_3") == "mo", what="the letters")


def test_the_start_up_message_can_be_answered_by_keyboard(make_desktop, tmp_path):
    desktop = make_desktop(tmp_path, environment={"KINTAR3_MANAGER": "none"})
    creating = desktop.start("kintarctl", "raw", stdin=-1, stdout=-1)
    creating.stdin.write("create objKintar\n")
    creating.stdin.flush()
    box = desktop.await_window("Kintar3")
    await_true(lambda: desktop.focused_window() == box, what="the keyboard at the box")
    desktop.run("xdotool", "key", "Return")
    assert creating.stdout.readline().endswith("/objKintar/1\n")
    creating.stdin.close()
    assert creating.wait(timeout=60) == 0
