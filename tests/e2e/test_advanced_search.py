"""The advanced search and the In / Out board, opened from the name search as an operator does."""

import os
import re

import dbus
import pytest
from desktop import await_true
from site_database import change, change_all, rows

GROUP = 1
OPERATOR = 1
NAME_SEARCH = "HQ:  Search Names"
CRITERIA = "Select Name List Criteria"
BOARD = "In / Out Status"
DESCRIBED_AS_IN = "I"


def keep_picture(desktop, window, name):
    """Keeps a picture of a window where somebody wants to look at it."""
    folder = os.environ.get("KINTAR3_PICTURES")
    if folder:
        desktop.picture(window).save(os.path.join(folder, name + ".png"))


class Search:
    """A name search, and the windows that it opens."""

    def __init__(self, desktop, accessible, mode=1):
        self.desktop = desktop
        self.accessible = accessible
        self.client = desktop.client()
        self.object = self.client.create("objNameSearch")
        self.object.set("LocName", "HQ")
        self.object.set("OprID", dbus.Int32(OPERATOR))
        self.object.set("NameSelMode", dbus.Int16(mode))
        self.object.set("LocGrp", dbus.Int32(GROUP))
        desktop.await_window(NAME_SEARCH)

    def open_criteria(self):
        left, top, width, height = self.control("Label_0", NAME_SEARCH)["extents"]
        self.desktop.click(left + width // 2, top + height // 2)
        return self.desktop.await_window(CRITERIA)

    def control(self, control, window=CRITERIA, **request):
        """A control of one window: several windows have a `cmdOK` and a `Text_0`."""
        return await_true(
            lambda: (found := self.accessible.ask(control, window=window, **request))["found"]
            and found,
            what=f"{control} in {window}",
        )

    def enter(self, control, value):
        self.control(control, value=value)

    def press(self, control, window=CRITERIA):
        self.control(control, window=window, action="Press")

    def tab(self, caption):
        # The toolkit tells no description of a tab strip.
        left, top, width, height = self.control(caption, role="page tab")["extents"]
        self.desktop.click(left + width // 2, top + height // 2)

    def choose(self, option):
        self.control(option, action="Toggle")

    def names_found(self):
        words = await_true(
            lambda: (text := self.control("lblCount", NAME_SEARCH)["text"])
            and "found" in text
            and text,
            what="the end of the search",
        )
        return 0 if words.startswith("No") else int(words.split()[0])


@pytest.fixture
def search(desktop, accessible):
    return Search(desktop, accessible)


def group_count(site, condition="1 = 1"):
    return rows(
        site, f"SELECT count(*) FROM Names n WHERE LocGrp = ? AND {condition}", GROUP
    )[0][0]


def one_name(site):
    """A last name that only plain letters make up, and how many of the group begin so."""
    names = [last for (last,) in rows(site, "SELECT LName FROM Names WHERE LocGrp = ?", GROUP)]
    plain = next(last for last in names if re.fullmatch("[A-Z][a-z][A-Za-z]*", last))
    return plain, sum(last.casefold().startswith(plain.casefold()) for last in names)



def test_a_name_criterion_refills_the_list(desktop, site, search):
    last, expected = one_name(site)
    window = search.open_criteria()
    search.enter("Text_3", last)
    keep_picture(desktop, window, "criteria-names")
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    assert search.names_found() == expected


def test_no_criteria_at_all_list_the_whole_group(desktop, site, search):
    search.open_criteria()
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    assert search.names_found() == group_count(site)


def test_cancel_closes_without_refilling(desktop, search):
    search.open_criteria()
    search.enter("Text_3", "x")
    search.press("cmdCancel")
    desktop.await_no_window(CRITERIA)
    assert "found" not in search.control("lblCount", NAME_SEARCH)["text"]


def test_an_option_of_the_names_tab_is_a_criterion(desktop, site, search):
    search.open_criteria()
    search.choose("optVisTrue")
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    assert search.names_found() == group_count(site, "Visitor <> 0")


def test_a_card_criterion_of_the_third_tab_refills_the_list(desktop, site, search):
    window = search.open_criteria()
    search.tab("Search Cards")
    search.choose("optInActive")
    keep_picture(desktop, window, "criteria-cards")
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    expected = group_count(
        site,
        "ID IN (SELECT NameID FROM Cards WHERE LocGrp = n.LocGrp AND DlFlag <> 2 AND Status = 0)",
    )
    assert search.names_found() == expected


def test_an_edit_in_progress_in_the_grid_of_thirty_fields_counts(desktop, site, search):
    change_all(
        site,
        f"DELETE FROM UdfName WHERE LocGrp = {GROUP}",
        *(
            f"INSERT INTO UdfName VALUES({GROUP}, {number}, 'Field {number}', 0)"
            for number in range(1, 31)
        ),
        f"DELETE FROM UDF WHERE LocGrp = {GROUP}",
        "INSERT INTO UDF SELECT ID, 2, 'KX 4711', LocGrp FROM Names"
        f" WHERE LocGrp = {GROUP} AND ID % 3 = 0",
    )
    window = search.open_criteria()
    search.tab("Search UDFs")
    await_true(lambda: search.control("mskUDFEdit")["showing"], what="the editor")
    desktop.run("xdotool", "key", "Down")
    desktop.type("kx 4")
    await_true(lambda: search.control("mskUDFEdit")["text"] == "kx 4", what="the edit")
    keep_picture(desktop, window, "criteria-fields")
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    assert search.names_found() == group_count(site, "ID % 3 = 0")


def test_a_group_without_fields_and_skills_has_a_dead_grid_and_three_tabs(
    desktop, site, search, accessible
):
    change_all(
        site,
        f"DELETE FROM UdfName WHERE LocGrp = {GROUP}",
        f"DELETE FROM SKillName WHERE LocGrp = {GROUP}",
    )
    search.open_criteria()
    search.tab("Search UDFs")
    assert not accessible.ask("Search Skills", window=CRITERIA, role="page tab")["found"]
    assert not search.control("grdUdf")["enabled"]
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    assert search.names_found() == group_count(site)


def test_a_skill_is_a_criterion(desktop, site, search):
    change_all(
        site,
        f"DELETE FROM SKillName WHERE LocGrp = {GROUP}",
        f"INSERT INTO SKillName VALUES(901, 'Fork lift', {GROUP})",
        f"INSERT INTO Skills SELECT ID, 901 FROM Names WHERE LocGrp = {GROUP} AND ID % 2 = 0",
    )
    window = search.open_criteria()
    search.tab("Search Skills")
    left, top, width, height = await_true(
        lambda: search.control("lvList", item="Fork lift")["item"], what="the skill"
    )
    desktop.click(left + 10, top + height // 2)
    keep_picture(desktop, window, "criteria-skills")
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)
    assert search.names_found() == group_count(site, "ID % 2 = 0")


def test_a_statement_that_fails_keeps_the_dialog_open_with_its_input(desktop, site, search):
    search.open_criteria()
    search.enter("Text_3", "Sm")
    change(site, "ALTER TABLE Company RENAME TO Away")
    search.press("cmdOK")
    await_true(
        lambda: "could not be listed" in search.control("lblStatus")["text"], what="the message"
    )
    assert search.control("Text_3")["text"] == "Sm"
    change(site, "ALTER TABLE Away RENAME TO Company")
    search.press("cmdOK")
    desktop.await_no_window(CRITERIA)


@pytest.fixture
def board(desktop, accessible):
    """The board of the whole group, opened from the browsing dialog."""
    made = Search(desktop, accessible, mode=0)
    made.press("cmdSearch", NAME_SEARCH)
    made.names_found()
    made.press("cmdInOut", NAME_SEARCH)
    desktop.await_window(BOARD)
    return made


def inside(site):
    """How many of the group are in, by the most recent use of an active card."""
    found = 0
    for (name_id,) in rows(site, "SELECT ID FROM Names WHERE LocGrp = ?", GROUP):
        uses = rows(
            site,
            "SELECT coalesce(Inout1,'') || coalesce(Inout2,'') || coalesce(Inout3,'') ||"
            " coalesce(Inout4,'') FROM Cards LEFT JOIN LocCards ON Cards.ID = LocCards.CardID"
            " WHERE NameID = ? AND Status <> 0 ORDER BY LastDate DESC NULLS LAST",
            name_id,
        )
        found += bool(uses) and DESCRIBED_AS_IN in uses[0][0]
    return found


def test_the_board_counts_who_is_in_and_stays_when_the_dialog_is_done(desktop, site, board):
    expected = inside(site)
    heads = f"In: {expected}      Out: {group_count(site) - expected}"
    await_true(lambda: board.control("lblHeadCount", BOARD)["text"] == heads, what=heads)
    assert board.object.get("SelNameReady")
    desktop.await_no_window(NAME_SEARCH)
    keep_picture(desktop, desktop.await_window(BOARD), "board")


def test_a_click_on_the_board_shows_where_the_holder_was_last(desktop, site, board):
    name_id, shown = rows(
        site,
        "SELECT n.ID, LName || ', ' || FName FROM Names n JOIN Cards c ON c.NameID = n.ID AND"
        " c.Status <> 0 JOIN LocCards l ON l.CardID = c.ID JOIN Dev d ON d.Loc = l.Loc AND"
        " d.Device = l.LastDev WHERE n.LocGrp = ? GROUP BY n.ID HAVING count(*) = 1 AND"
        " (SELECT count(*) FROM Cards WHERE NameID = n.ID AND Status <> 0) = 1 AND length(LName) <"
        " 30 AND LName BETWEEN 'A' AND '[' ORDER BY n.LName",
        GROUP,
    )[0]
    loc, device = rows(
        site,
        "SELECT l.Loc, d.Name FROM Cards c JOIN LocCards l ON l.CardID = c.ID JOIN Dev d ON d.Loc ="
        " l.Loc AND d.Device = l.LastDev WHERE c.NameID = ? AND c.Status <> 0",
        name_id,
    )[0]
    window = desktop.await_window(BOARD)
    # Typing goes to the row of that name, wherever the list has it; Enter is a click.
    board.accessible.click("lvNames")
    desktop.type(shown)
    desktop.run("xdotool", "key", "Return")
    start = f"Loc:{loc}  Dev: {device}  "
    await_true(lambda: desktop.title(window).startswith(start), what=start)
    keep_picture(desktop, window, "board-clicked")


def test_ending_the_search_object_closes_the_board(desktop, board):
    board.client.release(board.object)
    desktop.await_no_window(f"{BOARD}|Loc:.*")
