"""The name search, opened over the bus and used through the accessibility bus."""

import time

import dbus
import dbus.mainloop.glib
import pytest
from desktop import BUS_NAME, PROPERTIES, Client, WindowManager, await_true
from gi.repository import GLib
from site_database import change, open_database, rows, settle

FULL_RIGHTS_OPERATOR = 1
NO_RIGHTS_OPERATOR = 6
GROUP = 1
TITLE = "HQ:  Search Names"
# Conditions of a row `n` of Names: plain letters in front, and nobody else's name begins so.
LATIN = "n.LName BETWEEN 'A' AND '[' AND n.LName NOT LIKE '%''%'"
ALONE = (
    "(SELECT count(*) FROM Names m WHERE m.LocGrp = n.LocGrp"
    " AND lower(m.LName) LIKE lower(n.LName) || '%') = 1"
)


class WaitingClient(Client):
    """A client that waits for signals in place of polling."""

    def __init__(self, address):
        self.bus = dbus.bus.BusConnection(
            address, mainloop=dbus.mainloop.glib.DBusGMainLoop(set_as_default=False)
        )
        self._root = None
        self.changes = []
        self.ended = []
        self.bus.add_signal_receiver(
            lambda interface, values, gone, path: self.changes.append((str(path), dict(values))),
            "PropertiesChanged",
            PROPERTIES,
            path_keyword="path",
        )
        self.bus.add_signal_receiver(
            lambda request, error: self.ended.append((int(request), str(error))),
            "PrintEnded",
            f"{BUS_NAME}.objNameSearch",
        )

    def iterate(self):
        while GLib.MainContext.default().iteration(False):
            pass

    def await_closing(self, seconds=30.0):
        """Waits for the signal that the dialog has been closed."""

        def closed():
            self.iterate()
            return any(values.get("SelNameReady") for _, values in self.changes)

        await_true(closed, seconds, "SelNameReady")


@pytest.fixture
def client(desktop):
    made = WaitingClient(desktop.address)
    yield made
    made.close()


@pytest.fixture
def search(client):
    return client.create("objNameSearch")


def open_dialog(desktop, search, mode=1, group=GROUP, operator=FULL_RIGHTS_OPERATOR):
    search.set("LocName", "HQ")
    search.set("OprID", dbus.Int32(operator))
    search.set("NameSelMode", dbus.Int16(mode))
    search.set("LocGrp", dbus.Int32(group))
    return desktop.await_window(TITLE)


def names_found(accessible):
    """How many names the status line counts; waits until a search has ended."""
    words = await_true(
        lambda: (text := accessible.text("lblCount")) and "found" in text and text,
        what="the end of the search",
    )
    return 0 if words.startswith("No") else int(words.split()[0])


def find(accessible, last_name="", first_name=""):
    accessible.enter("Text_0", last_name)
    accessible.enter("Text_1", first_name)
    accessible.press("cmdSearch")
    return names_found(accessible)


def someone(site, condition="1 = 1"):
    """An ordinary person of the group with a name that only one has."""
    return rows(
        site,
        "SELECT ID, LName, FName FROM Names n WHERE LocGrp = ? AND length(LName) BETWEEN 3 AND 20"
        f" AND {LATIN} AND {ALONE} AND {condition}"
        " ORDER BY ID",
        GROUP,
    )[0]


def shown(name):
    return f"{name[1]}, {name[2]}"


def test_ok_gives_the_name_that_was_found_and_clicked(desktop, site, client, search, accessible):
    name = someone(site)
    open_dialog(desktop, search)
    assert not search.get("SelNameReady")
    assert find(accessible, name[1][:3]) >= 1
    accessible.click_item("lvList", shown(name))
    desktop.await_window(shown(name) + "  " + TITLE)
    accessible.press("cmdOK")
    client.await_closing()
    desktop.await_no_window(".*" + TITLE)
    assert search.get("SelNameReady")
    assert search.get("SelNameID") == name[0]
    assert search.get("SelName") == shown(name)


def test_an_empty_search_lists_the_whole_group(desktop, site, search, accessible):
    open_dialog(desktop, search)
    expected = rows(site, "SELECT count(*) FROM Names WHERE LocGrp = ?", GROUP)[0][0]
    assert find(accessible) == expected


def test_cancel_gives_no_name(desktop, client, search, accessible):
    open_dialog(desktop, search)
    find(accessible)
    accessible.press("cmdCancel")
    client.await_closing()
    desktop.await_no_window(TITLE)
    assert (search.get("SelNameID"), search.get("SelName")) == (0, "")
    assert search.get("SelNameReady")


