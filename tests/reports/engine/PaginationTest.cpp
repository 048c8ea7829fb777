#include "reports/engine/Pagination.h"

#include "reports/engine/EngineTwins.h"
#include "reports/engine/ReportError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::EvenMeasure;
using ::testing::Not;
using testing::PeopleReport;
using testing::reportFile;

// A line is 13 points high: 10 of text and 1.5 above and below it. The sheet has room for 15.
constexpr PageSize sheet{300, 295};
constexpr std::size_t linesOnASheet = 15;

const std::string detail = "<detail><line><cell>{Name}</cell></line></detail>";
const std::string groupedDetail =
    "<group field=\"Place\"><header repeat=\"true\"><line><cell>"
    "== {Place} {@count}{@continued}</cell></line></header>"
    "<footer><line><cell>end of {Place}</cell></line></footer></group>" +
    detail;
const std::string pageNumbers =
    "<pageFooter><line><cell>Page {@page} of {@pages}</cell></line></pageFooter>";

std::vector<std::pair<std::string, std::string>> rowsOf(const std::string& place,
                                                        std::size_t count) {
    std::vector<std::pair<std::string, std::string>> rows;
    for (std::size_t row = 1; row <= count; ++row) {
        rows.emplace_back(place, place + std::to_string(row));
    }
    return rows;
}

struct Pages {
    Pages(const std::string& file, const std::vector<std::pair<std::string, std::string>>& rows,
          PageSize size = sheet)
        : people(file, rows), pages(*people.report, measure, size, notCancelled) {}

    [[nodiscard]] std::vector<std::string> texts(std::size_t page) const {
        std::vector<std::string> all;
        for (const Item& item : pages.pageItems(page)) {
            if (item.kind == ItemKind::Text) {
                all.push_back(item.text);
            }
        }
        return all;
    }

    EvenMeasure measure;
    PeopleReport people;
    std::atomic<bool> notCancelled = false;
    PagedReport pages;
};

TEST(Pagination, FillsPageAfterPage) {
    const Pages exactly(reportFile(detail), rowsOf("A", linesOnASheet));
    EXPECT_EQ(exactly.pages.pageCount(), 1U);
    const Pages oneMore(reportFile(detail), rowsOf("A", linesOnASheet + 1));
    ASSERT_EQ(oneMore.pages.pageCount(), 2U);
    EXPECT_EQ(oneMore.texts(0).size(), linesOnASheet);
    EXPECT_THAT(oneMore.texts(1), ElementsAre("A16"));
}

TEST(Pagination, KeepsEverythingInsideTheMargins) {
    const Pages pages(reportFile(detail + pageNumbers), rowsOf("A", 40));
    for (std::size_t page = 0; page < pages.pages.pageCount(); ++page) {
        for (const Item& item : pages.pages.pageItems(page)) {
            EXPECT_GE(item.x, 50);
            EXPECT_GE(item.y, 50);
            EXPECT_LE(item.x + item.width, sheet.width - 50);
            EXPECT_LE(item.bottom(), sheet.height - 50 + 0.01);
        }
    }
}

TEST(Pagination, NumbersItsPages) {
    const Pages pages(reportFile(detail + pageNumbers), rowsOf("A", 29));
    ASSERT_EQ(pages.pages.pageCount(), 3U);
    EXPECT_THAT(pages.texts(0), Contains("Page 1 of 3"));
    EXPECT_THAT(pages.texts(2), Contains("Page 3 of 3"));
}

TEST(Pagination, RepeatsThePageHeaderAndPutsTheReportsOwnAboveTheFirst) {
    const Pages pages(
        reportFile("<reportHeader><line><cell>{@title} {@count}</cell></line></reportHeader>"
                   "<pageHeader><line><cell>Name</cell></line></pageHeader>" +
                   detail),
        rowsOf("A", 20));
    ASSERT_EQ(pages.pages.pageCount(), 2U);
    const std::vector<Item> first = pages.pages.pageItems(0);
    EXPECT_THAT(pages.texts(0), Contains("Title 20"));
    double titleAt = 0;
    double headingAt = 0;
    for (const Item& item : first) {
        titleAt = item.text == "Title 20" ? item.y : titleAt;
        headingAt = item.text == "Name" ? item.y : headingAt;
    }
    EXPECT_LT(titleAt, headingAt);
    EXPECT_THAT(pages.texts(1), Contains("Name"));
    EXPECT_THAT(pages.texts(1), Not(Contains("Title 20")));
}

TEST(Pagination, RepeatsAGroupsHeadingOnThePageItGoesOnTo) {
    const Pages pages(reportFile(groupedDetail), rowsOf("A", 20));
    ASSERT_EQ(pages.pages.pageCount(), 2U);
    EXPECT_EQ(pages.texts(0).front(), "== A 20");
    EXPECT_EQ(pages.texts(1).front(), "== A 20 (continued)");
    EXPECT_EQ(pages.texts(1).back(), "end of A");
}

TEST(Pagination, KeepsAGroupsHeadingWithItsFirstRow) {
    // 12 rows with heading and footer leave one line: not enough for a heading and a row.
    std::vector<std::pair<std::string, std::string>> rows = rowsOf("A", 12);
    rows.emplace_back("B", "B1");
    const Pages pages(reportFile(groupedDetail), rows);
    ASSERT_EQ(pages.pages.pageCount(), 2U);
    EXPECT_EQ(pages.texts(0).back(), "end of A");
    EXPECT_THAT(pages.texts(1), ElementsAre("== B 1", "B1", "end of B"));
}

