// What a report asks for, and what it makes of the rows.
#include "reports/engine/EngineTwins.h"
#include "reports/engine/OpenReport.h"
#include "reports/engine/ReportError.h"
#include "reports/engine/ReportStatement.h"
#include "reports/engine/ReportText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::NoDatabases;
using testing::PeopleReport;
using testing::reportFile;
using testing::RowsRecord;

const std::string dataWithFormula =
    "<data><from>People</from><field name=\"Place\">People.Place</field>"
    "<field name=\"Name\">People.Name</field>"
    "<formula name=\"Full Name\">People.Name &amp; ' x'</formula>"
    "<selection>People.Age &lt;&gt; 0</selection>"
    "<sort field=\"Name\" order=\"descending\"/></data>";

TEST(ReportStatement, SelectsFieldsAndFormulasInTheOrderOfGroupsAndSortFields) {
    const ReportDefinition report = readReportFile(
        reportFile("<group field=\"Place\" sortBy=\"Name\"/>", dataWithFormula), "x.rpt");
    EXPECT_EQ(composeSelect(report.main),
              "SELECT People.Place AS [Place], People.Name AS [Name], People.Name & ' x' AS "
              "[Full Name] FROM People WHERE (People.Age <> 0) ORDER BY [Name], [Place], [Name] "
              "DESC");
}

TEST(ReportStatement, LinksASubReportToTheRowAboveIt) {
    const ReportDefinition report =
        readReportFile(reportFile("<detail subReport=\"Cards\"/><subReport name=\"Cards\"><data>"
                                  "<from>Cards</from><field name=\"Card\">Cards.Num</field>"
                                  "<link field=\"Name\">Cards.Holder</link></data></subReport>"),
                       "x.rpt");
    const Recordset above = testing::people({{"North", "O'Brien"}});
    EXPECT_EQ(composeSelect(report.subReports[0], &above, 0),
              "SELECT Cards.Num AS [Card] FROM Cards WHERE (Cards.Holder = 'O''Brien')");
}

TEST(ReportStatement, WritesValuesAsLiterals) {
    Recordset rows(
        {{"A", ColumnType::Integer}, {"B", ColumnType::DateTime}, {"C", ColumnType::Any}});
    rows.addInteger(-7);
    rows.addText("2012-03-14 17:05:00");
    rows.addNull();
    EXPECT_EQ(literalOf(rows.at(0, 0), ColumnType::Integer), "-7");
    EXPECT_EQ(literalOf(rows.at(0, 1), ColumnType::DateTime), "#2012-03-14 17:05:00#");
    EXPECT_EQ(literalOf(rows.at(0, 2), ColumnType::Any), "Null");
}

TEST(OpenReport, SetsTheFormulaOfThatNameWithoutRegardToCaseTheFirstOnly) {
    OpenReport report(reportFile("", dataWithFormula), "/r/x.rpt");
    report.setFormula("FULL NAME", "People.Nick");
    EXPECT_THAT(composeSelect(report.definition().main), HasSubstr("People.Nick AS [Full Name]"));
}

TEST(OpenReport, ChangesNothingForAnUnknownFormulaOrAFieldThatIsNone) {
    OpenReport report(reportFile("", dataWithFormula), "/r/x.rpt");
    const std::string before = composeSelect(report.definition().main);
    report.setFormula("Nothing", "1");
    report.setFormula("Name", "1");
    EXPECT_EQ(composeSelect(report.definition().main), before);
}

TEST(OpenReport, ReplacesTheSelection) {
    OpenReport report(reportFile("", dataWithFormula), "/r/x.rpt");
    report.setSelection("People.Place = 'North'");
    EXPECT_THAT(composeSelect(report.definition().main),
                HasSubstr(" WHERE (People.Place = 'North') ORDER"));
}

TEST(OpenReport, ChangesGroupsSortFieldsSectionsAndSubReports) {
    OpenReport report(reportFile("<group field=\"Place\"/><detail name=\"Rows\"/>"
                                 "<reportFooter subReport=\"Sub\"/><subReport name=\"Sub\">"
                                 "<data><from>A</from><field name=\"B\">B</field></data>"
                                 "</subReport>",
                                 dataWithFormula),
                      "/r/x.rpt");
    report.setGroupCondition(1, "name", 2);
    report.setSortField(1, "Place", true);
    report.setSortField(2, "Name", false);
    report.setSuppressed("rows", true);
    report.setSubReportSelection("SUB", "B = 1");
    const ReportDefinition& changed = report.definition();
    EXPECT_EQ(changed.main.groups[0].field, "Name");
    EXPECT_EQ(changed.main.groups[0].condition, GroupCondition::Month);
    EXPECT_THAT(composeSelect(changed.main), HasSubstr("ORDER BY [Name], [Place] DESC, [Name]"));
    EXPECT_TRUE(changed.main.detail.suppressed);
    EXPECT_EQ(composeSelect(changed.subReports[0]), "SELECT B AS [B] FROM A WHERE (B = 1)");
}

