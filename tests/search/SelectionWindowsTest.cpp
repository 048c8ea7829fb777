#include "search/SelectionWindows.h"

#include "search/SearchSite.h"
#include "support/FakeClock.h"
#include "support/FakeSettings.h"

#include <QtTest/QTest>
#include <gtest/gtest.h>
#include <memory>

namespace kintar::search {
namespace {

using testing::SearchSite;

class NoOpener final : public CalledFrom {
public:
    void PopulateListView(const std::string& /*sql*/) override {}
};

class SelectionPlaces : public ::testing::Test {
protected:
    SearchSite site;
    kintar::testing::FakeClock clock{DateTime::fromIso("2012-03-14T17:05:00").value()};
    kintar::testing::FakeSettings settings;
    LocaleFormats formats;
    NoOpener opener;
    std::unique_ptr<SelectionWindows> windows = std::make_unique<SelectionWindows>(
        SelectionSurroundings{site.globals(), clock, settings, formats});
};

TEST_F(SelectionPlaces, ShowBothWindowsWithWhatTheOpenerGave) {
    const frmSelName& criteria = windows->showCriteria(3, opener);
    EXPECT_TRUE(criteria.isVisible());
    EXPECT_EQ(criteria.LocGrp(), 3);
    EXPECT_EQ(criteria.calledFrom(), &opener);
    const frmInOut& board = windows->showBoard(3, "SELECT ID, LName AS Name FROM [Names]", true);
    EXPECT_TRUE(board.isVisible());
    EXPECT_EQ(board.LocGrp(), 3);
    EXPECT_EQ(board.SQL(), "SELECT ID, LName AS Name FROM [Names]");
}

TEST_F(SelectionPlaces, ShutDownUnloadsBothAndTheNextUseMakesThemAnew) {
    windows->showCriteria(3, opener);
    windows->showBoard(3, "SELECT ID, LName AS Name FROM [Names]", false);
    site.globals().TermShared();
    EXPECT_FALSE(windows->selName().exists());
    EXPECT_FALSE(windows->inOut().exists());
    EXPECT_TRUE(windows->showCriteria(3, opener).isVisible());
}

TEST_F(SelectionPlaces, TheEndOfThePlacesEndsTheWindows) {
    windows->showBoard(3, "SELECT ID, LName AS Name FROM [Names]", false);
    windows.reset();
    site.globals().forms.unload(FormId::frmInOut);
}

} // namespace
} // namespace kintar::search
