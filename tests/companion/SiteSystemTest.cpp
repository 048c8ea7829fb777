#include "companion/SiteSystem.h"

#include "companion/DatabaseError.h"
#include "companion/SiteCompanion.h"
#include "companion/SiteFolder.h"
#include "support/PrivateCluster.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace kintar::companion {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class KeptLog final : public Log {
public:
    void write(LogLevel /*level*/, const std::string& line) override { lines.push_back(line); }
    std::vector<std::string> lines;
};

class KeptNotices final : public Notices {
public:
    void writeFailed(const std::string& reason) override { reasons.push_back(reason); }
    std::vector<std::string> reasons;
};

class SiteSystemTest : public ::testing::TestWithParam<TestEngine> {
protected:
    void create() {
        std::string path = site.path();
        bool flag = true;
        EXPECT_TRUE(system->Create(path, flag));
    }

    std::string createError(std::string path) {
        bool flag = true;
        try {
            system->Create(path, flag);
        } catch (const RunTimeError& error) {
            return error.what();
        }
        return "no error";
    }

    SiteFolder site{GetParam()};
    KeptLog log;
    KeptNotices notices;
    SiteCompanion companion{log, notices};
    std::shared_ptr<TarnSys> system = companion.newSystem();
};

TEST_P(SiteSystemTest, CreateOpensTwoConnectionsAndKnowsTheDataFolder) {
    create();
    EXPECT_EQ(system->DataPath(), site.path() + "/Data");
    EXPECT_TRUE(system->DataConnection()->isOpen());
    EXPECT_TRUE(system->SetupConnection()->isOpen());
    EXPECT_NE(system->DataConnection(), system->SetupConnection());
}

TEST_P(SiteSystemTest, ConnectionsAreClosedOneByOne) {
    create();
    const auto data = system->DataConnection();
    data->Close();
    data->Close();
    EXPECT_FALSE(data->isOpen());
    EXPECT_TRUE(system->SetupConnection()->isOpen());
}

TEST_P(SiteSystemTest, TheSetupConnectionOnlyReads) {
    create();
    EXPECT_THROW(companion.record().ExecuteSQL("DELETE FROM Texts", *system->SetupConnection()),
                 RunTimeError);
    EXPECT_EQ(system->GetText(204), "Search Names");
}

TEST_P(SiteSystemTest, BeforeCreateThereIsNoConnection) {
    try {
        system->DataConnection();
        FAIL() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.number(), 3709);
    }
    EXPECT_EQ(system->DataPath(), "");
}

TEST_P(SiteSystemTest, CreateSaysWhatIsMissing) {
    EXPECT_THAT(createError(""), HasSubstr("no site folder"));
    EXPECT_THAT(createError(site.path() + "/Data"), HasSubstr("kintar3.ini is missing"));
    std::filesystem::remove(site.path() + "/Data");
    EXPECT_THAT(createError(site.path()), HasSubstr("no data folder"));
    std::filesystem::create_directory(site.path() + "/Data");
    site.dropDatabase();
    EXPECT_THAT(createError(site.path()), GetParam() == TestEngine::Sqlite
                                              ? HasSubstr("no database file")
                                              : HasSubstr("cannot be reached"));
    EXPECT_FALSE(std::filesystem::exists(site.database())) << "nothing is made in its place";
}

TEST_P(SiteSystemTest, TextsComeByNumber) {
    create();
    EXPECT_EQ(system->GetText(456), "Alarm");
    EXPECT_EQ(system->GetText(999), "");
    EXPECT_EQ(system->GetText(10001), "") << "a Null is no text";
}

TEST_P(SiteSystemTest, ASiteMayNameAnotherTableOfTexts) {
    site.foreign("CREATE TABLE Texte (Num INTEGER PRIMARY KEY, Text TEXT);"
                 "INSERT INTO Texte VALUES (456, 'Alarm!')");
    site.write("kintar3.ini", "[Site]\nDatabase=" + site.database() + "\nTexts=Texte\n");
    create();
    EXPECT_EQ(system->GetText(456), "Alarm!");
    EXPECT_EQ(system->GetText(204), "");
}

TEST_P(SiteSystemTest, ATextThatCannotBeReadIsEmptyAndReported) {
    create();
    site.foreign("DROP TABLE Texts");
    EXPECT_EQ(system->GetText(204), "");
    ASSERT_EQ(log.lines.size(), 1U);
    EXPECT_THAT(log.lines.front(), HasSubstr("TarnSys/GetText"));
    EXPECT_THAT(log.lines.front(), HasSubstr("unknown table Texts"));
}

TEST_P(SiteSystemTest, AProfileWithAllMenusHasEveryRight) {
    create();
    system->SetOperator(1);
    EXPECT_TRUE(system->HasRight("L3M2"));
    EXPECT_TRUE(system->HasRight("L99M12345"));
}

TEST_P(SiteSystemTest, ARightHoldsForTheLocationsOfItsGroup) {
    create();
    system->SetOperator(2);
    EXPECT_TRUE(system->HasRight("L3M2")) << "location 1 is of group 3";
    EXPECT_FALSE(system->HasRight("L4M2")) << "the row for location 5 is not viewed";
    EXPECT_TRUE(system->HasRight("L4M1061")) << "location 0 is of every group";
    EXPECT_FALSE(system->HasRight("L3M3"));
}