def test_closing_the_window_is_cancel(desktop, client, search):
    window = open_dialog(desktop, search)
    manager = WindowManager(desktop)
    manager.close_window(window)
    manager.close()
    client.await_closing()
    desktop.await_no_window(TITLE)
    assert search.get("SelNameID") == 0


def test_the_keyboard_alone_searches_walks_and_chooses(desktop, site, client, search, accessible):
    open_dialog(desktop, search)
    await_true(lambda: accessible.ask("Text_0").get("focused"), what="the focus in the first box")
    desktop.run("xdotool", "key", "Return")
    names_found(accessible)
    await_true(lambda: accessible.ask("lvList").get("focused"), what="the focus in the list")
    desktop.run("xdotool", "key", "Down")
    title = await_true(
        lambda: next((desktop.title(w) for w in desktop.windows(".+  " + TITLE)), None),
        what="the name in the title",
    )
    desktop.run("xdotool", "key", "Return")
    client.await_closing()
    assert search.get("SelName") + "  " + TITLE == title
    assert rows(
        site, "SELECT LName || ', ' || FName FROM Names WHERE ID = ?", search.get("SelNameID")
    ) == [(search.get("SelName"),)]


def test_escape_cancels(desktop, client, search):
    open_dialog(desktop, search)
    desktop.run("xdotool", "key", "Escape")
    client.await_closing()
    assert search.get("SelNameID") == 0


def test_a_column_click_sorts_ascending_and_again_ascending(desktop, site, search, accessible):
    columns = rows(
        site, 'SELECT Caption FROM FormData WHERE FORM = \'ListNAMESEARCH\' ORDER BY "index"'
    )
    visitor = columns.index(("Visitor",))

    def visitors():
        return accessible.items("lvList")[len(columns) + visitor :: len(columns)]

    open_dialog(desktop, search)
    find(accessible)
    unsorted = visitors()
    assert "True" in unsorted and unsorted != sorted(unsorted)
    for _ in range(2):
        accessible.click_item("lvList", "Visitor")
        await_true(lambda: visitors() == sorted(unsorted), what="the ascending order")
    find(accessible)  # stays on for later searches
    await_true(lambda: visitors() == sorted(unsorted), what="the order of the next search")


def test_two_instances_see_the_same_result_and_both_are_told(desktop, site, client, search, accessible):
    other = WaitingClient(desktop.address)
    second = other.create("objNameSearch")
    name = someone(site)
    open_dialog(desktop, search)
    find(accessible, name[1])
    accessible.press("cmdOK")
    client.await_closing()
    other.await_closing()
    assert client.changes[-1][0] == search.path
    assert other.changes[-1][0] == second.path
    assert search.get("SelNameID") == second.get("SelNameID") == name[0]
    other.close()


def test_ok_with_nothing_selected_keeps_the_earlier_result(desktop, site, client, search, accessible):
    name = someone(site)
    open_dialog(desktop, search)
    find(accessible, name[1])
    accessible.press("cmdOK")
    client.await_closing()
    client.changes.clear()
    open_dialog(desktop, search)
    accessible.press("cmdOK")
    client.await_closing()  # told again, although nothing has changed
    assert (search.get("SelNameID"), search.get("SelName")) == (name[0], shown(name))


def test_a_second_group_before_the_first_was_read_opens_the_same_window(
    desktop, site, client, search, accessible
):
    name = someone(site)
    window = open_dialog(desktop, search)
    find(accessible, name[1])
    accessible.press("cmdOK")
    client.await_closing()
    assert open_dialog(desktop, search, group=2) == window
    assert search.get("SelNameReady")
    assert search.get("SelNameID") == name[0]


def test_a_group_without_a_default_image_type_is_an_error(search):
    with pytest.raises(dbus.DBusException) as raised:
        search.set("LocGrp", dbus.Int32(999))
    assert raised.value.get_dbus_name() == "net.tarnholm.Kintar3.Error.RunTime"
    assert raised.value.get_dbus_message() == (
        "Run-time error '5': Invalid procedure call or argument"
    )


def test_a_site_with_two_default_image_types_for_a_group_makes_no_object(desktop, site, client):
    change(site, "INSERT INTO ImageType (LocGrp, Num, DefaultImage) VALUES (1, 999, -1)")
    with pytest.raises(dbus.DBusException) as raised:
        client.create("objNameSearch")
    assert "Run-time error '457'" in raised.value.get_dbus_message()


