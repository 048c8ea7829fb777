#include "search/frmNameSearch.h"

#include "base/Twips.h"
#include "search/NameSearchFixture.h"

#include <QHeaderView>
#include <QMouseEvent>

namespace kintar::testing {
namespace {

using Texts = std::vector<std::string>;
using Statements = std::vector<std::string>;

TEST_F(NameSearch, SearchListsTheNamesAndShowsTheFirst) {
    open();
    search();
    EXPECT_EQ(shown(), (Texts{"Moss, Kate", "Abel, Tom", "Zorn, Ida"}));
    EXPECT_EQ(shown(1), (Texts{"False", "True", "False"}));
    EXPECT_EQ(shown(3), (Texts{"Brick & Co", "", "acme"}));
    EXPECT_EQ(twins.takeEvents(), Events{"CompanyFilter [Names].Company 2 True"});
    EXPECT_EQ(twins.tables().takeStatements(),
              (Statements{allNames, imageQuery(30), typesQuery, useQuery(30), deviceQuery,
                          useQuery(30), deviceQuery}));
    EXPECT_EQ(list().currentIndex().row(), 0);
    EXPECT_EQ(label("lblCount"), "3 names found.");
    EXPECT_EQ(label("Label_1"), "     I  N  N  N");
    EXPECT_EQ(label("Label_3"), "  3/14/2012 5:05:00 PM Front Door");
    EXPECT_EQ(title(), "HQ:  Search Names");
}

TEST_F(NameSearch, BothBoxesReachTheStatementWhole) {
    open();
    const QString hostile = QStringLiteral("O'Brien[a-c]%_\\") + QString(100000, QLatin1Char('x'));
    control<QLineEdit>("Text_0").setText(hostile);
    control<QLineEdit>("Text_1").setText(QStringLiteral("An"));
    click("cmdSearch");
    const std::string literal = twins.tables().SqlText(hostile.toStdString() + "%");
    EXPECT_EQ(twins.tables().takeStatements().at(0), nameQuery + " AND LName LIKE " + literal +
                                                         " AND FName LIKE 'An%' ORDER BY LName, "
                                                         "FName");
}

TEST_F(NameSearch, EnterInABoxSearches) {
    open();
    QTest::keyClick(&control<QLineEdit>("Text_1"), Qt::Key_Return);
    EXPECT_EQ(shown().size(), 3U);
}

TEST_F(NameSearch, EscapeCancels) {
    open();
    search();
    QTest::keyClick(&list(), Qt::Key_Escape);
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(object->SelNameReady());
}

TEST_F(NameSearch, ClosingByTheTitleBarIsCancel) {
    open();
    search();
    form().close();
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(twins.place.exists());
    EXPECT_TRUE(object->SelNameReady());
    EXPECT_EQ(object->SelNameID(), 0);
}

TEST_F(NameSearch, AnEmptyResultSaysSoClearsThePhotoAndRestoresTheBaseCaption) {
    open();
    search();
    clickRow(1);
    EXPECT_EQ(title(), "Abel, Tom  HQ:  Search Names");
    search("none");
    EXPECT_EQ(label("lblCount"), "No names found.");
    EXPECT_EQ(title(), "HQ:  Search Names");
    EXPECT_EQ(control<platform::PhotoBox>("Lead1").state(), platform::PhotoBox::State::Blank);
    EXPECT_EQ(label("Label_1"), "");
    EXPECT_EQ(label("Label_3"), "");
    EXPECT_FALSE(control<QLabel>("visitorMark").isVisible());
}

TEST_F(NameSearch, AFillTakesTheEarlierNameOutOfTheCaption) {
    open();
    search();
    clickRow(1);
    search();
    EXPECT_EQ(title(), "HQ:  Search Names");
}

TEST_F(NameSearch, AFailingStatementIsReportedSaidAndLeavesTheListAsItWas) {
    open();
    search();
    search("unknown");
    const Events events = twins.takeEvents();
    ASSERT_FALSE(events.empty());
    EXPECT_NE(events.back().find("\r\nfrmNameSearch/cmdSearch_Click 2"), std::string::npos);
    EXPECT_EQ(label("lblCount").substr(0, 12), "That failed:");
    EXPECT_EQ(shown().size(), 3U);
}

TEST_F(NameSearch, AFailingStatementOfAnotherWindowIsRaisedToIt) {
    open();
    EXPECT_THROW(form().PopulateListView("nonsense"), RunTimeError);
    EXPECT_TRUE(twins.takeEvents().empty());
}

TEST_F(NameSearch, TwoRowsWithOneNumberAreRaisedAndLeaveTheListEmpty) {
    open();
    twins.tables().answer("twice", {"ID", "Name"}, {Row{1, "a"}, Row{1, "b"}});
    try {
        form().PopulateListView("twice");
        FAIL();
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), 457);
    }
    EXPECT_TRUE(shown().empty());
}

