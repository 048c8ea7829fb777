#include "tools/sql/SqlCommand.h"

#include "base/RunTimeError.h"
#include "companion/SiteFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace kintar::tools {
namespace {

using ::testing::HasSubstr;

class SqlCommandTest : public ::testing::Test {
protected:
    std::string run(const std::string& statement, bool write = false, bool explain = false) {
        std::ostringstream out;
        try {
            runSql({site.path(), statement, RowsFormat::Aligned, explain, write}, out);
        } catch (const RunTimeError& error) {
            return std::string("error: ") + error.what();
        }
        return out.str();
    }

    companion::SiteFolder site;
};

TEST_F(SqlCommandTest, PrintsTheRowsOfAStatement) {
    EXPECT_EQ(run("SELECT ID, Name FROM SKillName WHERE Name LIKE 'c%'"),
              "ID  Name\n--  -----\n 7  Crane\n(1 row)\n");
}

TEST_F(SqlCommandTest, WritesOnlyWhereThatIsAllowed) {
    EXPECT_EQ(run("DELETE FROM IO"), "error: A statement that writes needs --write.");
    EXPECT_THAT(run("SELECT ID FROM IO"), HasSubstr("(1 row)"));
    EXPECT_EQ(run("DELETE FROM IO", true), "");
    EXPECT_THAT(run("SELECT ID FROM IO"), HasSubstr("(0 rows)"));
}

TEST_F(SqlCommandTest, ExplainsWithoutRunning) {
    const std::string explained = run("DELETE FROM IO WHERE ID = 12", true, true);
    EXPECT_EQ(explained, "The engine gets:\n"
                         "  DELETE FROM \"IO\" WHERE \"IO\".\"ID\" = ?1\n"
                         "Values lifted from the statement:\n"
                         "  ?1 = 12\n"
                         "Values made from them:\n"
                         "Plan:\n"
                         "  SEARCH IO USING INTEGER PRIMARY KEY (rowid=?)\n");
    EXPECT_THAT(run("SELECT ID FROM IO"), HasSubstr("(1 row)"));
}

TEST_F(SqlCommandTest, ExplainsTheValuesOfASearch) {
    const std::string explained =
        run("SELECT ID FROM [Names] WHERE LName LIKE 'o''b%'", false, true);
    EXPECT_THAT(explained, HasSubstr("  ?1 = 'o''b%'\n"));
    EXPECT_THAT(explained, HasSubstr("  ?2 = 'o''b'\n  ?3 = 'o''c'\n"));
    EXPECT_THAT(explained, HasSubstr("LName>? AND LName<?"));
}

TEST_F(SqlCommandTest, SaysWhereAStatementIsWrong) {
    EXPECT_EQ(run("SELECT ID FRM IO"), "error: Position 11: expected FROM, found a name");
    EXPECT_EQ(run(""), "error: Position 1: expected SELECT, INSERT, UPDATE or DELETE, found the "
                       "end of the statement");
}

TEST_F(SqlCommandTest, SaysWhatIsWrongWithTheSite) {
    std::ostringstream out;
    EXPECT_THROW(runSql({site.path() + "/none", "SELECT ID FROM IO"}, out), RunTimeError);
}

} // namespace
} // namespace kintar::tools