TEST(Pagination, GivesAGroupThatBeginsAPageNoSecondHeading) {
    const Pages pages(reportFile(groupedDetail), [] {
        auto rows = rowsOf("A", 13);
        rows.emplace_back("B", "B1");
        return rows;
    }());
    ASSERT_EQ(pages.pages.pageCount(), 2U);
    EXPECT_THAT(pages.texts(1), ElementsAre("== B 1", "B1", "end of B"));
}

TEST(Pagination, WrapsTextAndKeepsARowTogether) {
    std::vector<std::pair<std::string, std::string>> rows = rowsOf("A", 14);
    rows.emplace_back("A", std::string(80, 'x')); // 39 characters fit on a line
    const Pages pages(reportFile(detail), rows);
    ASSERT_EQ(pages.pages.pageCount(), 2U);
    EXPECT_THAT(pages.texts(1),
                ElementsAre(std::string(39, 'x'), std::string(39, 'x'), std::string(2, 'x')));
}

TEST(Pagination, PartsARowThatIsHigherThanAPageBetweenItsLines) {
    const Pages pages(reportFile(detail), {{"A", std::string(39 * 40, 'x')}, {"A", "last"}});
    ASSERT_EQ(pages.pages.pageCount(), 3U);
    std::size_t lines = 0;
    for (std::size_t page = 0; page < 3; ++page) {
        lines += pages.texts(page).size();
    }
    EXPECT_EQ(lines, 41U);
    EXPECT_EQ(pages.texts(2).back(), "last");
}

TEST(Pagination, StartsASectionOnANewPageWhereItWantsThat) {
    std::vector<std::pair<std::string, std::string>> rows{{"A", "1"}, {"B", "2"}};
    const Pages pages(reportFile("<group field=\"Place\"><header newPage=\"true\"><line><cell>"
                                 "{Place}</cell></line></header></group>" +
                                 detail),
                      rows);
    ASSERT_EQ(pages.pages.pageCount(), 2U);
    EXPECT_THAT(pages.texts(0), ElementsAre("A", "1"));
    EXPECT_THAT(pages.texts(1), ElementsAre("B", "2"));
}

TEST(Pagination, ShowsTheEmptySectionWhereThereIsNoRow) {
    const Pages pages(
        reportFile(detail + "<empty><line><cell>Nobody</cell></line></empty>" + pageNumbers), {});
    ASSERT_EQ(pages.pages.pageCount(), 1U);
    EXPECT_THAT(pages.texts(0), ElementsAre("Nobody", "Page 1 of 1"));
}

TEST(Pagination, LeavesOutSuppressedSections) {
    const Pages pages(
        reportFile("<detail suppress=\"true\"><line><cell>{Name}</cell></line></detail>"
                   "<reportFooter><line><cell>End</cell></line></reportFooter>"),
        rowsOf("A", 3));
    EXPECT_THAT(pages.texts(0), ElementsAre("End"));
}

TEST(Pagination, PutsASubReportBelowTheSectionThatHasIt) {
    const Pages pages(reportFile("<detail subReport=\"Cards\"><line><cell>{Name}</cell></line>"
                                 "</detail><subReport name=\"Cards\"><data><from>Cards</from>"
                                 "<field name=\"Place\">P</field><field name=\"Name\">N</field>"
                                 "<link field=\"Name\">Cards.Holder</link></data>"
                                 "<detail><line><cell left=\"10\">card {Place}</cell></line>"
                                 "</detail></subReport>"),
                      {{"A", "1"}, {"B", "2"}});
    EXPECT_THAT(pages.texts(0), ElementsAre("1", "card A", "card B", "2", "card A", "card B"));
    EXPECT_THAT(pages.people.record.statements,
                Contains("SELECT P AS [Place], N AS [Name] FROM Cards WHERE (Cards.Holder = '2')"));
}

TEST(Pagination, RefusesASheetWithoutRoom) {
    EvenMeasure measure;
    const PeopleReport people(reportFile(detail), rowsOf("A", 1));
    const std::atomic<bool> notCancelled = false;
    EXPECT_THROW(PagedReport(*people.report, measure, {300, 160}, notCancelled), ReportError);
    EXPECT_THROW(PagedReport(*people.report, measure, {160, 300}, notCancelled), ReportError);
}

TEST(Pagination, EndsEarlyWhereItIsCancelled) {
    EvenMeasure measure;
    const PeopleReport people(reportFile(detail), rowsOf("A", 1000));
    const std::atomic<bool> cancelled = true;
    const PagedReport pages(*people.report, measure, sheet, cancelled);
    EXPECT_EQ(pages.pageCount(), 1U);
}

TEST(Pagination, TakesAHundredThousandRows) {
    const Pages pages(reportFile(groupedDetail + pageNumbers), rowsOf("A", 100000));
    EXPECT_THAT(pages.texts(pages.pages.pageCount() - 1), Contains("A100000"));
}

TEST(Pagination, LeavesNoBlankInFrontWhereAValueIsEmpty) {
    const Pages pages(
        reportFile("<detail><line><cell>{Place} (reader {Name})</cell></line></detail>"),
        {{"", "7"}, {"Gate", "8"}});
    EXPECT_THAT(pages.texts(0), ElementsAre("(reader 7)", "Gate (reader 8)"));
}

} // namespace
} // namespace kintar::reports
