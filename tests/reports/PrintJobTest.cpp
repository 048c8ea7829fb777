#include "reports/PrintJob.h"

#include "reports/ReportTwins.h"
#include "support/FakeServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::reports {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using testing::Events;
using testing::HandLoop;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using testing::MemoryFiles;
using testing::MemoryReportDatabases;
using testing::SetClock;
using ::testing::StartsWith;

class FakePrinters final : public platform::Printers {
public:
    void list(Listed listed) override { asked = std::move(listed); }
    void submit(const std::string& /*deviceName*/, const std::string& /*pdfFile*/,
                const std::string& /*title*/, int /*copies*/, Submitted /*submitted*/) override {}
    void cancel() override {}

    Listed asked;
};

class FakeReportForm final : public ReportForm {
public:
    explicit FakeReportForm(Events& events) : events_(events) {}
    void RptName(const std::string& path) override { events_.push_back("RptName " + path); }
    void SelPrinter(const std::string& deviceName) override {
        events_.push_back("SelPrinter " + deviceName);
    }
    void Copies(std::int16_t copies) override {
        events_.push_back("Copies " + std::to_string(copies));
    }
    void setPrinters(const platform::PrinterList& /*printers*/) override {}
    void printRpt(std::function<void(const std::string&)> printed) override {
        events_.push_back("PrintRpt");
        printed_ = std::move(printed);
    }
    void endPrinting(const std::string& error) { printed_(error); }

private:
    Events& events_;
    std::function<void(const std::string&)> printed_;
};

struct PrintRoom {
    testing::FakeServer server;
    MemoryFiles files;
    MemoryReportDatabases databases{files};
    SetClock clock;
    HandLoop loop;
    ReportTurns turns{loop};
    FakePrinters printers;
    Events events;
    FakeReportForm form{events};
    std::vector<std::string> ended;
    std::vector<std::string> progress;
    int builders = 0;
    std::unique_ptr<PrintJob> job;

    PrintRoom() {
        server.globals.gSysPath = "/site";
        server.globals.addInstance();
        server.takeEvents();
        files.files["/site/Reports/InRptc.rpt"] = "the layout";
        auto& record = static_cast<testing::FakeTarnRec&>(server.companion.record());
        record.open = [](std::string_view sql) {
            Recordset rows({{"LocGrp", ColumnType::Integer},
                            {"Loc", ColumnType::Integer},
                            {"Dev", ColumnType::Integer},
                            {"NameID", ColumnType::Integer}});
            if (sql.starts_with("Select LocGrp") || sql.starts_with("Select Loc From")) {
                rows.addInteger(3);
                rows.addInteger(31);
                rows.addInteger(1);
                rows.addInteger(1);
            }
            return rows;
        };
    }
    void begin(StoredPrintRequest request) {
        job = std::make_unique<PrintJob>(
            PrintWorld{server.globals, files, printers, loop,
                       [this]() -> ReportForm& { return form; },
                       [this] {
                           ++builders;
                           return std::make_unique<objInRpt>(server.globals, databases, files,
                                                             clock, loop, turns);
                       }},
            request, [this](const std::string& text) { progress.push_back(text); },
            [this](const std::string& error) { ended.push_back(error); });
        job->start();
    }
    void answer(std::vector<std::string> names) {
        platform::PrinterList list;
        for (std::string& name : names) {
            list.printers.push_back({std::move(name), "driver", "port"});
        }
        printers.asked(list);
    }
};

constexpr StoredPrintRequest status{PrintRequest::Status, 0};
constexpr StoredPrintRequest whoIsIn{PrintRequest::WhoIsIn, 31};

TEST(PrintJob, DoesNothingAndIsClearedWithoutAPrinter) {
    PrintRoom room;
    room.begin(whoIsIn);
    room.answer({});
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events, IsEmpty());
    EXPECT_EQ(room.builders, 0);
    EXPECT_THAT(room.ended, ElementsAre("There is no printer."));
}

TEST(PrintJob, PrintsTheStatusReportInOrder) {
    PrintRoom room;
    room.begin(status);
    room.answer({"Front"});
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events,
                ElementsAre("RptName /site/Reports/Except.rpt", "Copies 1", "PrintRpt"));
    EXPECT_THAT(room.ended, IsEmpty());
    room.form.endPrinting("");
    EXPECT_THAT(room.ended, ElementsAre(""));
}