def test_the_modes_have_their_widths_and_buttons(desktop, search, accessible):
    for mode, width, picking in ((0, 287, False), (-3, 287, False), (1, 321, True), (2, 321, True)):
        window = open_dialog(desktop, search, mode=mode)
        await_true(lambda: desktop.geometry(window)[2] == width, what=f"a width of {width}")
        accessible.await_control("cmdCancel")
        assert accessible.is_showing("cmdOK") == picking
        assert accessible.is_showing("cmdInOut") != picking
        assert accessible.ask("Label_0")["enabled"] == (mode != 2)


def test_guard_tour_mode_lists_each_holder_of_a_marked_card_once(desktop, site, search, accessible):
    expected = rows(
        site,
        "SELECT count(DISTINCT n.ID) FROM Names n JOIN Cards c ON c.NameID = n.ID"
        " WHERE n.LocGrp = ? AND c.GTour <> 0",
        GROUP,
    )[0][0]
    assert expected > 0
    open_dialog(desktop, search, mode=2)
    assert find(accessible) == expected


def test_nobody_found_is_said_in_words(desktop, search, accessible):
    open_dialog(desktop, search)
    assert find(accessible, "Nobody of that name") == 0
    assert accessible.text("lblCount") == "No names found."


def test_status_and_last_use_are_shown(desktop, site, search, accessible):
    name = someone(
        site,
        "(SELECT count(*) FROM Cards c JOIN LocCards l ON l.CardID = c.ID WHERE c.NameID = n.ID"
        " AND c.Status <> 0) = 1 AND EXISTS (SELECT 1 FROM Cards c JOIN LocCards l ON"
        " l.CardID = c.ID WHERE c.NameID = n.ID AND l.Inout1 = 'I')",
    )
    device = rows(
        site,
        "SELECT d.Name, l.Inout1, l.Inout2, l.Inout3, l.Inout4 FROM Cards c JOIN LocCards l ON"
        " l.CardID = c.ID JOIN Dev d ON d.Loc = l.Loc AND d.Device = l.LastDev WHERE c.NameID = ?",
        name[0],
    )[0]
    open_dialog(desktop, search)
    find(accessible, name[1])
    assert accessible.text("Label_1") == "     " + "  ".join(device[1:])
    assert accessible.text("Label_3").startswith("  ")
    assert accessible.text("Label_3").endswith(" " + device[0])


@pytest.mark.parametrize("operator", [FULL_RIGHTS_OPERATOR, NO_RIGHTS_OPERATOR])
def test_hidden_values_are_for_those_who_may(desktop, site, search, accessible, operator):
    hidden = rows(
        site,
        "SELECT n.ID, n.LName, u.UdfText FROM Names n JOIN UDF u ON u.NameID = n.ID JOIN UdfName f"
        " ON f.LocGrp = n.LocGrp AND f.UdfNum = u.UdfNum WHERE n.LocGrp = ? AND f.Hidden <> 0"
        f" AND length(u.UdfText) > 3 AND {LATIN} AND {ALONE}",
        GROUP,
    )[0]
    open_dialog(desktop, search, operator=operator)
    assert find(accessible, hidden[1]) == 1
    accessible.press("cmdUDF")
    await_true(lambda: accessible.is_showing("lvUdf"), what="the fields")
    assert (hidden[2] in accessible.items("lvUdf")) == (operator == FULL_RIGHTS_OPERATOR)
    accessible.press("cmdUDF")
    await_true(lambda: not accessible.is_showing("lvUdf"), what="the fields to go")


def test_a_web_address_reaches_the_browser_as_one_argument(
    make_desktop, site, make_accessible, tmp_path
):
    opener = tmp_path / "bin"
    opener.mkdir()
    (opener / "xdg-open").write_text(
        f"#!/bin/sh\nprintf '%s|' \"$#\" \"$@\" >>'{tmp_path}/opened'\n", encoding="utf-8"
    )
    (opener / "xdg-open").chmod(0o755)
    name = someone(site)
    change(site, "DELETE FROM UDF WHERE NameID = ?", name[0])
    for number, text in ((1, "https://example.com/$(id);x&y"), (2, "file:///etc/passwd")):
        change(
            site,
            "INSERT INTO UDF (NameID, UdfNum, UdfText, LocGrp) VALUES (?, ?, ?, 1)",
            name[0], number, text,
        )  # fmt: skip
    change(site, "UPDATE UdfName SET Hidden = 0 WHERE LocGrp = 1")
    desktop = make_desktop(
        environment={"KINTAR3_SERVER": f"env PATH='{opener}':\"$PATH\" kintar3"}
    )
    accessible = make_accessible(desktop)
    search = desktop.client().create("objNameSearch")
    open_dialog(desktop, search)
    find(accessible, name[1])
    accessible.press("cmdUDF")
    accessible.click_item("lvUdf", "file:///etc/passwd", times=2)
    await_true(
        lambda: accessible.text("lblCount") == "Only web addresses can be opened.",
        what="the refusal",
    )
    accessible.click_item("lvUdf", "https://example.com/$(id);x&y", times=2)
    opened = tmp_path / "opened"
    await_true(lambda: opened.exists() and opened.read_text(), what="the browser")
    assert opened.read_text() == "1|https://example.com/$(id);x&y|"


