#include "demo/Feed.h"

#include "ToyFeed.h"
#include "Waiting.h"

#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

using testing::ToyFeed;
using testing::waitFor;

struct Heard {
    explicit Heard(Feed& feed) {
        QObject::connect(&feed, &Feed::loaded, [this](const FeedContent& all) { content = all; });
        QObject::connect(&feed, &Feed::eventFound,
                         [this](const CardEvent& found) { event = found; });
        QObject::connect(&feed, &Feed::failed, [this](const QString& why) { reason = why; });
    }
    std::optional<FeedContent> content;
    std::optional<CardEvent> event;
    std::optional<QString> reason;
};

TEST(Feed, LoadsOperatorsAndEvents) {
    const ToyFeed toy;
    Feed feed(toy.program(), QStringLiteral("site"));
    const Heard heard(feed);
    feed.load();
    ASSERT_TRUE(waitFor([&] { return heard.content.has_value(); }));
    EXPECT_EQ(heard.content->operators.size(), 2);
    EXPECT_EQ(heard.content->events.size(), 2);
    EXPECT_FALSE(heard.reason.has_value());
}

TEST(Feed, FindsTheEventOfAPerson) {
    const ToyFeed toy;
    Feed feed(toy.program(), QStringLiteral("site"));
    const Heard heard(feed);
    feed.findEvent(42);
    ASSERT_TRUE(waitFor([&] { return heard.event.has_value(); }));
    EXPECT_EQ(heard.event->id, 42);
}

TEST(Feed, SaysWhatTheToolSaid) {
    const ToyFeed toy;
    Feed feed(toy.program(), QStringLiteral("site"));
    const Heard heard(feed);
    feed.findEvent(100);
    ASSERT_TRUE(waitFor([&] { return heard.reason.has_value(); }));
    EXPECT_EQ(*heard.reason, QStringLiteral("no person 100"));
}

TEST(Feed, SaysThatTheToolIsMissing) {
    Feed feed(QStringLiteral("/nowhere/kintar-site"), QStringLiteral("site"));
    const Heard heard(feed);
    feed.load();
    ASSERT_TRUE(waitFor([&] { return heard.reason.has_value(); }));
    EXPECT_TRUE(heard.reason->startsWith(QStringLiteral("/nowhere/kintar-site: ")));
}

TEST(Feed, RefusesWhatIsNoFeed) {
    const ToyFeed toy("echo hello\n");
    Feed feed(toy.program(), QStringLiteral("site"));
    const Heard heard(feed);
    feed.load();
    ASSERT_TRUE(waitFor([&] { return heard.reason.has_value(); }));
    EXPECT_TRUE(heard.reason->endsWith(QStringLiteral("its output is no feed")));
}

} // namespace
} // namespace kintar::demo
