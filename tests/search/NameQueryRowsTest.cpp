// The rows that the name search finds in a real database.
#include "search/NameList.h"
#include "search/NameQuery.h"

#include "companion/OpenDatabase.h"
#include "companion/RecordHelper.h"
#include "companion/SiteFolder.h"

#include <gtest/gtest.h>

namespace kintar::search {
namespace {

using Texts = std::vector<std::string>;

class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& /*what*/) override {}
};

class NameQueryRows : public ::testing::TestWithParam<companion::TestEngine> {
protected:
    std::string statement(const NameCriteria& criteria) {
        return LoadNames(criteria,
                         {.sqlText = [this](std::string_view t) { return helper.SqlText(t); },
                          .companyFilter = [this](auto, auto, auto) { return filter; }});
    }
    Texts found(const NameCriteria& criteria, std::size_t column = 0) {
        NameList list;
        list.fill(helper.OpenRecordset(statement(criteria), connection));
        Texts texts;
        for (std::size_t row = 0; row < list.count(); ++row) {
            texts.push_back(list.value(row, column).text());
        }
        return texts;
    }

    companion::SiteFolder site{GetParam()};
    std::unique_ptr<companion::DatabaseConnection> opened =
        companion::openDatabase(site.database(), companion::DatabaseAccess::ReadOnly);
    companion::DatabaseConnection& connection = *opened;
    NoNotices notices;
    companion::RecordHelper helper{notices};
    std::string filter;
};

NameCriteria criteria(const std::string& lastName, const std::string& firstName = "",
                      std::int16_t mode = 0, std::int32_t locGrp = 3) {
    return {.locGrp = locGrp, .mode = mode, .lastName = lastName, .firstName = firstName};
}

TEST_P(NameQueryRows, EmptyBoxesListTheGroupInTheOrderOfNames) {
    EXPECT_EQ(found(criteria("")),
              (Texts{"Kelvin, Lord", "O'Brien, Zoë", "ſmall, Ulf", "smith, jane", "Smith, John",
                     "SMYTHE, Ann", "ΠΑΠΑΔΆΚΗΣ, ΆΝΝΑ", "Παπαδόπουλος, Γιώργος", "Иванов, Иван",
                     "ИВАНОВА, Анна"}));
}

TEST_P(NameQueryRows, CaseIsIgnoredInEveryScript) {
    EXPECT_EQ(found(criteria("sM")),
              (Texts{"ſmall, Ulf", "smith, jane", "Smith, John", "SMYTHE, Ann"}));
    EXPECT_EQ(found(criteria("παΠ")), (Texts{"ΠΑΠΑΔΆΚΗΣ, ΆΝΝΑ", "Παπαδόπουλος, Γιώργος"}));
    EXPECT_EQ(found(criteria("иВАН", "ИВ")), Texts{"Иванов, Иван"});
    EXPECT_EQ(found(criteria("", "zOË")), Texts{"O'Brien, Zoë"});
}

TEST_P(NameQueryRows, ANameWithoutACompanyIsListedAndItsCompanyIsEmpty) {
    EXPECT_EQ(found(criteria("smith", "jane")), Texts{"smith, jane"});
    EXPECT_EQ(found(criteria("smith", "jane"), 3), Texts{""});
    EXPECT_EQ(found(criteria("ΠΑΠΑΔΆ"), 3), Texts{""}); // its company has no row
}

TEST_P(NameQueryRows, VisitorsAndTracesAreTrueFalseOrNothing) {
    EXPECT_EQ(found(criteria("smith", "jane"), 1), Texts{"True"});
    EXPECT_EQ(found(criteria("smythe"), 2), Texts{"True"});
    EXPECT_EQ(found(criteria("", "Nemo", 0, 4), 1), Texts{""});
}

TEST_P(NameQueryRows, ANameWithSeveralGuardTourCardsIsListedOnceInModeTwo) {
    EXPECT_EQ(found(criteria("", "", 2)), (Texts{"smith, jane", "Smith, John"}));
    EXPECT_EQ(found(criteria("", "", 2), 3), (Texts{"", "Zeta"}));
    EXPECT_EQ(found(criteria("x", "", 2)), Texts{});
}

TEST_P(NameQueryRows, EqualNamesAreEachListed) {
    site.foreign("INSERT INTO Names VALUES (30, 'Smith', 'John', 3, NULL, 0, 0)");
    EXPECT_EQ(found(criteria("smith", "john")), (Texts{"Smith, John", "Smith, John"}));
}

TEST_P(NameQueryRows, WildcardsKeepTheirMeaningAndQuotesHaveNone) {
    const auto inFour = [this](const std::string& lastName) {
        return found(criteria(lastName, "", 0, 4));
    };
    EXPECT_EQ(found(criteria("O'B")), Texts{"O'Brien, Zoë"});
    EXPECT_EQ(found(criteria("'")), Texts{});
    EXPECT_EQ(inFour("[a-c]"), (Texts{"a_b, x", "a%b, x", "aXb, x", "back\\slash, x"}));
    EXPECT_EQ(inFour("a[%]"), Texts{"a%b, x"});
    EXPECT_EQ(inFour("a_"), (Texts{"a_b, x", "a%b, x", "aXb, x"}));
    EXPECT_EQ(inFour("back\\"), Texts{"back\\slash, x"});
    EXPECT_EQ(inFour("%slash"), Texts{"back\\slash, x"});
}

TEST_P(NameQueryRows, HostileTextFindsNothingAndHarmsNothing) {
    EXPECT_EQ(found(criteria(std::string("Smi\0th", 6))), Texts{});
    EXPECT_EQ(found(criteria(std::string(100000, 'x'))), Texts{});
    EXPECT_EQ(found(criteria(std::string(100000, '\''))), Texts{});
    EXPECT_EQ(found(criteria(std::string(100000, '_'))), Texts{});
    EXPECT_EQ(found(criteria(std::string(100000, '%'))).size(), 10U);
    EXPECT_EQ(found(criteria("'; DELETE FROM Names; --")), Texts{});
    EXPECT_EQ(found(criteria("")).size(), 10U);
}

TEST_P(NameQueryRows, TheCompanyRestrictionLimitsTheRows) {
    filter = " AND [Names].Company IN (0, 2)";
    EXPECT_EQ(found(criteria("")), Texts{"SMYTHE, Ann"});
}

INSTANTIATE_TEST_SUITE_P(Engines, NameQueryRows,
                         ::testing::Values(companion::TestEngine::Sqlite,
                                           companion::TestEngine::Postgres),
                         [](const auto& instance) { return nameOf(instance.param); });

/// The embedded engine goes by the figures of a large site, a server by what there is.
class NameQueryPlan : public NameQueryRows {};
INSTANTIATE_TEST_SUITE_P(Engines, NameQueryPlan, ::testing::Values(companion::TestEngine::Sqlite));

TEST_P(NameQueryPlan, APrefixIsARangeOfAnIndex) {
    std::string plan;
    for (const std::string& step : connection.plan(statement(criteria("smi")))) {
        plan += step + "\n";
    }
    EXPECT_NE(plan.find("(LocGrp=? AND LName>? AND LName<?)"), std::string::npos) << plan;
    EXPECT_EQ(plan.find("SCAN"), std::string::npos) << plan;
}

} // namespace
} // namespace kintar::search
