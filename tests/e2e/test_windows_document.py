"""docs/windows.md is right for those who read windows over the accessibility bus."""

import os
import re

import dbus
import pytest
from desktop import TOP, await_true


def documented_controls(form):
    """Name, role and what is shown at the start, of each control on the bus."""
    with open(os.path.join(TOP, "docs", "windows.md"), encoding="utf-8") as document:
        section = document.read().split(f"\n## {form}\n")[1].split("\n## ")[0]
    rows = re.findall(r"^\| `(\w+)` \|[^|]*\| ([^|]+) \|.*\| ([^|]+) \|$", section, re.MULTILINE)
    assert rows, f"docs/windows.md has no controls of {form}"
    return rows


def open_photo(client):
    kintar = client.create("objKintar")
    kintar.set("LocGrp", dbus.Int32(1))
    kintar.set("LName", "Byron")
    kintar.set("FName", "Ada")
    kintar.set("ID", dbus.Int32(1))
    return "Byron, Ada"


def open_alarm(client):
    alarm = client.create("objAlarmPopUp")
    alarm.set("LocName", "Harbour")
    alarm.set("EventString", "Door forced open")
    return "Alarm  Harbour"


def open_name_search(client):
    search = client.create("objNameSearch")
    search.set("LocName", "North")
    search.set("NameSelMode", dbus.Int16(1))
    search.set("LocGrp", dbus.Int32(1))
    return "North:  Search Names"


def open_overrides(client):
    editor = client.create("objOverride")
    for member, value in [
        ("PointType", dbus.Int16(0)),
        ("PointName", "Dock door"),
        ("OprID", dbus.Int32(1)),
        ("SecureOpt", True),
        ("OpenOpt", True),
        ("PointID", dbus.Int32(101)),
    ]:
        editor.set(member, value)
    return "Scheduled Override.*"


@pytest.mark.parametrize(
    "form, opened, hidden_by_mode",
    [
        ("frmKintar", open_photo, set()),
        ("frmAlarmPopUp", open_alarm, set()),
        ("frmNameSearch", open_name_search, {"cmdInOut"}),
    ],
)
def test_every_control_is_found_as_the_document_says(
    desktop, accessible, form, opened, hidden_by_mode
):
    client = desktop.client()
    title = opened(client)
    desktop.await_window(re.escape(title))
    await_true(
        lambda: accessible.ask("Label_1", window=title)["found"], what="the controls on the bus"
    )
    for name, role, start in documented_controls(form):
        found = accessible.ask(name, window=title)
        assert found["found"], name
        assert found["role"] == role, name
        assert found["showing"] == (start == "shown" and name not in hidden_by_mode), name


def assert_roles(accessible, form, title):
    for name, role, _ in documented_controls(form):
        if role != "page tab list":  # goes by its pages, as the document says
            found = accessible.ask(name, window=title)
            assert found["found"] and found["role"] == role, name


def test_the_roles_of_the_override_editor_are_as_the_document_says(desktop, accessible):
    client = desktop.client()
    title = desktop.title(desktop.await_window(open_overrides(client)))
    await_true(lambda: accessible.ask("Slider1", window=title)["found"], what="the editor")
    assert_roles(accessible, "frmOvrSchedule", title)


def test_the_roles_of_the_criteria_and_of_the_board_are_as_the_document_says(desktop, accessible):
    search = desktop.client().create("objNameSearch")
    search.set("LocGrp", dbus.Int32(1))
    accessible.press("Label_0")
    title = "Select Name List Criteria"
    desktop.await_window(title)
    await_true(lambda: accessible.ask("Text_3", window=title)["found"], what="the criteria")
    assert_roles(accessible, "frmSelName", title)
    assert accessible.ask("Search Cards", window=title)["role"] == "page tab"
    accessible.press("cmdSearch")
    await_true(lambda: accessible.ask("cmdInOut").get("enabled"), what="the names")
    accessible.press("cmdInOut")
    title = "In / Out Status"
    desktop.await_window(title)
    await_true(lambda: accessible.ask("lvNames", window=title)["found"], what="the board")
    assert_roles(accessible, "frmInOut", title)
