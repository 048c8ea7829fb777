#include "companion/AsideRead.h"

#include "base/RunTimeError.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteFolder.h"

#include <gtest/gtest.h>

#include <future>

namespace kintar::companion {
namespace {

using std::chrono::minutes;

/// More rows than any test could wait for: names joined with themselves, again and again.
const std::string endless =
    "SELECT a.ID FROM ((((((([Names] a INNER JOIN [Names] b ON a.LocGrp <> b.ID) INNER JOIN "
    "[Names] "
    "c ON a.LocGrp <> c.ID) INNER JOIN [Names] d ON a.LocGrp <> d.ID) INNER JOIN [Names] e ON "
    "a.LocGrp <> e.ID) INNER JOIN [Names] f ON a.LocGrp <> f.ID) INNER JOIN [Names] g ON a.LocGrp "
    "<> g.ID) INNER JOIN [Names] h ON a.LocGrp <> h.ID) WHERE a.FName & b.FName & c.FName & "
    "d.FName "
    "& e.FName & f.FName & g.FName & h.FName = 'nobody at all'";

class AsideReading : public ::testing::TestWithParam<TestEngine> {
protected:
    [[nodiscard]] std::shared_ptr<DatabaseConnection> own() const {
        return openDatabase(site.database(), DatabaseAccess::ReadOnly);
    }

    SiteFolder site{GetParam()};
    std::unique_ptr<DatabaseConnection> opened =
        openDatabase(site.database(), DatabaseAccess::ReadWrite);
    DatabaseConnection& connection = *opened;
};

TEST_P(AsideReading, GivesTheRowsThatReadingAtOnceGives) {
    const std::string sql = "SELECT ID, LName FROM [Names] ORDER BY LName, FName";
    std::promise<void> told;
    const auto read = connection.openAside(sql, [&] { told.set_value(); });
    ASSERT_TRUE(read->waitFor(minutes(1)));
    ASSERT_EQ(told.get_future().wait_for(minutes(1)), std::future_status::ready);
    const Recordset aside = read->take();
    const Recordset atOnce = connection.open(sql);
    ASSERT_GT(aside.RecordCount(), 0U);
    ASSERT_EQ(aside.RecordCount(), atOnce.RecordCount());
    for (std::size_t row = 0; row < aside.RecordCount(); ++row) {
        EXPECT_EQ(aside.at(row, 0).text(), atOnce.at(row, 0).text());
        EXPECT_EQ(aside.at(row, 1).text(), atOnce.at(row, 1).text());
    }
}

TEST_P(AsideReading, OfAStatementThatCannotBeReadFailsAtOnce) {
    EXPECT_THROW(connection.openAside("SELECT Nothing FROM [Names]", [] {}), RunTimeError);
}

TEST_P(AsideReading, ThrowsWhatTheReadThrewWhenTheRowsAreTaken) {
    AsideRead read(own(), "SELECT Nothing FROM [Names]", [] {});
    ASSERT_TRUE(read.waitFor(minutes(1)));
    EXPECT_THROW(read.take(), RunTimeError);
}

TEST_P(AsideReading, GivesTheSameRowsOnItsOwnThread) {
    std::promise<void> told;
    AsideRead read(own(), "SELECT ID FROM [Names]", [&] { told.set_value(); });
    ASSERT_EQ(told.get_future().wait_for(minutes(1)), std::future_status::ready);
    ASSERT_TRUE(read.waitFor(std::chrono::milliseconds(0)));
    EXPECT_EQ(read.take().RecordCount(), connection.open("SELECT ID FROM [Names]").RecordCount());
}

TEST_P(AsideReading, OfAClosedConnectionFailsAtOnce) {
    connection.Close();
    EXPECT_THROW(connection.openAside("SELECT ID FROM [Names]", [] {}), RunTimeError);
}

TEST_P(AsideReading, StopsWhenItIsDroppedAndTheNextOneReads) {
    {
        const auto read = connection.openAside(endless, [] {});
        EXPECT_FALSE(read->waitFor(std::chrono::milliseconds(20)));
    }
    const auto next = connection.openAside("SELECT ID FROM [Names]", [] {});
    ASSERT_TRUE(next->waitFor(minutes(1)));
    EXPECT_GT(next->take().RecordCount(), 0U);
}

TEST_P(AsideReading, LeavesItsConnectionFreeForOthersMeanwhile) {
    const auto read = connection.openAside(endless, [] {});
    EXPECT_GT(connection.open("SELECT ID FROM [Names]").RecordCount(), 0U);
    const auto second = connection.openAside("SELECT ID FROM [Names]", [] {});
    ASSERT_TRUE(second->waitFor(minutes(1)));
    EXPECT_GT(second->take().RecordCount(), 0U);
    EXPECT_FALSE(read->waitFor(std::chrono::milliseconds(0)));
}

TEST_P(AsideReading, OutlivesTheConnectionThatStartedIt) {
    const auto read = connection.openAside("SELECT ID FROM [Names]", [] {});
    connection.Close();
    ASSERT_TRUE(read->waitFor(minutes(1)));
    EXPECT_GT(read->take().RecordCount(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Engines, AsideReading,
                         ::testing::Values(TestEngine::Sqlite, TestEngine::Postgres),
                         [](const auto& instance) { return nameOf(instance.param); });

} // namespace
} // namespace kintar::companion
