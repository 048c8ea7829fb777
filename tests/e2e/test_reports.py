"""Printed reports, from the name search to the printer."""

import os
import re
import sqlite3
import subprocess
import threading
import time

import dbus
import pytest
from clock import clock_at, clocked
from desktop import await_true
from print_system import PrintSystem, text_of
from site_database import open_database, settle

MOMENT = "2012-03-14 17:05:00"
SERVER_AT_MOMENT = clocked(MOMENT, f"{os.environ.get('KINTAR3_BIN', '')}/kintar3")
LOCATION = 31
# name, last use, first flag, status of the card: who is in, and who is not and why.
PEOPLE = [
    ("Intime", "2012-03-12 17:05:01", "I", 1),
    ("Exactly", "2012-03-12 17:05:00", "I", 1),
    ("Toolate", "2012-03-12 17:04:59", "I", 1),
    ("Gone", "2012-03-14 12:00:00", "N", 1),
    ("Out", "2012-03-14 12:00:00", "O", 1),
    ("Disabled", "2012-03-14 12:00:00", "I", 0),
    ("O'Hara", "2012-03-14 12:00:00", "I", 1),
    ("Ŵêirdß", "2012-03-14 12:00:00", "I", 1),
]
WHO_IS_IN = ["Intime", "O'Hara", "Ŵêirdß"]


@pytest.fixture
def print_system():
    made = PrintSystem(["Front", "Gate"], default="Front")
    yield made
    made.close()


@pytest.fixture
def people_site(site):
    """A site with nobody but PEOPLE at one location, and a map that names the second queue."""
    with open_database(site) as database:
        for table in ("Names", "Cards", "LocCards", "Loc", "Dev"):
            database.execute(f"DELETE FROM {table}")
        database.execute("INSERT INTO Loc VALUES (?, 3, 'North', '', 0)", (LOCATION,))
        database.execute("INSERT INTO Dev VALUES (?, 1, 'Gate Reader')", (LOCATION,))
        for number, (name, used, flag, status) in enumerate(PEOPLE, 1):
            database.execute(
                "INSERT INTO Names VALUES (?, ?, 'Test', 3, 0, 0, 0)", (number, name)
            )
            database.execute(
                "INSERT INTO Cards VALUES (?, ?, 3, '1', ?, ?, NULL, NULL, 0, 0)",
                (number, number, f"C{number}", status),
            )
            database.execute(
                "INSERT INTO LocCards VALUES (?, ?, ?, ?, 1, ?, 'N', 'N', 'N')",
                (number, number, LOCATION, used, flag),
            )
    (site / "Data" / "InRptByLoc.txt").write_text(f"0,{LOCATION},;Gate\r\n")
    return site


def printing_desktop(make_desktop, site, print_system=None):
    environment = {"KINTAR3_SERVER": SERVER_AT_MOMENT, "TZ": "UTC", "LC_ALL": "C.UTF-8"}
    nobody = {"CUPS_SERVER": str(site / "no-such-socket")}
    environment.update(print_system.environment if print_system else nobody)
    return make_desktop(site, environment=environment)


def surnames(text):
    return sorted(set(re.findall(r"(\S+), Test", text)))


def test_who_is_in_reaches_the_printer_of_the_map(make_desktop, people_site, print_system):
    desktop = printing_desktop(make_desktop, people_site, print_system)
    search = desktop.client().create("objNameSearch")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    text = text_of(print_system.await_job("Gate"))
    assert surnames(text) == sorted(WHO_IS_IN)
    assert f"{len(WHO_IS_IN)} in all" in text
    assert "North" in text and "Gate Reader (reader 1)" in text
    assert "3/14/2012 5:05:00 PM" in text
    assert "1 d 23 h" in text and "5 h 05 min" in text
    assert print_system.jobs("Front") == []


def test_who_is_in_goes_to_the_default_printer_where_the_map_names_none(
    make_desktop, people_site, print_system
):
    (people_site / "Data" / "InRptByLoc.txt").write_text("0,31,;Elsewhere\r\n")
    desktop = printing_desktop(make_desktop, people_site, print_system)
    desktop.client().create("objNameSearch").call("PrintWhoIsIn", dbus.Int32(LOCATION))
    assert surnames(text_of(print_system.await_job("Front"))) == sorted(WHO_IS_IN)
    assert print_system.jobs("Gate") == []


def test_the_status_report_lists_every_card(make_desktop, people_site, print_system):
    desktop = printing_desktop(make_desktop, people_site, print_system)
    desktop.client().create("objNameSearch").call("PrintStatus")
    text = text_of(print_system.await_job("Front"))
    assert surnames(text) == sorted(name for name, *_ in PEOPLE)
    assert len(re.findall(r"\bdisabled\b", text)) == 1
    assert f"{len(PEOPLE)} cards of {len(PEOPLE)} names" in text


