"""Thousands of objects come and go, and the server is as it was."""

import contextlib
import os
import re
import subprocess
import time

from desktop import ROOT, await_true
from site_database import ENGINE

# Nearly every round opens the site anew, which takes a database server ten times as long.
ROUNDS, SETTLED = (10_000, 2_000) if ENGINE == "sqlite" else (2_500, 1_000)

PHOTO_WORKERS = 2
# The toolkit's own threads for large pictures: each has a descriptor, and ends when idle for a while.
POOLED = "Thread (pooled)"
DESCRIPTOR_OF_POOLED = "anon_inode:[eventfd]"

# Each ends what it began. The photo window comes up in one round of a hundred: making a window costs
# a hundred times what everything else does.
COMMON = ["objOverride", "objAlarmPopUp", "objOvrSchedule", "objInRpt", "objNameSearch"]
SELDOM = {
    7: ["create objImageType as k", "release k"],
    11: ["create objSysPath as k", "set k SysPath {site}", "release k"],
    13: ["create objAlarmPopUp as k", 'set k EventString "Door forced open"', "release k"],
    25: [
        "create objKintar as k",
        "set k LocGrp 1",
        "set k LName Lindqvist",
        "set k ID {person}",
        "release k",
    ],
}


def lines_of_round(number, site):
    lines = SELDOM.get(number % 100)
    if lines is None:
        lines = [f"create {COMMON[number % len(COMMON)]} as k", "release k"]
    elif number % 500 == 25:
        lines = [*lines[:-1], "wait 60", lines[-1]]  # its photo is decoded and painted
    return [line.format(site=site, person=number % 80 + 1) for line in lines]


class Rounds:
    """Creations and releases over one connection of its own."""

    def __init__(self, desktop):
        self._site = desktop.site
        self._process = desktop.start(
            "kintarctl", "raw", "--stop", stdin=subprocess.PIPE, stdout=subprocess.PIPE
        )
        self._done = 0

    def run_to(self, count):
        """Every round has been answered when this returns."""
        for number in range(self._done, count):
            self._process.stdin.write("\n".join(lines_of_round(number, self._site)) + "\n")
            # One line is printed for each creation; the pipe holds many.
            if number % 100 == 99 or number == count - 1:
                self._process.stdin.flush()
                for _ in range(number + 1 - self._done):
                    assert self._process.stdout.readline().startswith(ROOT + "/obj"), number
                self._done = number + 1
        # The last round's release has been answered when the next line has been.
        self._process.stdin.write("create objImageType as last\nrelease last\n")
        self._process.stdin.flush()
        assert self._process.stdout.readline().startswith(ROOT + "/objImageType/")

    def close(self):
        self._process.stdin.close()
        assert self._process.wait(timeout=60) == 0


def descriptors_of(process):
    """What each descriptor is of, without the numbers that tell one from another."""
    found = []
    for link in os.scandir(f"/proc/{process}/fd"):
        with contextlib.suppress(FileNotFoundError):  # closed since it was listed
            found.append(re.sub(r"\[\d+\]", "", os.readlink(link.path)))
    return sorted(found)


def threads_of(process):
    found = []
    for task in os.listdir(f"/proc/{process}/task"):
        with contextlib.suppress(FileNotFoundError):  # ended since it was listed
            with open(f"/proc/{process}/task/{task}/comm", encoding="utf-8") as name:
                found.append(name.read().strip())
    return sorted(found)


class Usage:
    """What a process holds now."""

    def __init__(self, process):
        with open(f"/proc/{process}/statm", encoding="ascii") as pages:
            self.resident = int(pages.read().split()[1]) * os.sysconf("SC_PAGE_SIZE")
        self.descriptors = descriptors_of(process)
        self.threads = threads_of(process)
        while POOLED in self.threads:
            self.threads.remove(POOLED)
            self.descriptors.remove(DESCRIPTOR_OF_POOLED)
        with open(f"/proc/{process}/task/{process}/children", encoding="ascii") as children:
            self.photo_workers = len(children.read().split())


def usage_at_rest(process):
    """When nothing is being opened or closed any more, and no worker that was given up is missing."""
    before = Usage(process)
    while True:
        time.sleep(0.3)
        after = Usage(process)
        unchanged = (after.descriptors, after.threads) == (before.descriptors, before.threads)
        if unchanged and after.photo_workers == PHOTO_WORKERS:
            return after
        before = after


def test_thousands_of_rounds_leave_memory_and_descriptors_flat(desktop):
    rounds = Rounds(desktop)
    rounds.run_to(SETTLED)
    server = desktop.server_pid()
    settled = usage_at_rest(server)
    rounds.run_to(ROUNDS)
    assert desktop.server_pid() == server
    ended = usage_at_rest(server)
    assert ended.descriptors == settled.descriptors
    assert ended.threads == settled.threads
    # A leak of 200 bytes in each of ten thousand rounds would be more.
    assert ended.resident - settled.resident < 3 << 19
    # A server ends by itself when, and only when, no object is left; the client is still there.
    await_true(lambda: not desktop.server_runs(), 30.0, "the end of a server without objects")
    rounds.close()