TEST_F(NameSearch, TakesAnyStatementOfAnotherWindow) {
    open();
    twins.tables().answer("other", {"ID", "Whatever"}, {Row{20, "Zorn, Ida"}});
    form().PopulateListView("other");
    EXPECT_EQ(shown(), Texts{"Zorn, Ida"});
    EXPECT_EQ(shown(1), Texts{""});
}

TEST_F(NameSearch, AClickMakesCurrentReloadsThePhotoAndNamesTheWindow) {
    open();
    search();
    twins.tables().takeStatements();
    clickRow(1);
    EXPECT_EQ(twins.tables().takeStatements(),
              (Statements{imageQuery(10), typesQuery, useQuery(10)}));
    EXPECT_EQ(title(), "Abel, Tom  HQ:  Search Names");
    clickRow(1); // again: a click is a click
    EXPECT_EQ(twins.tables().takeStatements(),
              (Statements{imageQuery(10), typesQuery, useQuery(10)}));
}

TEST_F(NameSearch, AClickOnTheNameThatIsCurrentAlreadyCountsToo) {
    open();
    search();
    twins.tables().takeStatements();
    clickRow(0);
    EXPECT_EQ(title(), "Moss, Kate  HQ:  Search Names");
    EXPECT_EQ(twins.tables().takeStatements(),
              (Statements{imageQuery(30), typesQuery, useQuery(30), deviceQuery}));
}

TEST_F(NameSearch, TheArrowKeysWalkTheListAndEnterChooses) {
    open();
    search();
    EXPECT_EQ(form().focusWidget(), &list());
    QTest::keyClick(&list(), Qt::Key_Down);
    QTest::keyClick(&list(), Qt::Key_Down);
    EXPECT_EQ(title(), "Zorn, Ida  HQ:  Search Names");
    QTest::keyClick(&list(), Qt::Key_Return);
    EXPECT_EQ(object->SelNameID(), 20);
    EXPECT_TRUE(object->SelNameReady());
}

TEST_F(NameSearch, AnAssistiveSelectionIsAClick) {
    open();
    search();
    list().selectionModel()->select(list().model()->index(2, 0),
                                    QItemSelectionModel::ClearAndSelect |
                                        QItemSelectionModel::Rows);
    EXPECT_EQ(title(), "Zorn, Ida  HQ:  Search Names");
    click("cmdOK");
    EXPECT_EQ(object->SelNameID(), 20);
}

TEST_F(NameSearch, ThereIsNoDoubleClickShortcut) {
    open();
    search();
    const QRect place = list().visualRect(list().model()->index(1, 0));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, place.center());
    QTest::mouseDClick(list().viewport(), Qt::LeftButton, {}, place.center());
    EXPECT_TRUE(form().isVisible());
    EXPECT_FALSE(object->SelNameReady());
}

TEST_F(NameSearch, OkGivesTheCurrentName) {
    open();
    search();
    clickRow(2);
    click("cmdOK");
    EXPECT_EQ(object->SelNameID(), 20);
    EXPECT_EQ(object->SelName(), "Zorn, Ida");
    EXPECT_TRUE(object->SelNameReady());
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(shown().empty());
}