def test_requests_before_the_tick_and_while_printing(make_desktop, people_site, print_system):
    desktop = printing_desktop(make_desktop, people_site, print_system)
    search = desktop.client().create("objNameSearch")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    print_system.await_job("Gate")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    search.call("PrintStatus")
    print_system.await_job("Front")


def test_without_a_printer_nothing_is_printed_and_the_server_lives(make_desktop, people_site):
    desktop = printing_desktop(make_desktop, people_site)
    search = desktop.client().create("objNameSearch")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    search.call("PrintStatus")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    assert search.get("SelNameReady") in (True, False)
    folder = os.path.join(desktop.environment["TMPDIR"], "TarnTmp")
    assert not os.path.exists(os.path.join(folder, "InRpt.Mdb"))


def test_a_failed_build_prints_nothing_and_is_reported(make_desktop, people_site, print_system):
    (people_site / "Data" / "InRptByLoc.txt").write_text("0,31,no list,;Gate\r\n")
    desktop = printing_desktop(make_desktop, people_site, print_system)
    search = desktop.client().create("objNameSearch")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    await_true(lambda: "objInRpt/PopulateTable" in desktop.log(), what="the report")
    assert "Intime" not in desktop.log()
    search.call("PrintStatus")
    print_system.await_job("Front")
    assert print_system.jobs("Gate") == []


def test_the_builder_alone_over_the_bus(make_desktop, people_site):
    desktop = printing_desktop(make_desktop, people_site)
    client = desktop.client()
    client.create("objAlarmPopUp")  # brings the shared state up
    builder = client.create("objInRpt")
    builder.call("Create", dbus.Int32(LOCATION))
    assert builder.get("Printer") == "Gate"
    database = os.path.join(desktop.environment["TMPDIR"], "TarnTmp", "InRpt.Mdb")
    with sqlite3.connect(f"file:{database}?mode=ro", uri=True) as connection:
        names = [name for (name,) in connection.execute("SELECT Name FROM InRpt")]
        totals = connection.execute("SELECT * FROM Totals").fetchall()
    assert sorted(names) == sorted(f"{name}, Test" for name in WHO_IS_IN)
    assert totals == [(LOCATION, 1, len(WHO_IS_IN), len(WHO_IS_IN))]


def crowd(site, count):
    """Everybody of a large group has just come in."""
    with open_database(site) as database:
        numbers = range(1000, 1000 + count)
        database.executemany(
            "INSERT INTO Names VALUES (?, 'Crowd', 'One', 3, 0, 0, 0)", ((n,) for n in numbers)
        )
        database.executemany(
            "INSERT INTO Cards VALUES (?, ?, 3, '1', ?, 1, NULL, NULL, 0, 0)",
            ((n, n, f"D{n}") for n in numbers),
        )
        database.executemany(
            "INSERT INTO LocCards VALUES (?, ?, ?, '2012-03-14 12:00:00', 1, 'I', 'N', 'N', 'N')",
            ((n, n, LOCATION) for n in numbers),
        )
    settle(site)


def test_other_clients_are_served_while_a_list_is_built(make_desktop, people_site):
    crowd(people_site, 30000)
    desktop = printing_desktop(make_desktop, people_site)
    client = desktop.client()
    client.create("objAlarmPopUp")  # brings the shared state up
    builder = client.create("objInRpt")
    other = desktop.client()
    version = ("net.tarnholm.Kintar3.Server", "Version")
    properties = "org.freedesktop.DBus.Properties"
    other.root.Get(*version, dbus_interface=properties)
    built = threading.Event()

    def build():
        builder.call("Create", dbus.Int32(LOCATION))
        built.set()

    building = threading.Thread(target=build)
    building.start()
    pauses = []
    while not built.is_set():
        asked = time.monotonic()
        other.root.Get(*version, dbus_interface=properties)
        pauses.append(time.monotonic() - asked)
        time.sleep(0.005)
    building.join()
    print(f"answered {len(pauses)} times meanwhile, the slowest after {max(pauses):.3f} s")
    assert len(pauses) > 10
    database = os.path.join(desktop.environment["TMPDIR"], "TarnTmp", "InRpt.Mdb")
    with sqlite3.connect(f"file:{database}?mode=ro", uri=True) as connection:
        assert connection.execute("SELECT count(*) FROM InRpt").fetchone() == (30003,)


def test_other_clients_are_served_while_a_large_report_is_printed(
    make_desktop, people_site, print_system
):
    crowd(people_site, 30000)
    desktop = printing_desktop(make_desktop, people_site, print_system)
    client = desktop.client()
    client.create("objNameSearch").call("PrintStatus")
    pauses = []
    deadline = time.monotonic() + 120
    while not print_system.jobs("Front"):
        assert time.monotonic() < deadline, desktop.log()
        asked = time.monotonic()
        client.root.Get(
            "net.tarnholm.Kintar3.Server",
            "Version",
            dbus_interface="org.freedesktop.DBus.Properties",
        )
        pauses.append(time.monotonic() - asked)
        time.sleep(0.005)
    print(f"answered {len(pauses)} times meanwhile, the slowest after {max(pauses):.3f} s")
    assert len(pauses) > 10


