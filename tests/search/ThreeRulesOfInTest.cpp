// Three windows and lists say who is in, each by a rule of its own. The rules differ, and are meant
// to: here they stand side by side.
#include "base/RunTimeError.h"
#include "reports/InRptBuild.h"
#include "reports/ReportTwins.h"
#include "search/CardStatus.h"
#include "search/HolderReader.h"
#include "search/SearchSite.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace kintar::search {
namespace {

using testing::SearchSite;

/// Reads from the site; what the report writes is only counted by the report itself.
class ReadingRecord final : public TarnRec {
public:
    explicit ReadingRecord(TarnRec& site) : site_(site) {}
    Recordset OpenRecordset(std::string_view sql, Connection& connection) override {
        return connection.isOpen() ? site_.OpenRecordset(sql, connection) : Recordset();
    }
    void ExecuteSQL(std::string_view /*sql*/, Connection& /*connection*/) override {}
    bool FindRecord(Recordset& rows, std::string_view criterion) override {
        return site_.FindRecord(rows, criterion);
    }
    std::string SqlText(std::string_view text) override { return site_.SqlText(text); }
    std::string SqlDate(DateTime value) override { return site_.SqlDate(value); }
    void FillListBox(ListBox& list, Recordset& rows, std::string_view text,
                     std::string_view data) override {
        site_.FillListBox(list, rows, text, data);
    }
    void PrepareForm(Connection& /*connection*/, PreparableForm& /*form*/) override {}

private:
    TarnRec& site_;
};

/// Reader states of a holder's cards, the card used last in front.
using Cards = std::vector<std::vector<std::string>>;

struct Answers {
    bool detailPane = false;
    bool board = false;
    bool report = false;
    bool operator==(const Answers&) const = default;
};

void PrintTo(const Answers& answers, std::ostream* out) {
    *out << "pane " << answers.detailPane << ", board " << answers.board << ", report "
         << answers.report;
}

class ThreeRulesOfIn : public ::testing::Test {
protected:
    Answers answersFor(const Cards& cards) {
        store(cards);
        TarnRec& record = site.globals().tarnRec();
        Connection& data = site.globals().gCnn();
        Answers answers;
        answers.detailPane = !readCardStatus({record, data}, "False", 1, {}).status.empty();
        answers.board =
            board::stateOf(board::readLastUse(record, data, 1, {})).icon == board::Icon::In;
        answers.report = inReport();
        return answers;
    }

private:
    void store(const Cards& cards) {
        std::string sql = "DELETE FROM Names; DELETE FROM Cards; DELETE FROM LocCards; DELETE FROM "
                          "Loc; INSERT INTO Names VALUES(1,'Smith','Ann',3,0,0,0); "
                          "INSERT INTO Loc VALUES(11,3,'North','',0);";
        int card = 0;
        for (const auto& states : cards) {
            ++card;
            const std::string id = std::to_string(card);
            sql += "INSERT INTO Cards VALUES(" + id + ",1,3,'7','7',1,NULL,NULL,0,0);";
            sql += "INSERT INTO LocCards VALUES(" + id + "," + id + ",11,'2012-03-14 " +
                   std::to_string(17 - card) + ":00:00',1,'" + states.at(0) + "','" + states.at(1) +
                   "','" + states.at(2) + "','" + states.at(3) + "');";
        }
        site.foreign(sql);
    }
    bool inReport() {
        ReadingRecord record(site.globals().tarnRec());
        kintar::testing::MemoryFiles files;
        kintar::testing::MemoryReportDatabases databases(files);
        kintar::testing::SetClock clock;
        reports::InRptState state;
        reports::InRptBuild build(
            {record, site.globals().gCnn(), databases, files, clock, "/tmp",
             [] { return std::string("/data"); },
             [](const std::exception& error, std::string_view) { ADD_FAILURE() << error.what(); },
             [] { return true; }},
            11, state);
        while (build.step()) {
        }
        EXPECT_TRUE(build.succeeded()) << build.error();
        return state.inCount > 0;
    }

    SearchSite site;
};

TEST_F(ThreeRulesOfIn, AgreeWhereTheFirstReaderOfTheOnlyCardSaysIn) {
    EXPECT_EQ(answersFor({{"I", "N", "N", "N"}}), (Answers{true, true, true}));
}

TEST_F(ThreeRulesOfIn, AgreeWhereNoReaderKnowsTheHolder) {
    EXPECT_EQ(answersFor({{"N", "N", "N", "N"}}), (Answers{false, false, false}));
}

TEST_F(ThreeRulesOfIn, OnlyTheDetailPaneTakesAnyStateButFourNs) {
    EXPECT_EQ(answersFor({{"O", "N", "N", "N"}}), (Answers{true, false, false}));
}

TEST_F(ThreeRulesOfIn, TheReportLooksAtTheFirstReaderAlone) {
    EXPECT_EQ(answersFor({{"O", "I", "N", "N"}}), (Answers{true, true, false}));
}

TEST_F(ThreeRulesOfIn, TheReportLooksAtEveryCardTheOthersAtTheOneUsedLast) {
    EXPECT_EQ(answersFor({{"N", "N", "N", "N"}, {"I", "N", "N", "N"}}),
              (Answers{false, false, true}));
}

} // namespace
} // namespace kintar::search
