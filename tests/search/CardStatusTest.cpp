#include "search/CardStatus.h"

#include "search/TableTwin.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using testing::null;
using testing::Row;
using testing::TwinDatabase;
using Statements = std::vector<std::string>;

const std::string useStatement =
    "SELECT Status, Loc, LastDate, LastDev, (Inout1 & '  ' & Inout2 & '  ' & Inout3 & '  ' & "
    "Inout4) as InOut FROM Cards Left Join LocCards On Cards.ID = LocCards.CardID WHERE NameID = "
    "30 And Status <> 0 Order By LastDate Desc";
const std::string deviceStatement = "Select Name From Dev Where Loc = 3 And Device = 7";
const std::vector<std::string> useColumns{"Status", "Loc", "LastDate:d", "LastDev", "InOut"};

class CardStatusTest : public ::testing::Test {
protected:
    CardStatusTest() {
        use({Row{1, 3, "2012-03-14 17:05:00", 7, "I  N  N  N"},
             Row{1, 4, "2011-01-01 00:00:00", 8, "O  N  N  N"}});
        twin.record.answer(deviceStatement, {"Name"}, {Row{"Front Door"}});
    }

    void use(std::vector<Row> rows) {
        twin.record.answer(useStatement, useColumns, std::move(rows));
    }
    [[nodiscard]] CardStatus read(const std::string& tag = "False") const {
        return readCardStatus(twin.database, tag, 30, LocaleFormats());
    }

    TwinDatabase twin;
};

TEST_F(CardStatusTest, ShowsTheMostRecentUseBehindItsBlanks) {
    const CardStatus shown = read();
    EXPECT_EQ(shown.status, "     I  N  N  N");
    EXPECT_EQ(shown.lastUse, "  3/14/2012 5:05:00 PM Front Door");
    EXPECT_FALSE(shown.visitor);
    EXPECT_EQ(twin.record.takeStatements(), (Statements{useStatement, deviceStatement}));
}

TEST_F(CardStatusTest, FourTimesNIsNoStatus) {
    use({Row{1, 3, "2012-03-14 00:00:00", 7, "N  N  N  N"}});
    const CardStatus shown = read();
    EXPECT_EQ(shown.status, "");
    EXPECT_EQ(shown.lastUse, "  3/14/2012 Front Door");
}

TEST_F(CardStatusTest, OtherwiseEveryFlagShows) {
    use({Row{1, 3, "2012-03-14 00:00:00", 7, "N  N  N  O"}});
    EXPECT_EQ(read().status, "     N  N  N  O");
    use({Row{1, 3, "2012-03-14 00:00:00", 7, "n  N  N  N"}});
    EXPECT_EQ(read().status, "     n  N  N  N");
}

TEST_F(CardStatusTest, ANameWithoutCardsShowsEmptyLabels) {
    use({});
    EXPECT_EQ(read().status, "");
    EXPECT_EQ(read().lastUse, "");
}

TEST_F(CardStatusTest, AVisitorIsMarkedBehindThreeBlanks) {
    use({});
    EXPECT_EQ(read("True").status, "   Visitor");
    EXPECT_TRUE(read("True").visitor);
    EXPECT_EQ(read("true").status, ""); // the tag is compared as it is written
    EXPECT_EQ(read("").status, "");
}

TEST_F(CardStatusTest, TheStatusOfAVisitorsCardTakesThePlaceOfTheMark) {
    const CardStatus shown = read("True");
    EXPECT_EQ(shown.status, "     I  N  N  N");
    EXPECT_TRUE(shown.visitor);
    use({Row{1, 3, "2012-03-14 00:00:00", 7, "N  N  N  N"}});
    EXPECT_EQ(read("True").status, "   Visitor");
}

TEST_F(CardStatusTest, ACardThatWasNeverUsedAsksForNoDevice) {
    use({Row{1, null, null, null, "      "}});
    const CardStatus shown = read();
    EXPECT_EQ(shown.lastUse, "");
    EXPECT_EQ(shown.status, "           "); // five blanks, and those between four missing flags
    EXPECT_EQ(twin.record.takeStatements(), Statements{useStatement});
}

TEST_F(CardStatusTest, ADeviceThatIsGoneLeavesItsNameEmpty) {
    twin.record.answer(deviceStatement, {"Name"}, {});
    EXPECT_EQ(read().lastUse, "  3/14/2012 5:05:00 PM ");
}

TEST_F(CardStatusTest, WhatFailsLeavesTheLabelsAsFarAsTheyGot) {
    twin.record.forget(deviceStatement);
    EXPECT_EQ(read().status, "     I  N  N  N");
    EXPECT_EQ(read().lastUse, "");
    twin.record.forget(useStatement);
    EXPECT_EQ(read("True").status, "   Visitor");
    EXPECT_EQ(read("True").lastUse, "");
}

TEST_F(CardStatusTest, ADateThatIsNoneShowsNoLastUse) {
    use({Row{1, 3, "yesterday", 7, "I  N  N  N"}});
    EXPECT_EQ(read().lastUse, "");
}

} // namespace
} // namespace kintar::search
