#include "reports/frmPrnRpt.h"

#include "platform/PosixFiles.h"
#include "reports/ReportTwins.h"
#include "reports/engine/EngineTwins.h"
#include "support/FakeServer.h"
#include "support/ScratchFolder.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using testing::reportFile;
using ::testing::SizeIs;

/// Takes every job at once, or refuses it.
class TakingPrinters final : public platform::Printers {
public:
    struct Job {
        std::string device;
        std::string title;
        int copies;
        bool fileWasThere;
    };
    void list(Listed listed) override { listed({}); }
    void submit(const std::string& deviceName, const std::string& pdfFile, const std::string& title,
                int copies, Submitted submitted) override {
        jobs.push_back({deviceName, title, copies, std::filesystem::exists(pdfFile)});
        submitted(refusal);
    }
    void cancel() override {}

    std::vector<Job> jobs;
    std::string refusal;
};

/// Real files, as the print-out writes a real one.
class PrnRpt : public ::testing::Test {
protected:
    PrnRpt() {
        server.globals.addInstance();
        server.globals.gTempPath = folder.path();
        server.takeEvents();
        auto& record = static_cast<testing::FakeTarnRec&>(server.companion.record());
        record.open = [this](std::string_view) { return testing::people(people); };
        folder.write("x.rpt",
                     reportFile("<group field=\"Place\"/><detail><line><cell>{Name}</cell></line>"
                                "</detail>",
                                "<data><from>People</from><field name=\"Place\">Place</field>"
                                "<formula name=\"Name\">Name</formula></data>"));
    }
    frmPrnRpt& form() { return place.get(); }
    /// Prints and waits for the end; the error.
    std::string printed() {
        std::optional<std::string> ended;
        form().printRpt([&ended](const std::string& error) { ended = error; });
        while (!ended) {
            loop.turnUntilIdle();
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        return *ended;
    }
    template <class Control>
    Control& control(const char* name) {
        return *form().findChild<Control*>(QLatin1String(name));
    }
    void previewAndAwait() {
        form().PreView();
        while (control<QSpinBox>("txtPage").maximum() == 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
    }
    std::vector<std::string> reports() {
        std::vector<std::string> found;
        for (const std::string& event : server.events) {
            if (event.starts_with("ReportError")) {
                found.push_back(event);
            }
        }
        return found;
    }

    testing::FakeServer server;
    testing::ScratchFolder folder;
    platform::PosixFiles files;
    testing::SetClock clock;
    TakingPrinters printers;
    testing::HandLoop loop;
    testing::NoDatabases databases;
    std::vector<std::pair<std::string, std::string>> people{{"A", "x"}, {"B", "y"}};
    DefaultInstance<frmPrnRpt> place{[this] {
        return platform::FormWindow::make<frmPrnRpt>(
            ReportServices{server.globals, server.application, files, clock, printers, loop,
                           databases, LocaleFormats()});
    }};
};

TEST_F(PrnRpt, ReportsEachMemberThatIsCalledBeforeRptName) {
    form().PreView();
    form().Export(folder / "x.pdf");
    form().Formula("Name", "1");
    form().SectionFormat("Detail", true);
    form().SelPrinter("Front");
    EXPECT_THAT(printed(), Not(IsEmpty()));
    EXPECT_THAT(reports(), ElementsAre(HasSubstr("\r\nfrmPrnRpt/PreView 2"),
                                       HasSubstr("\r\nfrmPrnRpt/Export 2"),
                                       HasSubstr("\r\nfrmPrnRpt/Formula 2"),
                                       HasSubstr("\r\nfrmPrnRpt/SectionFormat 2"),
                                       HasSubstr("\r\nfrmPrnRpt/SelPrinter 2"),
                                       HasSubstr("\r\nfrmPrnRpt/PrintRpt 2")));
    EXPECT_FALSE(folder.has("x.pdf"));
}

TEST_F(PrnRpt, RaisesFromTheMembersThatHaveNoHandler) {
    EXPECT_THROW(form().SelectionFormula("1 = 1"), RunTimeError);
    EXPECT_THROW(form().GroupCondition(1, "Place", 0), RunTimeError);
    EXPECT_THROW(form().SortField(1, "Place", false), RunTimeError);
    EXPECT_THROW(form().SubReportSelectionFormula("Sub", "1 = 1"), RunTimeError);
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(PrnRpt, ReportsAFileThatIsMissingOrNoReportAndForgetsTheOneBefore) {
    form().RptName(folder / "x.rpt");
    form().RptName(folder / "missing.rpt");
    folder.write("bad.rpt", "no report");
    form().RptName(folder / "bad.rpt");
    EXPECT_THAT(reports(), ElementsAre(HasSubstr("\r\nfrmPrnRpt/RptName 2"),
                                       HasSubstr("\r\nfrmPrnRpt/RptName 2")));
    printed();
    EXPECT_THAT(printers.jobs, IsEmpty());
}

TEST_F(PrnRpt, PrintsOnTheDefaultPrinterWithTheCopiesThatWereSet) {
    form().setPrinters({{{"Gate", "", ""}, {"Front", "", ""}}, "Front"});
    form().RptName(folder / "x.rpt");
    form().Copies(3);
    EXPECT_EQ(printed(), "");
    ASSERT_THAT(printers.jobs, SizeIs(1));
    EXPECT_EQ(printers.jobs[0].device, "Front");
    EXPECT_EQ(printers.jobs[0].copies, 3);
    EXPECT_EQ(printers.jobs[0].title, "Title");
    EXPECT_TRUE(printers.jobs[0].fileWasThere);
    EXPECT_EQ(folder.count(), 1) << "the file that was printed is gone";
    EXPECT_FALSE(form().isVisible());
}

TEST_F(PrnRpt, PrintsOnTheSelectedPrinterAndNotOnOneThatNoPrinterIsCalled) {
    form().setPrinters({{{"Gate", "", ""}, {"Front", "", ""}}, "Front"});
    form().RptName(folder / "x.rpt");
    form().SelPrinter("Gate");
    form().SelPrinter("Nowhere");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(printers.jobs.at(0).device, "Gate");
    form().RptName(folder / "x.rpt");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(printers.jobs.at(1).device, "Front") << "the choice belonged to the report before";
}

TEST_F(PrnRpt, PrintsOnAnyPrinterWhereTheSystemHasNoDefault) {
    form().setPrinters({{{"Gate", "", ""}}, ""});
    form().RptName(folder / "x.rpt");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(printers.jobs.at(0).device, "Gate");
}

TEST_F(PrnRpt, ReportsAPrinterThatHasGone) {
    form().setPrinters({{{"Gate", "", ""}}, "Gate"});
    printers.refusal = "The printer or class does not exist.";
    form().RptName(folder / "x.rpt");
    EXPECT_THAT(printed(), HasSubstr("does not exist"));
    EXPECT_THAT(reports(), ElementsAre(HasSubstr("\r\nfrmPrnRpt/PrintRpt 2")));
}

TEST_F(PrnRpt, ReportsATemporaryFolderThatCannotBeWrittenTo) {
    server.globals.gTempPath = folder / "nowhere";
    form().RptName(folder / "x.rpt");
    EXPECT_THAT(printed(), HasSubstr("cannot be written"));
    EXPECT_THAT(reports(), ElementsAre(HasSubstr("\r\nfrmPrnRpt/PrintRpt 2")));
    EXPECT_THAT(printers.jobs, IsEmpty());
}

TEST_F(PrnRpt, EndsAPrintOutWithTheForm) {
    form().RptName(folder / "x.rpt");
    std::optional<std::string> ended;
    form().printRpt([&ended](const std::string& error) { ended = error; });
    place.unload();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    loop.turnUntilIdle();
    ASSERT_TRUE(ended.has_value());
    EXPECT_THAT(*ended, HasSubstr("closed"));
}

TEST_F(PrnRpt, ExportsInPlaceOfAnExistingFileWithoutAsking) {
    folder.write("out.pdf", "an old file");
    form().RptName(folder / "x.rpt");
    form().Export(folder / "out.pdf");
    EXPECT_TRUE(folder.read("out.pdf").starts_with("%PDF-"));
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(PrnRpt, ExportsNothingWhereTheFolderIsMissing) {
    form().RptName(folder / "x.rpt");
    form().Export(folder / "no/out.pdf");
    EXPECT_THAT(reports(), ElementsAre(HasSubstr("\r\nfrmPrnRpt/Export 2")));
}

TEST_F(PrnRpt, AppliesWhatCallersSetToTheReportThatIsOpen) {
    form().RptName(folder / "x.rpt");
    form().Formula("NAME", "Nick");
    form().SelectionFormula("Place = 'A'");
    form().GroupCondition(1, "Name", 0);
    form().SortField(1, "Place", true);
    form().SectionFormat("detail", true);
    form().Export(folder / "out.pdf");
    EXPECT_THAT(server.events, Contains("SELECT Place AS [Place], Nick AS [Name] FROM People WHERE "
                                        "(Place = 'A') ORDER BY [Name], [Place] DESC"));
    EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(PrnRpt, ReportsASectionThatTheReportDoesNotHave) {
    form().RptName(folder / "x.rpt");
    form().SectionFormat("Nowhere", true);
    EXPECT_THAT(reports(), ElementsAre(HasSubstr("\r\nfrmPrnRpt/SectionFormat 2")));
}

TEST_F(PrnRpt, ShowsAReportPageByPageInItsViewer) {
    people.clear();
    for (int row = 1; row <= 200; ++row) {
        people.emplace_back("A", "Holder" + std::to_string(row));
    }
    form().RptName(folder / "x.rpt");
    EXPECT_FALSE(control<QWidget>("CRV").isVisible());
    previewAndAwait();
    EXPECT_TRUE(form().isVisible());
    EXPECT_TRUE(control<QWidget>("CRV").isVisible());
    EXPECT_EQ(control<QWidget>("CRV").pos(), QPoint(0, 0));
    EXPECT_EQ(control<QWidget>("CRV").size(), form().size());
    auto& page = control<QSpinBox>("txtPage");
    EXPECT_GT(page.maximum(), 2);
    control<QPushButton>("cmdNext").click();
    EXPECT_EQ(page.value(), 2);
    control<QPushButton>("cmdPrevious").click();
    EXPECT_EQ(page.value(), 1);
    EXPECT_FALSE(control<QPushButton>("cmdPrevious").isEnabled());
}

TEST_F(PrnRpt, FindsTextOnALaterPage) {
    people.clear();
    for (int row = 1; row <= 200; ++row) {
        people.emplace_back("A", "Holder" + std::to_string(row));
    }
    form().RptName(folder / "x.rpt");
    previewAndAwait();
    control<QLineEdit>("txtFind").setText(QStringLiteral("HOLDER200"));
    control<QPushButton>("cmdFind").click();
    auto& page = control<QSpinBox>("txtPage");
    EXPECT_EQ(page.value(), page.maximum());
    control<QLineEdit>("txtFind").setText(QStringLiteral("nobody"));
    control<QPushButton>("cmdFind").click();
    EXPECT_EQ(page.value(), page.maximum());
}

TEST_F(PrnRpt, ZoomsItsPages) {
    form().RptName(folder / "x.rpt");
    previewAndAwait();
    const auto widthOfPage = [this] {
        int widest = 0;
        for (const QWidget* child : control<QWidget>("CRV").findChildren<QWidget*>()) {
            widest = std::max(widest, child->width());
        }
        return widest;
    };
    auto& zoom = control<QComboBox>("cboZoom");
    zoom.setCurrentIndex(zoom.count() - 1);
    EXPECT_GT(widthOfPage(), 2000);
}

} // namespace
} // namespace kintar

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
