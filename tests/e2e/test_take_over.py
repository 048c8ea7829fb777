"""A standby takes over while twenty workstations save, each a server of its own with its client.

The clients save schedules without a window: the editor would save them by the same call, and twenty
pressed by hand take turns on one display. The notices that the operators get are real windows.
"""

import collections
import contextlib
import re
import subprocess
import threading
from concurrent.futures import ThreadPoolExecutor

import dbus
import pytest
from conftest import program
from database_server import DatabaseServer
from desktop import Client, Desktop, await_true
from Xlib import display

pytestmark = pytest.mark.engine("postgresql")

WORKSTATIONS = 20
FEW = 5  # changes
PATIENCE = 60  # seconds, on a machine with much else to do


class Workstation:
    """Saves one schedule after the other over a bus of its own, and keeps what it was told of each.
    Schedules are told apart by their operator's text."""

    def __init__(self, desktop, number):
        self.desktop = desktop
        self.saved = []
        self.not_saved = []
        self.number = number
        self._client = Client(desktop.address)
        self._client.create("objOverride")  # opens the site, and keeps the server
        self.server = desktop.server_pid()
        self._error = None
        self._ended = threading.Event()
        self._thread = threading.Thread(target=self._work)
        self._thread.start()

    def _save(self, text):
        record = self._client.create("objOvrSchedule")
        record.set("PointID", dbus.Int32(self.number))
        record.set("StartDate", "2026-03-14T17:00:00")
        record.set("StopDate", "2026-03-14T18:00:00")
        record.set("Opr", text)
        record.set("IsAdd", dbus.Boolean(True))
        saved = record.call("Save")
        self._client.release(record)
        return saved

    def _work(self):
        try:
            while not self._ended.is_set():
                text = f"{self.number}: {len(self.saved) + len(self.not_saved)}"
                if self._save(text):
                    self.saved.append(text)
                else:
                    self.not_saved.append(text)
                    self._ended.wait(0.5)  # whoever reads a notice does not press again at once
        except Exception as error:  # for whoever waits for this workstation
            self._error = error

    def _await(self, condition, what):
        def met():
            assert self._error is None, self._error
            return condition()

        await_true(met, PATIENCE, f"{what} of workstation {self.number}")

    def await_saved(self, more):
        wanted = len(self.saved) + more
        self._await(lambda: len(self.saved) >= wanted, f"{more} more changes")

    def await_not_saved(self):
        self._await(lambda: self.not_saved, "a change that is not saved")

    def end_work(self):
        self._ended.set()
        self._thread.join()

    def reasons(self):
        """Why each of `not_saved` was not, as the server reported it."""
        reported = r"error -?\d+ in objOvrSchedule/Save: (.*) \(kind 2\)"
        return re.findall(reported, self.desktop.log())

    def close(self):
        self.end_work()
        self._client.close()
        self.desktop.close()


@pytest.fixture
def cluster():
    """A primary and its standby."""
    with contextlib.ExitStack() as stack:
        primary = stack.enter_context(contextlib.closing(DatabaseServer()))
        yield primary, stack.enter_context(contextlib.closing(primary.make_standby()))


@pytest.fixture
def site(cluster, tmp_path):
    primary, standby = cluster
    both = f"{primary.make_database('site')},{standby.folder}"
    options = ("--names", "20", "--seed", "7", "--database", both)
    subprocess.run(
        [program("kintar-site"), "create", str(tmp_path / "site"), *options],
        check=True,
        capture_output=True,
    )
    return tmp_path / "site"


@pytest.fixture
def workstations(desktop, site):
    """At work. All show their windows on the display of `desktop`; the first one's can be read."""
    surroundings = {
        "KINTAR3_DISPLAY": "own",
        "DISPLAY": desktop.environment["DISPLAY"],
        "QT_QPA_PLATFORM": "xcb",
    }
    made = []

    def make(number):
        readable = {} if number == 1 else {"KINTAR3_ACCESSIBILITY": "none"}
        made.append(Workstation(Desktop(site, environment=surroundings | readable), number))

    try:
        with ThreadPoolExecutor(4) as few:
            list(few.map(make, range(1, WORKSTATIONS + 1)))
        yield made
    finally:
        with ThreadPoolExecutor(WORKSTATIONS) as all_at_once:
            list(all_at_once.map(Workstation.close, made))


def notices(desktop):
    """How many notices each process shows."""
    found = collections.Counter()
    with contextlib.closing(display.Display(desktop.environment["DISPLAY"])) as connection:

        def value(window, name):
            return window.get_full_property(connection.intern_atom(name), 0).value

        for shown in value(connection.screen().root, "_NET_CLIENT_LIST"):
            window = connection.create_resource_object("window", shown)
            if window.get_wm_name() == "Kintar3":
                found[value(window, "_NET_WM_PID")[0]] += 1
    return found


def is_unknown(reason):
    return "not known whether the change was made" in reason or "did not confirm it" in reason


def test_what_twenty_clients_saw_succeed_survives_a_take_over(
    cluster, workstations, desktop, make_accessible
):
    primary, standby = cluster
    for workstation in workstations:
        workstation.await_saved(FEW)
    primary.cut_power()
    for workstation in workstations:
        workstation.await_not_saved()
    standby.promote()
    for workstation in workstations:
        workstation.await_saved(FEW)
    for workstation in workstations:
        workstation.end_work()

    statement = "SELECT Opr FROM OvrSchedule WHERE StartDate = '2026-03-14 17:00:00'"
    made = collections.Counter(row[0] for row in standby.sql("site", statement))
    for workstation in workstations:
        assert workstation.desktop.server_pid() == workstation.server, "the server of before"
        for text in workstation.saved:
            assert made.pop(text, 0) == 1, text
        for text, reason in zip(workstation.not_saved, workstation.reasons(), strict=True):
            assert made.pop(text, 0) <= is_unknown(reason), (text, reason)
    assert not made, "nobody was told of these"

    # Each operator has been told of each change that was not saved, and why.
    await_true(
        lambda: notices(desktop) == {each.server: len(each.not_saved) for each in workstations},
        what="a notice for each change that was not saved",
    )
    first = next(each for each in workstations if each.number == 1)
    accessible = make_accessible(first.desktop)
    for reason in set(first.reasons()):
        await_true(lambda: accessible.ask(reason, role="label")["found"], what=reason)