TEST_F(NameSearch, OkWithNothingSelectedKeepsTheEarlierValues) {
    open();
    search();
    click("cmdOK");
    EXPECT_EQ(object->SelNameID(), 30);
    EXPECT_EQ(set(2), 0);
    twins.takeEvents();
    click("cmdOK");
    EXPECT_EQ(object->SelNameID(), 30);
    EXPECT_EQ(object->SelName(), "Moss, Kate");
    EXPECT_FALSE(form().isVisible());
    EXPECT_EQ(twins.takeEvents(),
              (Events{"changed SelName", "changed SelNameID", "changed SelNameReady"}));
}

void sortBy(QTreeView& list, int column) {
    QHeaderView& header = *list.header();
    const QPoint place(header.sectionViewportPosition(column) + header.sectionSize(column) / 2,
                       header.height() / 2);
    QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, place);
}

TEST_F(NameSearch, ClickingAColumnTwiceKeepsTheAscendingOrder) {
    open();
    search();
    sortBy(list(), 0);
    EXPECT_EQ(shown(), (Texts{"Abel, Tom", "Moss, Kate", "Zorn, Ida"}));
    sortBy(list(), 0);
    EXPECT_EQ(shown(), (Texts{"Abel, Tom", "Moss, Kate", "Zorn, Ida"}));
    EXPECT_EQ(list().currentIndex().row(), 1);
}

TEST_F(NameSearch, SortingIsNoClickOnAnItemAndStaysOnForLaterSearches) {
    open();
    search();
    twins.tables().takeStatements();
    sortBy(list(), 0);
    EXPECT_TRUE(twins.tables().takeStatements().empty());
    EXPECT_EQ(title(), "HQ:  Search Names");
    search();
    EXPECT_EQ(shown(), (Texts{"Abel, Tom", "Moss, Kate", "Zorn, Ida"}));
    click("cmdOK");
    EXPECT_EQ(object->SelNameID(), 10);
}

TEST_F(NameSearch, TheColumnsAreTheSites) {
    open();
    QTreeView& names = list();
    EXPECT_EQ(names.model()->columnCount(), 4);
    EXPECT_EQ(names.model()->headerData(3, Qt::Horizontal).toString(), QLatin1String("Company"));
    EXPECT_EQ(names.columnWidth(0), pixelsFromTwips(2400));
    EXPECT_EQ(names.columnWidth(1), pixelsFromTwips(900));
}

TEST_F(NameSearch, TheFieldListHasItsTwoColumns) {
    twins.companion.texts[208] = "Feld";
    open();
    EXPECT_EQ(udfs().headerItem()->text(0), QLatin1String("Feld"));
    EXPECT_EQ(udfs().headerItem()->text(1), QLatin1String("Value"));
    EXPECT_EQ(udfs().columnWidth(0), pixelsFromTwips(2000));
    EXPECT_EQ(udfs().columnWidth(1), pixelsFromTwips(4000));
}

TEST_F(NameSearch, BelowModeOneTheDialogIsNarrowAndBrowses) {
    for (const std::int16_t mode : {std::int16_t{0}, std::int16_t{-5}}) {
        open(mode);
        EXPECT_EQ(form().width(), pixelsFromTwips(4300));
        EXPECT_FALSE(control<QPushButton>("cmdOK").isVisible());
        EXPECT_TRUE(control<QPushButton>("cmdInOut").isVisible());
        EXPECT_FALSE(control<QPushButton>("cmdInOut").isEnabled());
        EXPECT_EQ(control<QPushButton>("cmdCancel").y(), control<QPushButton>("cmdInOut").y());
    }
    search();
    EXPECT_TRUE(control<QPushButton>("cmdInOut").isEnabled());
}

TEST_F(NameSearch, FromModeOneTheDialogIsWideAndPicks) {
    for (const std::int16_t mode : {std::int16_t{1}, std::int16_t{2}}) {
        open(mode);
        EXPECT_EQ(form().width(), pixelsFromTwips(4815));
        EXPECT_TRUE(control<QPushButton>("cmdOK").isVisible());
        EXPECT_FALSE(control<QPushButton>("cmdInOut").isVisible());
        EXPECT_EQ(control<QPushButton>("cmdCancel").y(), control<QPushButton>("cmdOK").y());
    }
}

