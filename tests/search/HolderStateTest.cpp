#include "search/HolderState.h"

#include <gtest/gtest.h>

namespace kintar::board {
namespace {

LastUse use(const std::string& inOut) {
    return {"3", "7", "3/14/2012 5:05:00 PM", inOut};
}

TEST(HolderStateQuery, ReadsActiveCardsWithTheMostRecentUseFirst) {
    EXPECT_EQ(stateQuery(1234),
              "SELECT Status, Loc, LastDate, LastDev, (Inout1 & '  ' & Inout2 & '  ' & Inout3 & "
              "'  ' & Inout4) as InOut FROM Cards Left Join LocCards On Cards.ID = LocCards.CardID "
              "WHERE NameID = 1234 And Status <> 0 Order By LastDate Desc");
}

TEST(HolderStateRule, AnIInAnyOfTheFourReaderStatesIsIn) {
    for (const char* states :
         {"I  N  N  N", "N  I  N  N", "N  N  I  N", "N  N  N  I", "      I", "O  XIX  O  O"}) {
        EXPECT_EQ(stateOf(use(states)).icon, Icon::In) << states;
    }
}

TEST(HolderStateRule, NoIOrFourEmptyStatesAreOut) {
    for (const char* states : {"O  O  O  O", "N  N  N  N", "      ", "", "i  i  i  i"}) {
        EXPECT_EQ(stateOf(use(states)).icon, Icon::Out) << states;
    }
}

TEST(HolderStateRule, AHolderWithoutAnActiveCardIsOutAndHasNoLastUse) {
    EXPECT_EQ(stateOf(std::nullopt), (HolderState{Icon::Out, 0, 0, ""}));
}

TEST(HolderStateRule, LastLocationDeviceAndDateAreThoseOfTheRow) {
    EXPECT_EQ(stateOf(use("I")), (HolderState{Icon::In, 3, 7, "3/14/2012 5:05:00 PM"}));
}

TEST(HolderStateRule, ACardThatWasNeverUsedHasNoLastLocation) {
    EXPECT_EQ(stateOf(LastUse{}), HolderState{});
}

TEST(HolderStateRule, UnreadableLocationAndDeviceCountByTheirNumericValue) {
    const HolderState state = stateOf(LastUse{"12 North", "door 7", "", ""});
    EXPECT_EQ(state.lastLoc, 12);
    EXPECT_EQ(state.lastDev, 0);
}

TEST(HolderStateRule, NumbersThatTheirTypeCannotHoldAre0) {
    const HolderState state = stateOf(LastUse{"4294967296", "32768", "", ""});
    EXPECT_EQ(state.lastLoc, 0);
    EXPECT_EQ(state.lastDev, 0);
    EXPECT_EQ(stateOf(LastUse{"1", "-32768", "", ""}).lastDev, -32768);
}

TEST(HolderStateText, SortTextPutsTheIconsNumberBeforeTheName) {
    EXPECT_EQ(sortText(Icon::In, "Smith, Ann"), "1Smith, Ann");
    EXPECT_EQ(sortText(Icon::Out, "Smith, Ann"), "2Smith, Ann");
}

TEST(HolderStateText, CaptionHasABlankBehindDevAndNoneBehindLoc) {
    const HolderState state = stateOf(use("I"));
    EXPECT_EQ(deviceCriterion(state), "Loc = 3 And Device = 7");
    EXPECT_EQ(lastUseCaption(state, "Main door"), "Loc:3  Dev: Main door  3/14/2012 5:05:00 PM");
}

} // namespace
} // namespace kintar::board
