#include "server/NameSearchResult.h"

#include <gtest/gtest.h>

namespace kintar {
namespace {

using Told = std::vector<std::string>;

TEST(NameSearchResult, TellsOfEveryClosingAlsoOfEqualValues) {
    NameSearchResult result;
    Told told;
    const auto observation = result.changed.add([&](auto member) { told.emplace_back(member); });
    result.storeName("Moss, Kate");
    result.storeId(30);
    EXPECT_TRUE(told.empty());
    result.dialogClosed();
    EXPECT_TRUE(result.SelNameReady());
    result.dialogClosed();
    EXPECT_EQ(told, (Told{"SelName", "SelNameID", "SelNameReady", "SelName", "SelNameID",
                          "SelNameReady"}));
}

TEST(NameSearchResult, IsMadeUnreadyOnlyByTheWindowsLoadAndKeepsItsName) {
    NameSearchResult result;
    result.storeName("Moss, Kate");
    result.storeId(30);
    result.dialogClosed();
    Told told;
    const auto observation = result.changed.add([&](auto member) { told.emplace_back(member); });
    result.windowLoaded();
    EXPECT_FALSE(result.SelNameReady());
    EXPECT_EQ(result.SelNameID(), 30);
    EXPECT_EQ(result.SelName(), "Moss, Kate");
    EXPECT_EQ(told, Told{"SelNameReady"});
    result.windowLoaded();
    EXPECT_EQ(told, Told{"SelNameReady"});
}

TEST(NameSearchResult, TellsNobodyWhoseObservationHasEnded) {
    NameSearchResult result;
    int first = 0;
    int second = 0;
    auto one = result.changed.add([&](auto) { ++first; });
    const auto two = result.changed.add([&](auto) { ++second; });
    one.reset();
    result.dialogClosed();
    EXPECT_EQ(first, 0);
    EXPECT_EQ(second, 3);
}

TEST(NameSearchResult, AnObserverMayEndAnotherWhileItIsTold) {
    NameSearchResult result;
    int second = 0;
    Observation two;
    const auto one = result.changed.add([&](auto) { two.reset(); });
    two = result.changed.add([&](auto) { ++second; });
    result.dialogClosed();
    EXPECT_EQ(second, 0);
}

} // namespace
} // namespace kintar
