"""The override editor: opened over the bus, driven as an operator does, read back from the site."""

import os
import signal
import time

import dbus
import pytest
from dbus.mainloop.glib import DBusGMainLoop
from clock import clocked
from desktop import Instance, WindowManager, await_true
from gi.repository import GLib
from site_database import change, is_whole, open_database, rows

# Saturday in Chicago; on the next morning the clocks change in Lisbon.
NOW = "2026-03-28 10:00:00"
WORKSTATION_ZONE = "America/Chicago"

DOOR = 901
INPUT = 902
LOCATION = 91


def server_at(now, zone=WORKSTATION_ZONE):
    """A server whose clock starts at that local time and runs on."""
    program = os.path.join(os.path.abspath(os.environ["KINTAR3_BIN"]), "kintar3")
    return {"KINTAR3_SERVER": clocked("@" + now, program, TZ=zone, LC_ALL="C.UTF-8")}


@pytest.fixture
def site(site):
    """A site with a door and an input in Lisbon and no schedules but the door's three."""
    with open_database(site) as database:
        database.execute("DELETE FROM OvrSchedule")
        database.execute(
            "INSERT INTO Loc (Loc, LocGrp, Name, TimeZone, DST) VALUES (?, 1, 'Lisbon', ?, -1)",
            (LOCATION, "GMT Standard Time"),
        )
        for point in (DOOR, INPUT):
            database.execute("INSERT INTO IO (ID, Loc) VALUES (?, ?)", (point, LOCATION))
    return site


def store_three(site):
    with open_database(site) as database:
        for key, day in ((1, 10), (2, 11), (3, 12)):
            database.execute(
                "INSERT INTO OvrSchedule (ID, PointID, PointType, StartCmd, StopCmd, StartDate,"
                " StopDate, Opr, OprID, Status) VALUES (?, ?, 0, 1, 2, ?, ?, 'Ann', 1, 1)",
                (key, DOOR, f"2026-04-{day} 09:00:00", f"2026-04-{day} 10:00:00"),
            )


def schedules(site):
    return rows(
        site,
        "SELECT ID, PointID, PointType, StartCmd, StopCmd, StartDate, StopDate, Opr, OprID,"
        " Status FROM OvrSchedule ORDER BY ID",
    )


