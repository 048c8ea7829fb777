#include "tools/site/CardFeed.h"

#include "TestSite.h"
#include "tools/site/SiteError.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <map>
#include <set>

namespace kintar::site {
namespace {

using testing::TestSite;

class CardFeedTest : public ::testing::Test {
protected:
    TestSite made;
    SiteDatabase database{made.folder / databaseFile, SiteDatabase::Access::Read};
    CardFeed feed{database, 1};
};

TEST_F(CardFeedTest, GivesAnEventOfAPerson) {
    const std::optional<CardEvent> event = feed.eventOf(2);
    ASSERT_TRUE(event.has_value());
    EXPECT_EQ(event->lastName, "O'Brien");
    EXPECT_EQ(event->locGrp, 1);
    EXPECT_TRUE(event->locName.starts_with("North Campus, "));
    EXPECT_FALSE(event->device.empty());
    EXPECT_EQ(event->code, made.value("SELECT Code FROM Cards WHERE NameID = 2 AND Status <> 0"));
}

TEST_F(CardFeedTest, GivesAPersonsEventsInSeveralPlacesAndOfSeveralKinds) {
    EXPECT_EQ(feed.eventOf(2)->eventDesc, "Access granted");
    std::set<std::string> places;
    std::set<std::string> kinds;
    for (int i = 0; i < 50; ++i) {
        const CardEvent event = *feed.eventOf(2);
        places.insert(event.locName + event.device);
        kinds.insert(event.eventDesc);
    }
    EXPECT_GT(places.size(), 5U);
    EXPECT_GT(kinds.size(), 2U);
}

TEST_F(CardFeedTest, GivesNothingForAPersonWhoIsMissing) {
    EXPECT_FALSE(feed.eventOf(61).has_value());
}

TEST_F(CardFeedTest, ShowsTheExamplesFirstAndThenAnybody) {
    const std::vector<CardEvent> events = feed.events(100);
    ASSERT_EQ(events.size(), 100U);
    EXPECT_EQ(events[0].id, 1);
    EXPECT_EQ(events[15].id, 16);
    EXPECT_NE(events[16].id, 17);
}

TEST_F(CardFeedTest, IsTheSameForTheSameSeed) {
    CardFeed again(database, 1);
    const std::vector<CardEvent> one = feed.events(50);
    const std::vector<CardEvent> two = again.events(50);
    for (std::size_t i = 0; i < one.size(); ++i) {
        EXPECT_EQ(feedLine(one[i]), feedLine(two[i]));
    }
}

TEST_F(CardFeedTest, SaysWhatOperatorsMayDo) {
    const std::vector<FeedOperator> all = feed.operators();
    ASSERT_EQ(all.size(), 7U);
    EXPECT_EQ(all[0].rights, "all rights");
    EXPECT_EQ(all[1].rights, "cards, hidden fields");
    EXPECT_EQ(all[2].rights, "cards at 1, hidden fields at 11");
    EXPECT_EQ(all[4].rights, "no rights");
}

TEST_F(CardFeedTest, TellsThePointsWhoseOverridesCanBeScheduled) {
    std::map<int, int> types;
    for (const FeedPoint& point : feed.points()) {
        types[point.id] = point.type;
    }
    EXPECT_EQ(types.at(101), 0);
    EXPECT_EQ(types.at(102), 1) << "it has a schedule as an input";
    EXPECT_EQ(types.at(202), 0) << "it has none";
    EXPECT_EQ(types.at(10), 2);
    EXPECT_EQ(types.at(20), 3) << "it has a schedule as a group of inputs";
    EXPECT_EQ(feedLine(feed.points().at(0)),
              "{\"kind\":\"point\",\"PointID\":101,\"PointType\":0,\"PointName\":\"Door 101\","
              "\"LocName\":\"North Campus, Head Office\"}\n");
}

TEST_F(CardFeedTest, WritesOneObjectALine) {
    const std::string line = feedLine(*feed.eventOf(4));
    EXPECT_EQ(line.find('\n'), line.size() - 1);
    const nlohmann::json json = nlohmann::json::parse(line);
    EXPECT_EQ(json["kind"], "event");
    EXPECT_EQ(json["ID"], 4);
    EXPECT_EQ(json["LName"], "الزهراني");
    EXPECT_EQ(nlohmann::json::parse(feedLine(FeedOperator{3, "none"}))["OprID"], 3);
}

TEST(CardFeed, GivesNothingWhereASiteHasNobody) {
    const TestSite empty(0);
    SiteDatabase database(empty.folder / databaseFile, SiteDatabase::Access::Read);
    EXPECT_TRUE(CardFeed(database, 1).events(10).empty());
}

TEST(CardFeed, SaysWhatIsWrongWithABrokenSite) {
    const TestSite broken;
    broken.execute("DROP TABLE Dev");
    SiteDatabase database(broken.folder / databaseFile, SiteDatabase::Access::Read);
    EXPECT_THROW(CardFeed(database, 1).events(10), SiteError);
}

} // namespace
} // namespace kintar::site
