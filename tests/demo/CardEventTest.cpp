#include "demo/CardEvent.h"

#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

TEST(CardEvent, IsReadFromAFeed) {
    const std::optional<FeedContent> content =
        readFeed("{\"kind\":\"operator\",\"OprID\":3,\"rights\":\"no rights\"}\n"
                 "\n"
                 "{\"kind\":\"event\",\"ID\":2,\"LocGrp\":1,\"LocName\":\"Office\",\"FName\":"
                 "\"Se\xC3\xA1n\","
                 "\"LName\":\"O'Brien\",\"Device\":\"Gate\",\"EventDesc\":\"Access granted\","
                 "\"Code\":\"0012\"}\n");
    ASSERT_TRUE(content.has_value());
    ASSERT_EQ(content->operators.size(), 1);
    EXPECT_EQ(content->operators[0].id, 3);
    ASSERT_EQ(content->events.size(), 1);
    const CardEvent& event = content->events[0];
    EXPECT_EQ(event.id, 2);
    EXPECT_EQ(event.name(), QString::fromUtf8("O'Brien, Se\xC3\xA1n"));
    EXPECT_EQ(event.locName, QStringLiteral("Office"));
    EXPECT_EQ(event.device, QStringLiteral("Gate"));
    EXPECT_EQ(event.eventDesc, QStringLiteral("Access granted"));
    EXPECT_EQ(event.code, QStringLiteral("0012"));
}

TEST(CardEvent, ComesWithThePointsOfTheSite) {
    const std::optional<FeedContent> content =
        readFeed("{\"kind\":\"point\",\"PointID\":102,\"PointType\":1,\"PointName\":"
                 "\"Input 102\",\"LocName\":\"Office\"}\n");
    ASSERT_TRUE(content.has_value());
    ASSERT_EQ(content->points.size(), 1);
    const PointChoice& point = content->points[0];
    EXPECT_EQ(point.id, 102);
    EXPECT_EQ(point.type, 1);
    EXPECT_EQ(point.name, QStringLiteral("Input 102"));
    EXPECT_EQ(point.locName, QStringLiteral("Office"));
}

TEST(CardEvent, IsNotReadFromAnythingElse) {
    EXPECT_FALSE(readFeed("Names: the table is missing\n").has_value());
    EXPECT_FALSE(readFeed("{\"kind\":\"door\"}\n").has_value());
    EXPECT_FALSE(readFeed("[1,2]\n").has_value());
}

TEST(CardEvent, OfAnEmptyFeedIsNone) {
    const std::optional<FeedContent> content = readFeed("");
    ASSERT_TRUE(content.has_value());
    EXPECT_TRUE(content->events.isEmpty());
}

} // namespace
} // namespace kintar::demo