TEST_F(NameSearch, ALargeFontWidensTheDialog) {
    open(0);
    QFont font = form().font();
    font.setPixelSize(30);
    form().setFont(font);
    EXPECT_EQ(form().width(), 2 * pixelsFromTwips(4300));
    EXPECT_EQ(list().columnWidth(0), 2 * pixelsFromTwips(2400));
}

TEST_F(NameSearch, PlacesItselfWhereItStoodAndSavesWhereItStands) {
    twins.settings.save(R"(Orvane\NameSearch)", "Left", "1500");
    twins.settings.save(R"(Orvane\NameSearch)", "Top", "600");
    open();
    EXPECT_EQ(form().pos(), QPoint(100, 40));
    form().move(20, 30);
    object.reset();
    EXPECT_EQ(twins.settings.get(R"(Orvane\NameSearch)", "Left", ""), "300");
    EXPECT_EQ(twins.settings.get(R"(Orvane\NameSearch)", "Top", ""), "450");
}

TEST_F(NameSearch, TheAdvancedSearchLabelsOpenTheCriteria) {
    open();
    auto* criteria = new QWidget;
    std::vector<int> groups;
    search::CalledFrom* opener = nullptr;
    twins.surroundings.neighbours.showCriteria = [&](std::int32_t locGrp,
                                                     search::CalledFrom& from) -> QWidget& {
        groups.push_back(locGrp);
        opener = &from;
        return *criteria;
    };
    twins.windows.placed.clear();
    click("Label_0");
    click("Label_2");
    EXPECT_EQ(groups, (std::vector<int>{2, 2}));
    EXPECT_EQ(opener, &form());
    ASSERT_TRUE(runUntil([&] { return twins.windows.placed.size() == 4; }));
    for (const auto& placed : twins.windows.placed) {
        EXPECT_EQ(placed.window, criteria->winId());
        EXPECT_EQ(placed.flags, 19U);
    }
    delete criteria;
}

TEST_F(NameSearch, InModeTwoTheLabelsDoNothing) {
    twins.tables().answer(
        "SELECT DistinctRow [Names].ID, ([Names].LName & ', ' & [Names].FName) as Name, Visitor, "
        "Trace, Company.Name AS COMPNAME FROM (Company Right Join ([Names] Left Join Cards On "
        "[Names].ID = Cards.NameID) ON [Names].LocGrp = Company.LocGrp AND [Names].Company = "
        "Company.Company) WHERE [Names].LocGrp = 2 And Cards.GTour <> 0 ORDER BY LName, FName",
        nameColumns, threeNames());
    open(2);
    twins.surroundings.neighbours.showCriteria = [](std::int32_t, search::CalledFrom&) -> QWidget& {
        throw std::logic_error("opened");
    };
    click("Label_0");
    QTest::mouseClick(&control<QPushButton>("Label_2"), Qt::LeftButton);
    EXPECT_TRUE(twins.takeEvents().empty());
    EXPECT_EQ(label("lblCount"), "");
    search();
    EXPECT_EQ(shown().size(), 3U);
}

TEST_F(NameSearch, InOutOpensTheBoardClosesTheDialogAndKeepsTheResult) {
    open(0);
    search();
    Texts opened;
    twins.surroundings.neighbours.showBoard = [&](std::int32_t locGrp, const std::string& sql,
                                                  bool showUdfs) {
        opened = {std::to_string(locGrp), sql, showUdfs ? "True" : "False"};
    };
    click("cmdInOut");
    EXPECT_EQ(opened, (Texts{"2", allNames, "True"}));
    EXPECT_FALSE(form().isVisible());
    EXPECT_TRUE(object->SelNameReady());
    EXPECT_EQ(object->SelNameID(), 0);
    EXPECT_EQ(twins.takeEvents().back(), "changed SelNameReady");
}

TEST_F(NameSearch, WindowsThatAreNotThereAreSaidInTheStatusLine) {
    open(0);
    search();
    click("cmdInOut");
    EXPECT_EQ(label("lblCount"), "The In/Out window is not part of this program.");
    EXPECT_TRUE(form().isVisible());
    EXPECT_FALSE(object->SelNameReady());
    click("Label_0");
    EXPECT_EQ(label("lblCount"), "The advanced search is not part of this program.");
}

} // namespace
} // namespace kintar::testing