TEST_P(SiteSystemTest, WithoutAnOperatorOrProfileThereIsNoRight) {
    create();
    for (const std::int32_t nobody : {0, 3, 4, 5, 99}) {
        system->SetOperator(nobody);
        EXPECT_FALSE(system->HasRight("L3M1061")) << nobody;
    }
}

TEST_P(SiteSystemTest, WhatIsNotWrittenAsARightIsNone) {
    create();
    system->SetOperator(1);
    for (const char* name : {"", "L", "L3", "L3M", "M2", "L3M2 ", " L3M2", "l3m2", "L3M2x", "LxM2",
                             "L99999999999M2", "L3 OR 1=1M2"}) {
        EXPECT_FALSE(system->HasRight(name)) << name;
    }
}

TEST_P(SiteSystemTest, TheCompanyFilterListsTheOperatorsCompaniesAndNobodys) {
    create();
    system->SetOperator(2);
    EXPECT_EQ(system->CompanyFilter("[Names].Company", 3, true),
              " AND [Names].Company IN (0, 2, 4)");
    EXPECT_EQ(system->CompanyFilter("Company", 3, true), " AND Company IN (0, 2, 4)");
}

TEST_P(SiteSystemTest, WithoutCompaniesOfTheOperatorNothingIsRestricted) {
    create();
    system->SetOperator(2);
    EXPECT_EQ(system->CompanyFilter("[Names].Company", 4, true), "");
    system->SetOperator(0);
    EXPECT_EQ(system->CompanyFilter("[Names].Company", 3, true), "");
}

TEST_P(SiteSystemTest, AReportHoldsNumberRoutineAndTextOnOneLine) {
    system->ReportError(91, "Object variable not set\r\nobjInRpt/Create", 2);
    EXPECT_THAT(log.lines, ElementsAre("error 91 in objInRpt/Create: Object variable not set "
                                       "(kind 2)"));
}

TEST_P(SiteSystemTest, AReportWithoutARoutineSaysSo) {
    system->ReportError(5, "", 2);
    EXPECT_THAT(log.lines, ElementsAre("error 5 in unknown routine:  (kind 2)"));
}

TEST_P(SiteSystemTest, AnEmptyVersionIsRefused) {
    EXPECT_THROW(system->SetVersion(""), RunTimeError);
    system->SetVersion("4.4.12");
}

TEST_P(SiteSystemTest, AFailedWriteIsAnnounced) {
    create();
    companion.record().ExecuteSQL("DELETE FROM Skills", *system->DataConnection());
    EXPECT_THAT(notices.reasons, IsEmpty());
    EXPECT_THROW(
        companion.record().ExecuteSQL("INSERT INTO IO (ID) VALUES (12)", *system->DataConnection()),
        RunTimeError);
    ASSERT_EQ(notices.reasons.size(), 1U);
    EXPECT_THAT(notices.reasons.front(), GetParam() == TestEngine::Sqlite
                                             ? HasSubstr("UNIQUE constraint failed: IO.ID")
                                             : HasSubstr("io_pkey of io"));
}

TEST_P(SiteSystemTest, AnUpdateThatMeetsNoRowIsAnnouncedAndADeletionIsNot) {
    create();
    const auto run = [&](const char* sql) {
        companion.record().ExecuteSQL(sql, *system->DataConnection());
    };
    run("UPDATE OvrSchedule SET Status = 1 WHERE ID = 0");
    EXPECT_THAT(notices.reasons, ElementsAre("What it would have changed is not in the database."));
    run("DELETE FROM OvrSchedule WHERE ID = 0");
    run("UPDATE IO SET Loc = Loc WHERE ID = 12");
    EXPECT_EQ(notices.reasons.size(), 1U);
}

TEST(SiteLimits, EndAStatementButNotAReadThatNobodyWaitsFor) {
    const SiteFolder site(TestEngine::Postgres);
    site.write("kintar3.ini", "[Site]\nDatabase=" + site.database() + "\nStatementSeconds=1\n");
    KeptLog log;
    KeptNotices notices;
    SiteCompanion companion(log, notices);
    const std::shared_ptr<TarnSys> system = companion.newSystem();
    std::string path = site.path();
    bool flag = true;
    ASSERT_TRUE(system->Create(path, flag));
    testing::ServerConnection other(site.database());
    other.run("BEGIN; LOCK TABLE io IN ACCESS EXCLUSIVE MODE");
    const auto errorOf = [&](Connection& connection) -> std::string {
        try {
            companion.record().OpenRecordset("SELECT ID FROM IO", connection);
        } catch (const RunTimeError& error) {
            return error.what();
        }
        return "no error";
    };
    EXPECT_THAT(errorOf(*system->DataConnection()), HasSubstr("took too long"));
    // This one waits until the lock itself has been waited for too long.
    EXPECT_THAT(errorOf(system->newReadSession()->connection()), HasSubstr("is locked"));
}

INSTANTIATE_TEST_SUITE_P(Engines, SiteSystemTest,
                         ::testing::Values(TestEngine::Sqlite, TestEngine::Postgres),
                         [](const auto& instance) { return nameOf(instance.param); });

TEST(PlainLine, HasNoLineBreaksAndNoControlCharacters) {
    EXPECT_EQ(plainLine("a\r\nb\x1b[2Jc\td"), "a b [2Jc d");
    EXPECT_EQ(plainLine("Zoë"), "Zoë");
}

} // namespace
} // namespace kintar::companion
