#include "host/ClientLines.h"

#include <gtest/gtest.h>

namespace kintar::host {

TEST(ClientLines, CallsOfOneClientBeginOneAfterAnother) {
    ClientLines<int> lines;
    lines.add(":1.1", 1);
    lines.add(":1.1", 2);
    EXPECT_EQ(lines.begin(":1.1"), 1);
    EXPECT_EQ(lines.begin(":1.1"), std::nullopt);
    lines.end(":1.1");
    EXPECT_EQ(lines.begin(":1.1"), 2);
    lines.end(":1.1");
    EXPECT_TRUE(lines.empty());
}

TEST(ClientLines, ClientsDoNotWaitForEachOther) {
    ClientLines<int> lines;
    lines.add(":1.1", 1);
    lines.add(":1.2", 2);
    EXPECT_EQ(lines.begin(":1.1"), 1);
    EXPECT_EQ(lines.begin(":1.2"), 2);
    EXPECT_TRUE(lines.isUnderWay(":1.1"));
    EXPECT_FALSE(lines.isUnderWay(":1.3"));
}

TEST(ClientLines, AFullLineTakesNoMore) {
    ClientLines<int> lines(2);
    EXPECT_TRUE(lines.add(":1.1", 1));
    EXPECT_TRUE(lines.add(":1.1", 2));
    EXPECT_FALSE(lines.add(":1.1", 3));
    EXPECT_TRUE(lines.add(":1.2", 4));
}

TEST(ClientLines, DroppedCallsNeverBeginAndTheOneUnderWayGoesOn) {
    ClientLines<int> lines;
    lines.add(":1.1", 1);
    lines.add(":1.1", 2);
    EXPECT_EQ(lines.begin(":1.1"), 1);
    lines.dropWaiting(":1.1");
    EXPECT_TRUE(lines.isUnderWay(":1.1"));
    lines.end(":1.1");
    EXPECT_EQ(lines.begin(":1.1"), std::nullopt);
    EXPECT_TRUE(lines.empty());
}

TEST(ClientLines, EndingWhatNeverBeganIsNothing) {
    ClientLines<int> lines;
    lines.end(":1.1");
    EXPECT_EQ(lines.begin(":1.1"), std::nullopt);
    EXPECT_TRUE(lines.empty());
}

} // namespace kintar::host
