#include "reports/ReportSite.h"
#include "reports/engine/EngineTwins.h"
#include "reports/engine/OpenReport.h"
#include "reports/engine/ReportError.h"
#include "reports/engine/qt/PdfExport.h"
#include "support/SmallDisk.h"

#include <QGuiApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using testing::ReportSite;
using testing::SmallDisk;
using ::testing::StartsWith;

bool isEmpty(const std::string& folder) {
    return std::filesystem::is_empty(folder);
}

TEST(FullDisk, LeavesNoWhoIsInListWhereItDoesNotFit) {
    ReportSite site;
    site.run("BEGIN");
    for (int id = 1; id <= 3000; ++id) {
        site.holder(id, "A Name of Some Length");
        site.use(id, "2012-03-14 08:00:00", "I");
    }
    site.run("COMMIT");
    const SmallDisk disk(site.folder / "temp", 128);
    site.folder.write("temp/InRpt.Mdb", "an old list");
    EXPECT_FALSE(site.build());
    EXPECT_THAT(site.reported, ElementsAre(StartsWith("objInRpt/Create: ")));
    EXPECT_TRUE(isEmpty(site.folder / "temp"));
}

TEST(FullDisk, LeavesNoWhoIsInListWhereNotEvenItsTablesFit) {
    ReportSite site;
    const SmallDisk disk(site.folder / "temp", 8);
    EXPECT_FALSE(site.build());
    EXPECT_THAT(site.reported, ElementsAre(StartsWith("objInRpt/MakeRptMdb: ")));
    EXPECT_TRUE(isEmpty(site.folder / "temp"));
}

TEST(FullDisk, LeavesNoPartOfAnExportedReport) {
    testing::RowsRecord record;
    record.rows = [](std::string_view) {
        return testing::people(std::vector<std::pair<std::string, std::string>>(
            5000, {"North", "A Name of Some Length"}));
    };
    ClosedConnection site;
    testing::NoDatabases databases;
    const OpenReport open(
        testing::reportFile("<detail><line><cell>{Name}</cell></line></detail>",
                            "<data><from>People</from><field name=\"Name\">Name</field></data>"),
        "x.rpt");
    const auto report =
        open.run({record, site, databases}, *DateTime::fromFields(2012, 3, 14), LocaleFormats());
    const testing::ScratchFolder folder;
    folder.makeFolder("small");
    const SmallDisk disk(folder / "small", 16);
    const std::atomic<bool> neverCancelled = false;
    EXPECT_THROW(exportPdf(*report, {}, folder / "small/out.pdf", neverCancelled), ReportError);
    EXPECT_TRUE(isEmpty(folder / "small"));
}

} // namespace
} // namespace kintar::reports

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
