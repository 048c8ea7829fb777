#include "companion/SiteSettings.h"

#include "companion/DatabaseError.h"
#include "companion/SiteFolder.h"

#include <gtest/gtest.h>

namespace kintar::companion {
namespace {

std::string parseError(std::string_view text) {
    try {
        SiteSettings::parse(text, "/site");
    } catch (const DatabaseError& error) {
        return error.what();
    }
    return "no error";
}

TEST(SiteSettings, RelativePathsStartAtTheSite) {
    const auto settings =
        SiteSettings::parse("[Site]\nDatabase=db/site.db\nData=Data\nTexts=Texte\n", "/site");
    EXPECT_EQ(settings.database, "/site/db/site.db");
    EXPECT_EQ(settings.data, "/site/Data");
    EXPECT_EQ(settings.textsTable, "Texte");
}

TEST(SiteSettings, AbsolutePathsStayAndBackslashesSeparate) {
    const auto settings =
        SiteSettings::parse("[Site]\nDatabase=/srv/x.db\nData=shared\\Data\\\n", "/site");
    EXPECT_EQ(settings.database, "/srv/x.db");
    EXPECT_EQ(settings.data, "/site/shared/Data");
}

TEST(SiteSettings, WhatIsLeftOutHasItsUsualPlace) {
    const auto settings = SiteSettings::parse("", "/site");
    EXPECT_EQ(settings.database, "/site/site.db");
    EXPECT_EQ(settings.data, "/site/Data");
    EXPECT_EQ(settings.textsTable, "Texts");
}

TEST(SiteSettings, CommentsBlankLinesCaseAndOtherSectionsDoNotMatter) {
    const auto settings = SiteSettings::parse(
        "\xEF\xBB\xBF; a site\r\n\r\n# more\r\n[Other]\r\nDatabase=x\r\n[SITE]\r\n"
        "  dataBASE =  my site.db  \r\n",
        "/site");
    EXPECT_EQ(settings.database, "/site/my site.db");
}

TEST(SiteSettings, ALineThatCannotBeReadIsNamed) {
    EXPECT_EQ(parseError("[Site]\nDatabase\n"),
              "kintar3.ini, line 2: neither a section nor a key with its value.");
    EXPECT_EQ(parseError("[Site\n"), "kintar3.ini, line 1: a section has no closing bracket.");
    EXPECT_EQ(parseError("[Site]\n\nData=\n"), "kintar3.ini, line 3: a key without a value.");
    EXPECT_EQ(parseError("[Site]\nPassword=x\n"),
              "kintar3.ini, line 2: unknown key; there are Database, Data, Texts, ConnectSeconds, "
              "StatementSeconds and AnswerSeconds.");
    EXPECT_EQ(parseError(std::string_view("[Site]\0", 7)), "kintar3.ini holds a NUL character.");
}

TEST(SiteSettings, ATableOfTextsIsAName) {
    EXPECT_EQ(parseError("[Site]\nTexts=Texts] WHERE 1=1\n"),
              "kintar3.ini: Texts is not the name of a table.");
}

TEST(SiteSettings, AFileThatIsTooLongIsRefused) {
    const SiteFolder site;
    site.write("kintar3.ini", std::string(100000, '\n'));
    EXPECT_THROW(SiteSettings::read(site.path()), DatabaseError);
}

TEST(SiteSettings, SayHowLongADatabaseServerIsWaitedFor) {
    EXPECT_EQ(SiteSettings::parse("[Site]\n", "/site").limits, ServerLimits());
    const ServerLimits limits =
        SiteSettings::parse("[Site]\nConnectSeconds=1\nstatementseconds = 600\nAnswerSeconds=7\n",
                            "/site")
            .limits;
    EXPECT_EQ(limits.connect.count(), 1);
    EXPECT_EQ(limits.statement.count(), 600);
    EXPECT_EQ(limits.answer.count(), 7);
}

TEST(SiteSettings, TakeNoTimeLimitThatIsNone) {
    for (const char* value : {"0", "-1", "601", "4.5", "4 s", "soon", "99999999999999999999"}) {
        EXPECT_EQ(parseError("[Site]\nStatementSeconds=" + std::string(value) + "\n"),
                  "kintar3.ini, line 2: a time limit is a whole number of seconds from 1 to 600.")
            << value;
    }
}

} // namespace
} // namespace kintar::companion