def test_a_full_disk_is_reported_and_the_server_lives(
    make_desktop, people_site, print_system, tmp_path
):
    # No file of the server may become larger than 8 KB: writing fails as on a full disk.
    server = tmp_path / "server-without-room"
    server.write_text(f"trap '' XFSZ\nulimit -f 16\nexec {SERVER_AT_MOMENT}\n")
    environment = {"KINTAR3_SERVER": f"sh '{server}'", "TZ": "UTC", "LC_ALL": "C.UTF-8"}
    environment.update(print_system.environment)
    desktop = make_desktop(people_site, environment=environment)
    search = desktop.client().create("objNameSearch")
    search.call("PrintWhoIsIn", dbus.Int32(LOCATION))
    await_true(lambda: "objInRpt/MakeRptMdb" in desktop.log(), what="the list's error")
    search.call("PrintStatus")
    await_true(lambda: "frmPrnRpt/PrintRpt" in desktop.log(), what="the print-out's error")
    folder = os.path.join(desktop.environment["TMPDIR"], "TarnTmp")
    assert [name for name in os.listdir(folder) if "Mdb" in name or "pdf" in name] == []
    assert search.get("SelNameReady") in (True, False)
    assert print_system.jobs("Front") == [] and print_system.jobs("Gate") == []


def report_tool(site, *arguments, environment=None):
    return subprocess.run(
        [os.path.join(os.environ["KINTAR3_BIN"], "kintar-report")]
        + [str(argument) for argument in arguments],
        env=dict(os.environ, TZ="UTC", LC_ALL="C.UTF-8", **clock_at(MOMENT), **(environment or {})),
        capture_output=True,
        text=True,
        check=False,
        timeout=60,
    )


def test_kintar_report_writes_a_pdf_without_the_server(people_site, tmp_path):
    pdf = tmp_path / "in.pdf"
    made = report_tool(
        people_site, "who-is-in", people_site, "--loc", LOCATION, "--pdf", pdf, "--paper", "Letter"
    )
    assert made.returncode == 0, made.stderr
    assert surnames(text_of(pdf)) == sorted(WHO_IS_IN)
    size = subprocess.run(["pdfinfo", pdf], capture_output=True, text=True, check=True).stdout
    assert "612 x 792 pts" in size


def test_kintar_report_prints(people_site, print_system):
    made = report_tool(
        people_site,
        "who-is-in",
        people_site,
        "--loc",
        LOCATION,
        "--copies",
        "2",
        environment=print_system.environment,
    )
    assert made.returncode == 0, made.stderr
    job = print_system.await_job("Gate")
    assert os.path.basename(job).endswith(".2.pdf")
    assert surnames(text_of(job)) == sorted(WHO_IS_IN)
    unknown = report_tool(
        people_site,
        "status",
        people_site,
        "--printer",
        "Nowhere",
        environment=print_system.environment,
    )
    assert unknown.returncode == 1
    assert "Nowhere" in unknown.stderr


def test_kintar_report_says_what_is_wrong(people_site, tmp_path):
    cases = [
        (("who-is-in", tmp_path / "nothing", "--loc", 31, "--pdf", tmp_path / "x.pdf"), 1),
        (("who-is-in", people_site, "--loc", 999, "--pdf", tmp_path / "x.pdf"), 1),
        (("status", people_site, "--pdf", tmp_path / "no" / "folder" / "x.pdf"), 1),
        (("status", people_site, "--pdf", tmp_path / "x.pdf", "--paper", "A5"), 2),
        (("nothing",), 2),
    ]
    for arguments, status in cases:
        made = report_tool(people_site, *arguments)
        assert made.returncode == status, (arguments, made.stderr)
        assert made.stderr
    assert not (tmp_path / "x.pdf").exists()


def test_kintarctl_prints_and_returns_when_printing_has_ended(
    make_desktop, people_site, print_system
):
    desktop = printing_desktop(make_desktop, people_site, print_system)
    desktop.run("kintarctl", "who-is-in", str(LOCATION))
    assert surnames(text_of(print_system.await_job("Gate"))) == sorted(WHO_IS_IN)
    desktop.run("kintarctl", "status-report")
    print_system.await_job("Front")
    failed = desktop.run("kintarctl", "who-is-in", "999", check=False)
    assert failed.returncode == 1
    assert "who-is-in list could not be made" in failed.stderr


def test_kintarctl_says_that_there_is_no_printer(make_desktop, people_site):
    desktop = printing_desktop(make_desktop, people_site)
    failed = desktop.run("kintarctl", "status-report", check=False)
    assert failed.returncode == 1
    assert "There is no printer." in failed.stderr