class Editor:
    """The window of one client, and what an operator does with it."""

    def __init__(self, desktop, accessible, client=None):
        self.desktop = desktop
        self.accessible = accessible
        self.facade = (client or desktop.client()).create("objOverride")

    def open(self, point=DOOR, point_type=0, options=("Secure", "Open", "TZ")):
        self.facade.set("PointType", dbus.Int16(point_type))
        self.facade.set("PointName", "Dock door")
        self.facade.set("LocName", "Lisbon")
        self.facade.set("OprName", "Ann")
        self.facade.set("OprID", dbus.Int32(1))
        for option in ("Secure", "Open", "TZ", "Arm", "ByPass"):
            self.facade.set(f"{option}Opt", dbus.Boolean(option in options))
        self.facade.set("PointID", dbus.Int32(point))
        self.window = self.desktop.await_window(".*Scheduled Override.*")
        self.desktop.run("xdotool", "windowactivate", "--sync", str(self.window))
        self.accessible.await_control("cmdOK")
        return self

    def press(self, control):
        assert self.accessible.await_control(control)["enabled"], control
        self.accessible.click(control)

    def keys(self, *keys):
        self.desktop.run("xdotool", "key", "--delay", "8", *keys)

    def focus(self, control):
        self.accessible.ask(control, focus=True)
        await_true(lambda: self.accessible.ask(control)["focused"], what=f"focus on {control}")

    def set_slider(self, control, quarter):
        self.focus(control)
        self.keys("Home", *["Right"] * quarter)

    def set_date(self, control, text):
        """By the arrow keys, the month first, within one year."""
        self.focus(control)
        month, day, _ = (int(part) for part in self.text(control).split("/"))
        wanted_month, wanted_day, _ = (int(part) for part in text.split("/"))

        def steps(count):
            return ["Up" if count > 0 else "Down"] * abs(count)

        self.keys("Home", *steps(wanted_month - month), "ctrl+Right", *steps(wanted_day - day))
        self.await_text(control, text)

    def text(self, control):
        return self.accessible.text(control)

    def await_text(self, control, text):
        await_true(lambda: self.text(control) == text, what=f"{control} saying {text}")

    def await_title(self, title):
        await_true(lambda: self.desktop.title(self.window) == title, what=f"the title {title}")

    def await_closed(self):
        self.desktop.await_no_window(".*Scheduled Override.*")
        await_true(lambda: bool(self.facade.get("Done")), what="Done")

    def choose_tab(self, name):
        left, top, width, height = self.accessible.ask(name)["extents"]
        self.desktop.click(left + width // 2, top + height // 2)


@pytest.fixture
def lisbon(make_desktop, make_accessible):
    desktop = make_desktop(environment=server_at(NOW))
    return Editor(desktop, make_accessible(desktop))


def test_a_delivery_in_lisbon_on_the_morning_when_the_clocks_change(lisbon, site):
    editor = lisbon.open()
    editor.await_text(
        "lblZone",
        "Times are in GMT Standard Time (UTC+00:00 now), 5 h ahead of this workstation.",
    )
    editor.set_date("ssdStartDate", "3/29/2026")
    editor.set_date("ssdStopDate", "3/29/2026")
    editor.set_slider("Slider1", 24)
    editor.set_slider("Slider2", 32)
    editor.await_text("Label_5", "6:00:00 AM")
    editor.await_text("Label_6", "8:00:00 AM")
    editor.press("opt2")
    editor.press("opt6")
    editor.choose_tab("Additional Days")
    await_true(lambda: editor.accessible.is_showing("cmdAdd2List"), what="the second tab")
    for start, stop in (("3/28/2026", "3/28/2026"), ("3/31/2026", "3/30/2026")):
        editor.set_date("dtMultiStart", start)
        editor.set_date("dtMultiStop", stop)
        editor.press("cmdAdd2List")
    editor.press("cmdOK")
    editor.await_closed()
    found = schedules(site)
    assert [row[1:7] for row in found] == [
        # 06:00 in Lisbon, an hour after the change, is 05:00 UTC.
        (DOOR, 0, 1, 2, "2026-03-29 05:00:00", "2026-03-29 07:00:00"),
        # The day before, 06:00 still was 06:00 UTC.
        (DOOR, 0, 1, 2, "2026-03-28 06:00:00", "2026-03-28 08:00:00"),
    ], "the day that stops before it starts is dropped"
    for row in found:
        assert row[7].startswith("Ann  3/28/2026 10:0")
        assert row[8:] == (1, 1)


def test_a_new_schedule_starts_in_the_locations_future(lisbon):
    editor = lisbon.open()
    # 10:00 in Chicago is 15:00 in Lisbon.
    assert editor.text("Label_5") == "3:15:00 PM"
    editor.set_slider("Slider1", 0)
    editor.await_text("Label_5", "3:15:00 PM")
    editor.set_date("ssdStartDate", "4/1/2026")
    editor.set_slider("Slider1", 3)
    editor.await_text("Label_5", "12:45:00 AM")
    editor.focus("ssdStartDate")
    editor.keys("Home", "Down", "Tab")  # the first of March
    editor.await_text("ssdStartDate", "3/28/2026")
    editor.await_text("Label_5", "3:15:00 PM")


def test_a_stop_before_the_start_and_a_missing_command_show_the_error(lisbon, site):
    editor = lisbon.open(options=("Secure", "Arm"))
    editor.press("cmdOK")
    editor.await_text("Label_8", "Stop Date cannot be less than Start Date !!")
    await_true(lambda: editor.accessible.ask("cmdErrOK")["focused"], what="focus on OK")
    for button in ("cmdNext", "cmdPrevious", "cmdOK", "cmdCancel"):
        assert not editor.accessible.ask(button)["enabled"], button
    assert not editor.accessible.is_showing("Slider1")
    editor.keys("Return")
    await_true(lambda: editor.accessible.ask("Slider2")["focused"], what="focus on Slider2")
    editor.keys("Right")
    editor.press("cmdOK")
    editor.await_text("Label_8", "Please choose a start command and a stop command.")
    assert schedules(site) == []
    editor.press("cmdErrOK")
    editor.press("opt1")
    editor.press("opt6")
    editor.press("cmdOK")
    editor.await_closed()
    assert [row[3:5] for row in schedules(site)] == [(2, 2)]


def test_browsing_to_both_ends_and_deleting_in_the_middle(lisbon, site):
    store_three(site)
    editor = lisbon.open()
    editor.await_title("Scheduled Override   New")
    for title in (
        "1 of 3   Scheduled Override",
        "2 of 3   Scheduled Override",
        "3 of 3   Scheduled Override",
        "Scheduled Override   New",
    ):
        editor.keys("alt+n")
        editor.await_title(title)
    for title in (
        "3 of 3   Scheduled Override",
        "2 of 3   Scheduled Override",
        "1 of 3   Scheduled Override",
        "Scheduled Override   New",
    ):
        editor.keys("alt+p")
        editor.await_title(title)
    editor.keys("alt+n")
    editor.await_title("1 of 3   Scheduled Override")
    editor.keys("alt+n")
    editor.await_title("2 of 3   Scheduled Override")
    assert editor.text("Label_5") == "10:00:00 AM", "09:00 UTC in Lisbon's summer"
    editor.press("cmdDelete")
    editor.await_title("1 of 2   Scheduled Override")
    assert [row[0] for row in schedules(site)] == [1, 3]
    editor.press("cmdCancel")
    editor.await_closed()


def test_two_operators_on_one_schedule(lisbon, site):
    store_three(site)
    editor = lisbon.open()
    editor.keys("alt+n")
    editor.await_title("1 of 3   Scheduled Override")
    change(site, "DELETE FROM OvrSchedule WHERE ID IN (1, 2)")
    editor.press("cmdOK")
    editor.await_closed()
    assert [row[0] for row in schedules(site)] == [3], "the row that has gone stays gone"
    editor.open()
    editor.keys("alt+n")
    editor.await_title("1 of 1   Scheduled Override")
    change(site, "DELETE FROM OvrSchedule")
    editor.keys("alt+p")
    editor.await_text("lblNotice", "This schedule has been deleted meanwhile: OK saves a new one.")
    editor.press("cmdDelete")
    editor.await_title("Scheduled Override   New")


def close_by_ok(editor):
    editor.set_slider("Slider2", 95)
    editor.press("cmdOK")


def close_by_cancel(editor):
    editor.press("cmdCancel")


def close_by_escape(editor):
    editor.keys("Escape")


def close_by_title_bar(editor):
    manager = WindowManager(editor.desktop)
    manager.close_window(editor.window)
    manager.close()


def test_done_is_told_however_the_window_closes(make_desktop, make_accessible):
    desktop = make_desktop(environment=server_at(NOW))
    bus = dbus.bus.BusConnection(desktop.address, mainloop=DBusGMainLoop())
    told = []
    bus.add_signal_receiver(
        lambda interface, changed, gone: told.append(bool(changed["Done"])),
        signal_name="PropertiesChanged",
        dbus_interface="org.freedesktop.DBus.Properties",
    )

    class Listening:
        def create(self, name):
            root = bus.get_object("net.tarnholm.Kintar3", "/net/tarnholm/Kintar3", introspect=False)
            path = root.CreateObject(name, dbus_interface="net.tarnholm.Kintar3.Server")
            return Instance(self, path)

    listening = Listening()
    listening.bus = bus
    editor = Editor(desktop, make_accessible(desktop), listening)

    def hear(wanted):
        def heard():
            while GLib.MainContext.default().iteration(False):
                pass
            return wanted in told

        await_true(heard, what=f"Done {wanted}")
        told.clear()

    for close in (close_by_ok, close_by_cancel, close_by_escape, close_by_title_bar):
        editor.open()
        hear(False)
        close(editor)
        hear(True)
        editor.await_closed()
    bus.close()


def test_ending_the_object_closes_its_window(lisbon):
    editor = lisbon.open()
    client = editor.desktop.client()
    other = client.create("objOverride")
    client.release(other)
    editor.desktop.await_no_window(".*Scheduled Override.*")
    assert bool(editor.facade.get("Done"))


def test_a_kill_leaves_the_row_whole_or_absent(make_desktop, site, make_accessible):
    desktop = make_desktop(environment=server_at(NOW))
    accessible = make_accessible(desktop)
    before = 0
    for wait in (0.0, 0.002, 0.01, 0.05):
        editor = Editor(desktop, accessible).open()
        editor.set_slider("Slider2", 95)
        server = desktop.server_pid()
        editor.keys("alt+o")
        time.sleep(wait)  # where in its work the server is killed: anywhere
        try:
            os.kill(server, signal.SIGKILL)
        except ProcessLookupError:
            pass
        await_true(lambda: not desktop.server_runs(), what="the server's end")
        found = schedules(site)
        assert before <= len(found) <= before + 1
        assert all(value is not None for row in found for value in row)
        before = len(found)
        assert is_whole(site)


def test_everything_can_be_reached_by_the_keyboard(lisbon):
    editor = lisbon.open(point=INPUT, point_type=1, options=("Secure", "Open", "TZ", "Arm", "ByPass"))
    controls = [
        "Lisbon:  Dock door", "opt4", "ssdStartDate", "Slider1", "opt8", "ssdStopDate", "Slider2",
        "cmdDelete", "cmdPrevious", "cmdNext", "cmdCancel", "cmdOK",
    ]  # fmt: skip
    reached = set()
    editor.focus("Slider1")
    for _ in range(len(controls) + 4):
        reached |= {name for name in controls if editor.accessible.ask(name).get("focused")}
        editor.keys("Tab")
    assert reached == set(controls)
    for name in controls:
        assert editor.accessible.ask(name)["name"], f"{name} has an accessible name"


def test_a_door_offers_no_arming_and_an_input_does(lisbon):
    every = ("Secure", "Open", "TZ", "Arm", "ByPass")
    editor = lisbon.open(options=every)
    for option in ("opt4", "opt5", "opt9", "opt10"):
        assert not editor.accessible.is_showing(option), option
    editor.press("cmdCancel")
    editor.await_closed()
    editor.open(point=INPUT, point_type=1, options=every)
    for option in ("opt4", "opt5", "opt9", "opt10"):
        assert editor.accessible.is_showing(option), option
    assert editor.accessible.ask("opt4")["checked"]


def test_the_record_is_a_class_of_its_own(lisbon, site):
    store_three(site)
    client = lisbon.desktop.client()
    record = client.create("objOvrSchedule")
    record.set("PointID", dbus.Int32(DOOR))
    record.set("PointType", dbus.Int16(0))
    assert not record.call("Create", dbus.Int32(2))
    assert record.get("StartDate") == "2026-04-11T10:00:00"
    assert record.get("LocTimeDiff") == 0
    assert record.get("SysTimeDiff") == -300
    record.set("StopDate", "2026-04-11T12:30:00")
    record.set("Opr", "Ann's")
    assert record.call("Save")
    assert record.get("StopDate") == "2026-04-11T11:30:00", "UTC after it is saved"
    assert schedules(site)[1][5:8] == ("2026-04-11 09:00:00", "2026-04-11 11:30:00", "Ann's")
    assert not record.call("Delete")
    assert [row[0] for row in schedules(site)] == [1, 3]


def test_an_operator_text_with_quotes_survives_the_round_trip(lisbon, site):
    client = lisbon.desktop.client()
    written = client.create("objOvrSchedule")
    written.set("PointID", dbus.Int32(DOOR))
    assert not written.call("Create", dbus.Int32(0))
    text = """O'Brien "Gate" ''2'' [x] #7# \\"""
    written.set("Opr", text)
    assert written.call("Save")
    (row,) = schedules(site)
    assert row[7] == text
    read = client.create("objOvrSchedule")
    assert not read.call("Create", dbus.Int32(row[0]))
    assert not read.get("IsAdd")
    assert read.get("Opr") == text


def test_kintarctl_opens_the_editor_and_returns_when_it_has_closed(lisbon, site):
    command = lisbon.desktop.start(
        "kintarctl", "overrides", "--point", str(INPUT), "--type", "1", "--name", "Dock sensor",
        "--loc", "Lisbon", "--opr", "Ann", "--oprid", "1", "--commands", "arm,bypass",
    )  # fmt: skip
    lisbon.window = lisbon.desktop.await_window(".*Scheduled Override.*")
    lisbon.desktop.run("xdotool", "windowactivate", "--sync", str(lisbon.window))
    lisbon.accessible.await_control("Lisbon:  Dock sensor")
    assert lisbon.accessible.is_showing("opt4")
    assert not lisbon.accessible.is_showing("opt2")
    assert command.poll() is None
    lisbon.set_slider("Slider2", 95)
    lisbon.press("opt10")
    lisbon.press("cmdOK")
    assert command.wait(timeout=60) == 0
    assert [row[1:5] for row in schedules(site)] == [(INPUT, 1, 4, 5)]


def test_kintarctl_says_what_is_wrong_and_ends_after_its_time(lisbon):
    wrong = lisbon.desktop.run("kintarctl", "overrides", "--point", "1", "--commands", "explode",
                               check=False)  # fmt: skip
    assert wrong.returncode == 2
    assert "explode" in wrong.stderr
    timed = lisbon.desktop.run("kintarctl", "overrides", "--point", str(DOOR), "--for", "0.5")
    assert timed.returncode == 0
    lisbon.desktop.await_no_window(".*Scheduled Override.*")
