#include "reports/engine/ReportFile.h"

#include "reports/engine/EngineTwins.h"
#include "reports/engine/ReportError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace kintar::reports {
namespace {

using ::testing::HasSubstr;
using testing::reportFile;
using ::testing::StartsWith;

std::string errorOf(const std::string& text) {
    try {
        readReportFile(text, "x.rpt");
    } catch (const ReportError& error) {
        return error.what();
    }
    return "no error";
}

TEST(ReportFile, ReadsDataGroupsAndSections) {
    const ReportDefinition report = readReportFile(
        "<?xml version=\"1.0\"?>\n" +
            reportFile("<group field=\"Place\" order=\"descending\" condition=\"month\">"
                       "<header repeat=\"true\"><line><cell>{Place}</cell></line></header></group>"
                       "<detail name=\"Rows\" suppress=\"true\"><line background=\"#E0E1E2\">"
                       "<box/><cell left=\"10\" align=\"end\" wrap=\"false\">{Name}</cell></line>"
                       "<rule thickness=\"2\"/><space height=\"3\"/></detail>"),
        "x.rpt");
    EXPECT_EQ(report.title, "Title");
    EXPECT_EQ(report.margin, 50);
    EXPECT_EQ(report.main.from, "People");
    ASSERT_EQ(report.main.groups.size(), 1U);
    EXPECT_TRUE(report.main.groups[0].descending);
    EXPECT_EQ(report.main.groups[0].condition, GroupCondition::Month);
    EXPECT_TRUE(report.main.groups[0].header.repeat);
    EXPECT_EQ(report.main.groups[0].header.name, "GroupHeader1");
    EXPECT_EQ(report.main.detail.name, "Rows");
    EXPECT_TRUE(report.main.detail.suppressed);
    ASSERT_EQ(report.main.detail.elements.size(), 3U);
    const auto& line = std::get<Line>(report.main.detail.elements[0]);
    EXPECT_EQ(line.background, 0xE0E1E2U);
    EXPECT_TRUE(line.cells[0].box);
    EXPECT_EQ(line.cells[1].left, 10);
    EXPECT_EQ(line.cells[1].width, 90);
    EXPECT_FALSE(line.cells[1].wrap);
}

TEST(ReportFile, TakesAnyBlankInTextForOne) {
    const ReportDefinition report = readReportFile(
        reportFile("<detail><line><cell>\n   {Name}   is\n in </cell></line></detail>"), "x.rpt");
    const auto& line = std::get<Line>(report.main.detail.elements[0]);
    EXPECT_EQ(line.cells[0].text[1].text, " is in");
}

TEST(ReportFile, SaysInWhichLineItIsNotWellFormed) {
    EXPECT_THAT(errorOf("<report>\n\n<data></report>"), StartsWith("x.rpt, line 3: "));
    EXPECT_THAT(errorOf(""), StartsWith("x.rpt, line "));
    EXPECT_THAT(errorOf("no report"), StartsWith("x.rpt, line 1: "));
    EXPECT_THAT(errorOf(std::string("\0\0\0", 3)), StartsWith("x.rpt, line "));
}

TEST(ReportFile, SaysWhatTheSchemaDoesNotAllow) {
    EXPECT_THAT(errorOf(reportFile("<detial/>")), HasSubstr("'detial'"));
    EXPECT_THAT(errorOf(reportFile("<detail><line><cell left=\"101\">x</cell></line></detail>")),
                HasSubstr("'left'"));
    EXPECT_THAT(errorOf(reportFile("<detail><line/></detail>")), HasSubstr("'line'"));
    EXPECT_THAT(errorOf(reportFile("", "<data source=\"../x.db\"><from>A</from>"
                                       "<field name=\"B\">B</field></data>")),
                HasSubstr("'source'"));
    EXPECT_THAT(errorOf("<report title=\"x\"/>"), HasSubstr("report"));
}

TEST(ReportFile, RefusesADocumentTypeAndWithItEveryEntity) {
    EXPECT_THAT(errorOf("<!DOCTYPE report [<!ENTITY a SYSTEM \"file:///etc/passwd\">]>" +
                        reportFile("<detail><line><cell>&a;</cell></line></detail>")),
                HasSubstr("document type"));
    EXPECT_THAT(errorOf("<!DOCTYPE report>" + reportFile("")), HasSubstr("document type"));
}

TEST(ReportFile, SaysWhichNameIsMissing) {
    EXPECT_THAT(errorOf(reportFile("<detail><line><cell>{Nmae}</cell></line></detail>")),
                HasSubstr("there is no field 'Nmae'"));
    EXPECT_THAT(errorOf(reportFile("<group field=\"Plaice\"/>")), HasSubstr("'Plaice'"));
    EXPECT_THAT(errorOf(reportFile("<group field=\"Place\" sortBy=\"Name Nothing\"/>")),
                HasSubstr("'Nothing'"));
    EXPECT_THAT(errorOf(reportFile("<detail><line><cell style=\"big\">x</cell></line></detail>")),
                HasSubstr("there is no style 'big'"));
    EXPECT_THAT(errorOf(reportFile("<detail subReport=\"Sub\"/>")),
                HasSubstr("there is no sub-report 'Sub'"));
    EXPECT_THAT(errorOf(reportFile("", "<data><from>A</from><field name=\"B\">B</field>"
                                       "<formula name=\"b\">C</formula></data>")),
                HasSubstr("there are two fields 'b'"));
}

TEST(ReportFile, WantsPageNumbersInPageSectionsOnly) {
    EXPECT_THAT(errorOf(reportFile("<detail><line><cell>{@page}</cell></line></detail>")),
                HasSubstr("page sections only"));
    EXPECT_EQ(errorOf(reportFile(
                  "<pageFooter><line><cell>{@page} of {@pages}</cell></line></pageFooter>")),
              "no error");
}

TEST(ReportFile, RefusesCellsBeyondTheEdge) {
    EXPECT_THAT(errorOf(reportFile(
                    "<detail><line><cell left=\"60\" width=\"50\">x</cell></line></detail>")),
                HasSubstr("beyond 100 percent"));
}

TEST(ReportFile, ReadsBothReportsThatComeWithTheSystem) {
    for (const char* name : {"InRptc.rpt", "Except.rpt"}) {
        SCOPED_TRACE(name);
        std::ifstream file(std::string(KINTAR_REPORT_FILES) + "/" + name, std::ios::binary);
        const std::string text{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(errorOf(text), "no error");
    }
}

} // namespace
} // namespace kintar::reports