TEST(PrintJob, BuildsCopiesTheLayoutAndPrintsWhoIsIn) {
    PrintRoom room;
    room.files.files["/data/InRptByLoc.txt"] = "0,31,;Gate";
    room.files.files["/tmp/TarnTmp/InRptc.rpt"] = "the layout of another day";
    room.begin(whoIsIn);
    room.answer({"Front", "Gate"});
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events, ElementsAre("RptName /tmp/TarnTmp/InRptc.rpt", "SelPrinter Gate",
                                         "Copies 1", "PrintRpt"));
    EXPECT_EQ(room.files.files.at("/tmp/TarnTmp/InRptc.rpt"), "the layout");
    EXPECT_EQ(room.files.files.at("/tmp/TarnTmp/InRpt.Mdb"), "a new list");
    room.form.endPrinting("");
    EXPECT_THAT(room.ended, ElementsAre(""));
}

TEST(PrintJob, LeavesThePrinterWhereTheWantedNameMatchesNone) {
    for (const char* wanted : {"Elsewhere", "gate", " Gate", ""}) {
        SCOPED_TRACE(wanted);
        PrintRoom room;
        room.files.files["/data/InRptByLoc.txt"] = std::string("0,31,;") + wanted;
        room.begin(whoIsIn);
        room.answer({"Front", "Gate"});
        room.loop.turnUntilIdle();
        EXPECT_THAT(room.events,
                    ElementsAre("RptName /tmp/TarnTmp/InRptc.rpt", "Copies 1", "PrintRpt"));
    }
}

TEST(PrintJob, UsesAFreshBuilderForEachRequest) {
    PrintRoom room;
    for (int request = 1; request <= 2; ++request) {
        room.begin(whoIsIn);
        room.answer({"Front"});
        room.loop.turnUntilIdle();
        EXPECT_EQ(room.builders, request);
    }
}

TEST(PrintJob, PrintsNothingAfterAFailedBuild) {
    PrintRoom room;
    room.databases.cannotMove = true;
    room.files.files["/tmp/TarnTmp/InRpt.Mdb"] = "an old list";
    room.begin(whoIsIn);
    room.answer({"Front"});
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events, IsEmpty());
    EXPECT_THAT(room.ended, ElementsAre("The who-is-in list could not be made: Disk full"));
    EXPECT_THAT(room.server.events, Contains(HasSubstr("\r\nobjInRpt/Create 2")));
    EXPECT_FALSE(room.files.files.contains("/tmp/TarnTmp/InRpt.Mdb"));
}

TEST(PrintJob, ReportsALayoutThatIsMissingOrCannotBeCopied) {
    PrintRoom missing;
    missing.files.files.erase("/site/Reports/InRptc.rpt");
    missing.begin(whoIsIn);
    missing.answer({"Front"});
    missing.loop.turnUntilIdle();
    EXPECT_THAT(missing.ended, ElementsAre(StartsWith("File not found: ")));
    EXPECT_THAT(missing.server.events, Contains(HasSubstr("\r\nfrmNameSearch/Timer1_Timer 2")));
    EXPECT_THAT(missing.events, IsEmpty());
}

TEST(PrintJob, PassesOnWhatPrintingFailedOf) {
    PrintRoom room;
    room.begin(status);
    room.answer({"Front"});
    room.loop.turnUntilIdle();
    room.form.endPrinting("The printer has gone.");
    EXPECT_THAT(room.ended, ElementsAre("The printer has gone."));
}

TEST(PrintJob, DropsTheRestWhenItIsDestroyedWhileItWaits) {
    PrintRoom room;
    room.begin(whoIsIn);
    room.job.reset();
    room.answer({"Front"});
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events, IsEmpty());
    EXPECT_THAT(room.ended, IsEmpty());

    room.begin(whoIsIn);
    room.answer({"Front"});
    room.loop.turn();
    room.job.reset();
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events, IsEmpty());
    EXPECT_FALSE(room.files.files.contains("/tmp/TarnTmp/InRpt.Mdb"));
}

TEST(PrintJob, EndsWithTheSharedState) {
    PrintRoom room;
    room.begin(whoIsIn);
    room.answer({"Front"});
    room.loop.turn();
    room.loop.turn();
    room.server.globals.removeInstance();
    room.loop.turnUntilIdle();
    EXPECT_THAT(room.events, IsEmpty());
    EXPECT_THAT(room.ended, ElementsAre(HasSubstr("shared state has ended")));
    EXPECT_FALSE(room.files.files.contains("/tmp/TarnTmp/InRpt.Mdb"));
}

} // namespace
} // namespace kintar::reports