def test_a_print_request_is_answered_by_a_signal(client, search):
    search.call("PrintStatus")

    def ended():
        client.iterate()
        return client.ended

    await_true(ended, 30, "PrintEnded")
    assert client.ended[0][0] == 1


def test_releasing_the_object_closes_the_window(desktop, client, search):
    open_dialog(desktop, search)
    client.release(search)
    desktop.await_no_window(TITLE)


def test_the_window_keeps_its_place_between_objects(desktop, client, search, accessible):
    window = open_dialog(desktop, search)
    opened = accessible.place("cmdOK")
    desktop.run("xdotool", "windowmove", "--sync", str(window), "500", "200")
    placed = await_true(
        lambda: (found := desktop.geometry(window)[:2]) and abs(found[0] - 500) < 40 and found,
        what="the window at its new place",
    )
    await_true(lambda: accessible.place("cmdOK") != opened, what="the program's word of it")
    for _ in range(3):
        client.release(search)
        desktop.await_no_window(TITLE)
        search = client.create("objNameSearch")
        window = open_dialog(desktop, search)
        await_true(lambda: desktop.geometry(window)[:2] == placed, what="the place it had")


def test_a_client_that_dies_takes_the_dialog_with_it(desktop):
    client = Client(desktop.address)
    open_dialog(desktop, client.create("objNameSearch"))
    client.close()
    desktop.await_no_window(TITLE)


def test_a_million_rows_are_searched_while_the_bus_answers_and_stop_stops(
    desktop, site, client, search, accessible
):
    with open_database(site) as database:
        database.execute(
            "WITH RECURSIVE n(i) AS (SELECT CAST(1 AS bigint) UNION ALL SELECT i + 1 FROM n WHERE i < 1000000)"
            " INSERT INTO Names (ID, LName, FName, LocGrp, Company, Visitor, Trace)"
            " SELECT 1000000 + i, 'Name ' || (i * 7919 % 1000003), 'First', 1, 1, 0, 0 FROM n"
        )
    settle(site)
    open_dialog(desktop, search)
    accessible.press("cmdSearch")
    await_true(lambda: accessible.is_showing("cmdStop"), what="Stop")
    assert not accessible.ask("cmdSearch")["enabled"]
    start = time.monotonic()
    assert not search.get("SelNameReady")
    assert time.monotonic() - start < 5
    accessible.press("cmdStop")
    await_true(
        lambda: accessible.text("lblCount") == "The search was stopped. The list is empty.",
        60,
        "the stopped search",
    )
    assert accessible.ask("cmdSearch")["enabled"]
    assert find(accessible, "Name 1000001") >= 1


def test_the_command_line_prints_the_name_that_was_picked(desktop, site, accessible):
    name = someone(site)
    picking = desktop.start(
        "kintarctl", "pick-name", "--locgrp", str(GROUP), "--locname", "HQ", "--opr", "1",
        stdout=-1,
    )  # fmt: skip
    desktop.await_window(TITLE)
    find(accessible, name[1])
    accessible.press("cmdOK")
    printed, _ = picking.communicate(timeout=60)
    assert printed == f"{name[0]}\t{shown(name)}\n"
    assert picking.returncode == 0


def test_the_command_line_never_takes_an_earlier_choice_for_its_own(
    desktop, site, client, search, accessible
):
    name = someone(site)
    open_dialog(desktop, search)
    find(accessible, name[1])
    accessible.press("cmdOK")
    client.await_closing()
    assert search.get("SelNameReady")
    picking = desktop.start(
        "kintarctl", "pick-name", "--locgrp", str(GROUP), "--locname", "HQ", stdout=-1
    )
    desktop.await_window(TITLE)
    assert picking.poll() is None
    accessible.press("cmdCancel")
    printed, _ = picking.communicate(timeout=60)
    assert (printed, picking.returncode) == ("", 1)


def test_the_command_line_gives_up_when_its_time_is_over(desktop):
    given_up = desktop.run("kintarctl", "pick-name", "--locgrp", "1", "--for", "1", check=False)
    assert (given_up.stdout, given_up.returncode) == ("", 1)
    refused = desktop.run("kintarctl", "pick-name", "--locgrp", "999", check=False)
    assert refused.returncode == 1
    assert "Run-time error '5'" in refused.stderr