TEST(OpenReport, RefusesWhatTheReportDoesNotHave) {
    OpenReport report(reportFile("<group field=\"Place\"/>"), "/r/x.rpt");
    EXPECT_THROW(report.setGroupCondition(0, "Place", 0), ReportError);
    EXPECT_THROW(report.setGroupCondition(2, "Place", 0), ReportError);
    EXPECT_THROW(report.setGroupCondition(1, "Plaice", 0), ReportError);
    EXPECT_THROW(report.setGroupCondition(1, "Place", 4), ReportError);
    EXPECT_THROW(report.setGroupCondition(1, "Place", -1), ReportError);
    EXPECT_THROW(report.setSortField(2, "Place", false), ReportError);
    EXPECT_THROW(report.setSortField(1, "Plaice", false), ReportError);
    EXPECT_THROW(report.setSuppressed("Nowhere", true), ReportError);
    EXPECT_THROW(report.setSubReportSelection("Sub", "1"), ReportError);
}

TEST(Report, OpensTheDatabaseBesideItsFileForReading) {
    RowsRecord record;
    record.rows = [](std::string_view) { return testing::people({}); };
    ClosedConnection site;
    NoDatabases databases;
    const OpenReport open(reportFile("", "<data source=\"InRpt.Mdb\"><from>People</from>"
                                         "<field name=\"Place\">Place</field>"
                                         "<field name=\"Name\">Name</field></data>"),
                          "/temp/InRptc.rpt");
    static_cast<void>(open.run({record, site, databases}, DateTime(), LocaleFormats()));
    EXPECT_THAT(databases.opened, ElementsAre("/temp/InRpt.Mdb"));
}

TEST(ReportRows, FallIntoGroupsAndTheirSpans) {
    const PeopleReport people(reportFile("<group field=\"Place\"/><group field=\"Name\"/>"),
                              {{"A", "x"}, {"a", "x"}, {"A", "y"}, {"B", "y"}});
    const ReportRows& rows = people.report->rows();
    EXPECT_EQ(rows.firstLevelBeginningAt(0), 0U);
    EXPECT_EQ(rows.firstLevelBeginningAt(1), 2U); // letter case makes no new group
    EXPECT_EQ(rows.firstLevelBeginningAt(2), 1U);
    EXPECT_EQ(rows.firstLevelBeginningAt(3), 0U);
    EXPECT_EQ(rows.spanOf(0, 1).end, 3U);
    EXPECT_EQ(rows.spanOf(1, 2).begin, 2U);
    EXPECT_EQ(rows.spanOf(1, 3).count(), 1U); // the same name in another place is another group
}

TEST(ReportRows, SumAndCountWhatTheirSpanHolds) {
    const PeopleReport people(reportFile(""), {{"1", "x"}, {"2.5", "X"}, {"none", "y"}});
    const ReportRows& rows = people.report->rows();
    EXPECT_EQ(rows.sum("Place", {0, 3}), "3.5");
    EXPECT_EQ(rows.sum("Place", {1, 3}), "2.5");
    EXPECT_EQ(rows.distinct("Name", {0, 3}), 2U);
}

TEST(ReportText, WritesAnAgeInWhatItIsLargeEnoughFor) {
    const DateTime now = *DateTime::fromFields(2012, 3, 14, 17, 5, 30);
    const auto age = [now](int day, int hour, int minute, int second) {
        return ageText(*DateTime::fromFields(2012, 3, day, hour, minute, second), now);
    };
    EXPECT_EQ(age(14, 17, 5, 0), "0 min");
    EXPECT_EQ(age(14, 16, 5, 31), "59 min");
    EXPECT_EQ(age(14, 16, 5, 30), "1 h 00 min");
    EXPECT_EQ(age(13, 17, 5, 31), "23 h 59 min");
    EXPECT_EQ(age(12, 17, 5, 30), "2 d 00 h");
    EXPECT_EQ(age(15, 0, 0, 0), "0 min");
}

TEST(ReportText, GivesValuesOtherNamesByLookup) {
    const PeopleReport people(
        reportFile("", "<data><from>People</from><field name=\"Place\">Place</field>"
                       "<field name=\"Name\">Name</field>"
                       "<lookup name=\"Where\" of=\"Place\"><value is=\"N\">North</value></lookup>"
                       "<lookup name=\"Either\" of=\"Place\"><value is=\"N\">North</value>"
                       "<otherwise>elsewhere</otherwise></lookup></data>"),
        {{"N", "x"}, {"S", "x"}});
    const ReportText text(*people.report);
    const auto at = [&](std::size_t row, const char* piece) {
        return text.text(readTemplate(piece), {people.report->rows(), row, {row, row + 1}});
    };
    EXPECT_EQ(at(0, "{Where}/{either}"), "North/North");
    EXPECT_EQ(at(1, "{Where}/{either}"), "S/elsewhere");
}

TEST(ReportText, ShowsNothingWhereThereIsNoRow) {
    const PeopleReport people(reportFile(""), {});
    const ReportText text(*people.report);
    EXPECT_EQ(text.text(readTemplate("[{Name}] {@count} {@title} {@made}"),
                        {people.report->rows(), 0, {0, 0}}),
              "[] 0 Title 3/14/2012 5:05:00 PM");
}

} // namespace
} // namespace kintar::reports
