#include "search/SelectionQuery.h"

#include "base/RunTimeError.h"
#include "search/SelectionTwins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace kintar::selection {
namespace {

using namespace testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SelectionBuilders : public ::testing::Test {
protected:
    SelectionQuery build() {
        SelectionQuery query(input, today(), services);
        query.BuildSql();
        return query;
    }
    /// What the names' part has behind its base select.
    std::string nameClauses() {
        const SelectionQuery query = build();
        EXPECT_FALSE(query.HaveCardCrit);
        std::string clauses = query.NameSql.substr(namesOfGroup3.size());
        clauses.resize(clauses.size() - byName.size());
        return clauses;
    }
    std::string cardClauses() { return build().CardSql.substr(cardsOfGroup3.size()); }

    FakeServices services;
    SelectionCriteria input = blankCriteria(3, today());
};

using NameCriteria = SelectionBuilders;
using CardCriteria = SelectionBuilders;
using UdfCriteria = SelectionBuilders;
using SkillCriteria = SelectionBuilders;
using JoinedCriteria = SelectionBuilders;

TEST_F(JoinedCriteria, NoneGiveTheBaseSelectTheCompanyFilterAndTheOrder) {
    services.filter = " AND [Names].Company IN (0, 4)";
    const SelectionQuery query = build();
    EXPECT_EQ(query.NameSql, namesOfGroup3 + " AND [Names].Company IN (0, 4)" + byName);
    EXPECT_FALSE(query.HaveNameCrit || query.HaveCardCrit || query.HaveUdfCrit ||
                 query.HaveSkillCrit);
    EXPECT_EQ(query.CardSql, cardsOfGroup3);
    EXPECT_EQ(query.UdfSql, "");
    EXPECT_EQ(query.SkillSql, "");
    EXPECT_EQ(query.CompanyFilterSql, services.filter);
    EXPECT_THAT(services.asked, ElementsAre("[Names].Company 3 True"));
    EXPECT_FALSE(query.locationQuery.has_value());
}

TEST_F(JoinedCriteria, WriteANegativeLocationGroupAsItIs) {
    input.LocGrp = -7;
    EXPECT_EQ(build().CardSql, "SELECT NameID FROM Cards WHERE LocGrp = -7 And DlFlag <> 2");
}

TEST_F(NameCriteria, APercentSignAloneAddsNothingAndIsEmptied) {
    input.lastName = "%";
    input.firstName = "%";
    const SelectionQuery query = build();
    EXPECT_EQ(query.NameSql, namesOfGroup3 + byName);
    EXPECT_FALSE(query.HaveNameCrit);
    EXPECT_EQ(query.criteria.lastName, "");
    EXPECT_EQ(query.criteria.firstName, "");
}

TEST_F(NameCriteria, LastNameSmMatchesByPrefix) {
    input.lastName = "Sm";
    EXPECT_EQ(nameClauses(), " AND LName LIKE 'Sm%'");
    EXPECT_TRUE(build().HaveNameCrit);
    EXPECT_EQ(build().criteria.lastName, "");
}

TEST_F(NameCriteria, FirstNameFollowsLastNameAndQuotesAreTheCompanionsAffair) {
    input.lastName = "O'B";
    input.firstName = "%a";
    EXPECT_EQ(nameClauses(), " AND LName LIKE 'O''B%' AND FName LIKE '%a%'");
}

TEST_F(NameCriteria, ABlankIsAUsedText) {
    input.lastName = " ";
    EXPECT_EQ(nameClauses(), " AND LName LIKE ' %'");
}

TEST_F(NameCriteria, Companies4And9GiveTheListWithCompany0AndNoFilter) {
    services.filter = " AND [Names].Company IN (0, 4)";
    input.companies = {{2, false}, {4, true}, {7, false}, {9, true}};
    EXPECT_EQ(nameClauses(), " AND [Names].Company In (0,4,9)");
    const SelectionQuery query = build();
    EXPECT_TRUE(query.HaveNameCrit);
    EXPECT_FALSE(query.companyFilterAsked);
    EXPECT_THAT(services.asked, IsEmpty());
    EXPECT_EQ(query.criteria.companies,
              (std::vector<CompanyItem>{{2, false}, {4, false}, {7, false}, {9, false}}));
}

TEST_F(NameCriteria, NoCompanyGivesTheFilterInstead) {
    services.filter = " AND [Names].Company IN (0, 4)";
    input.companies = {{2, false}, {4, false}};
    EXPECT_EQ(nameClauses(), services.filter);
    EXPECT_FALSE(build().HaveNameCrit);
    EXPECT_TRUE(build().companyFilterAsked);
}

TEST_F(NameCriteria, TheFirstCompanyOfTheListIsNeverExaminedAndStaysSelected) {
    input.companies = {{2, true}, {4, true}};
    EXPECT_EQ(nameClauses(), " AND [Names].Company In (0,4)");
    EXPECT_EQ(build().criteria.companies, (std::vector<CompanyItem>{{2, true}, {4, false}}));
}

TEST_F(NameCriteria, TheFirstCompanyAloneGivesCompany0Alone) {
    input.companies = {{2, true}, {4, false}};
    EXPECT_EQ(nameClauses(), " AND [Names].Company In (0)");
    EXPECT_FALSE(build().companyFilterAsked);
}

TEST_F(NameCriteria, VisitorComesBeforeTraceAndBothGoBackToEither) {
    input.visitor = Choice::False;
    input.trace = Choice::True;
    EXPECT_EQ(nameClauses(), " AND Visitor = 0 AND Trace <> 0");
    EXPECT_EQ(build().criteria.visitor, Choice::Either);
    EXPECT_EQ(build().criteria.trace, Choice::Either);
    EXPECT_TRUE(build().HaveNameCrit);
}

TEST_F(CardCriteria, ANumericCodeIsWrittenAsItsValue) {
    for (const auto& [text, written] : std::vector<std::pair<std::string, std::string>>{
             {"123", "123"},
             {" +00123 ", "123"},
             {"-5.50", "-5.5"},
             {"12345678901234567890", "12345678901234567890"}}) {
        input.cardCode = text;
        EXPECT_EQ(cardClauses(), " AND Code = " + written) << text;
    }
}

TEST_F(CardCriteria, ACodeThatIsNoNumberMatchesByPrefix) {
    for (const std::string text : {"12A", "1e3", "&H1F", "12,5", "inf", "1 2", " "}) {
        input.cardCode = text;
        EXPECT_EQ(cardClauses(), " AND Code LIKE '" + text + "%'");
    }
}

TEST_F(CardCriteria, APercentSignAloneIsNoCodeAndNoNumber) {
    input.cardCode = "%";
    input.cardNum = "%";
    const SelectionQuery query = build();
    EXPECT_FALSE(query.HaveCardCrit);
    EXPECT_EQ(query.criteria.cardCode, "");
    EXPECT_EQ(query.criteria.cardNum, "");
}

TEST_F(CardCriteria, ImprintedNumberMatchesByPrefix) {
    input.cardNum = "00";
    EXPECT_EQ(cardClauses(), " AND CardNum LIKE '00%'");
    EXPECT_EQ(build().criteria.cardNum, "");
}

TEST_F(CardCriteria, StatusIsNotSetBack) {
    input.status = CardStatus::Active;
    EXPECT_EQ(cardClauses(), " AND Status <> 0");
    EXPECT_EQ(build().criteria.status, CardStatus::Active);
    input.status = CardStatus::Inactive;
    EXPECT_EQ(cardClauses(), " AND Status = 0");
    EXPECT_EQ(build().criteria.status, CardStatus::Inactive);
}

TEST_F(CardCriteria, AllFourDatesAtTodayAddNothing) {
    EXPECT_EQ(cardClauses(), "");
    EXPECT_FALSE(build().HaveCardCrit);
}

TEST_F(CardCriteria, OnlyTheHighStopDateAddsTheStopRangeWithBothBounds) {
    input.stopHigh = day("2012-03-15");
    EXPECT_EQ(cardClauses(),
              " AND StopDate BETWEEN #2012-03-14 00:00:00# AND #2012-03-15 00:00:00#");
    EXPECT_EQ(build().criteria, blankCriteria(3, today()));
}

TEST_F(CardCriteria, OnlyALaterHighStartDateAddsNothingAndStays) {
    input.startHigh = day("2012-03-15");
    EXPECT_EQ(cardClauses(), "");
    EXPECT_FALSE(build().HaveCardCrit);
    EXPECT_EQ(build().criteria.startHigh, day("2012-03-15"));
}

TEST_F(CardCriteria, OnlyAnEarlierHighStartDateAddsTheStartRange) {
    input.startHigh = day("2012-03-13");
    EXPECT_EQ(cardClauses(),
              " AND StartDate BETWEEN #2012-03-14 00:00:00# AND #2012-03-13 00:00:00#");
    EXPECT_EQ(build().criteria.startHigh, today());
}

TEST_F(CardCriteria, TheLowStartDateCountsInEitherDirection) {
    for (const char* low : {"2012-03-13", "2012-03-15"}) {
        input.startLow = day(low);
        EXPECT_EQ(cardClauses(), std::string(" AND StartDate BETWEEN #") + low +
                                     " 00:00:00# AND #2012-03-14 00:00:00#");
    }
}

TEST_F(CardCriteria, GuardTourGoesBackToEither) {
    input.guardTour = Choice::False;
    EXPECT_EQ(cardClauses(), " AND GTour = 0");
    EXPECT_EQ(build().criteria.guardTour, Choice::Either);
    input.guardTour = Choice::True;
    EXPECT_EQ(cardClauses(), " AND GTour <> 0");
}

TEST_F(CardCriteria, DaysThatAreNotAboveZeroAddNothingAndStay) {
    services.locations = {11};
    for (const std::string text : {"", "0", "-3", "abc", "3 days", "0.5", "1e3", "%"}) {
        input.notUsedDays = text;
        const SelectionQuery query = build();
        EXPECT_EQ(query.CardSql, cardsOfGroup3) << text;
        EXPECT_FALSE(query.HaveCardCrit) << text;
        EXPECT_FALSE(query.locationQuery.has_value()) << text;
        EXPECT_EQ(query.criteria.notUsedDays, text);
    }
    EXPECT_THAT(services.statements, IsEmpty());
}

TEST_F(CardCriteria, ThirtyDaysCountToTheEndOfThatDayAtTheGroupsLocations) {
    services.locations = {12, 11, 40};
    input.notUsedDays = "30";
    EXPECT_EQ(cardClauses(), " AND ID IN (SELECT CardID FROM LocCards WHERE Loc IN (12,11,40) "
                             "AND LastDate <= #2012-02-13 23:59:59#)");
    EXPECT_THAT(services.statements, ElementsAre("SELECT Loc FROM Loc WHERE LocGrp = 3"));
    const SelectionQuery query = build();
    EXPECT_EQ(query.locationQuery, "SELECT Loc FROM Loc WHERE LocGrp = 3");
    EXPECT_EQ(query.criteria.notUsedDays, "");
}

TEST_F(CardCriteria, AFractionOfADayIsCutOff) {
    services.locations = {11};
    input.notUsedDays = " 1.9 ";
    EXPECT_NE(cardClauses().find("#2012-03-13 23:59:59#"), std::string::npos);
}

TEST_F(CardCriteria, ThirtyDaysWithoutLocationsStillRestrictToTheGroupsCards) {
    input.notUsedDays = "30";
    const SelectionQuery query = build();
    EXPECT_TRUE(query.HaveCardCrit);
    EXPECT_EQ(query.CardSql, cardsOfGroup3);
    EXPECT_EQ(query.NameSql, namesOfGroup3 + " And [Names].ID In (" + cardsOfGroup3 + ")" + byName);
    EXPECT_EQ(query.criteria.notUsedDays, "");
}

TEST_F(CardCriteria, TheTimeOfDayOfTodayIsNotLookedAt) {
    services.locations = {11};
    input.notUsedDays = "1";
    SelectionQuery query(input, day("2012-03-14T17:05:00"), services);
    query.BuildSql();
    EXPECT_EQ(query.CardSql, cardsOfGroup3 + " AND ID IN (SELECT CardID FROM LocCards WHERE Loc "
                                             "IN (11) AND LastDate <= #2012-03-13 23:59:59#)");
}

TEST_F(CardCriteria, DaysThatLeadOutOfTheCalendarOverflow) {
    services.locations = {11};
    for (const std::string text : {"800000", "99999999", "123456789012345678901234567890"}) {
        input.notUsedDays = text;
        EXPECT_THROW(build(), RunTimeError) << text;
    }
}

TEST_F(CardCriteria, DaysOfAnyLengthAddNothingWhereTheGroupHasNoLocations) {
    for (const std::string text : {"800000", "123456789012345678901234567890"}) {
        input.notUsedDays = text;
        const SelectionQuery query = build();
        EXPECT_TRUE(query.HaveCardCrit) << text;
        EXPECT_EQ(query.CardSql, cardsOfGroup3) << text;
    }
}

TEST_F(UdfCriteria, OneRowEndsInTwoParentheses) {
    input.udf = {{2, "Car", "Blue"}};
    const SelectionQuery query = build();
    EXPECT_EQ(query.UdfSql, "SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = 3 And Udf.NameID In "
                            "(SELECT NameID FROM UDF WHERE UdfNum = 2 AND UdfText LIKE 'Blue%'))");
    EXPECT_EQ(query.criteria.udf, (std::vector<UdfRow>{{2, "Car", ""}}));
    EXPECT_EQ(query.NameSql, namesOfGroup3 + " And [Names].ID In (" + query.UdfSql + byName);
}

TEST_F(UdfCriteria, TwoRowsAreNested) {
    input.udf = {{2, "Car", "Blue"}, {3, "Hall", ""}, {5, "Grade", "A"}};
    EXPECT_EQ(build().UdfSql,
              "SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = 3 And Udf.NameID In (SELECT NameID "
              "FROM UDF WHERE UdfNum = 2 AND UdfText LIKE 'Blue%' AND UDF.NameID IN (SELECT NameID "
              "FROM UDF WHERE UdfNum = 5 AND UdfText LIKE 'A%')))");
}

TEST_F(UdfCriteria, ThreeRowsEndInFourParentheses) {
    input.udf = {{1, "a", "x"}, {2, "b", "y"}, {3, "c", "z"}};
    const std::string sql = build().UdfSql;
    EXPECT_TRUE(sql.ends_with("'z%'))))")) << sql;
    EXPECT_FALSE(sql.ends_with("'z%')))))")) << sql;
}

TEST_F(UdfCriteria, APercentSignAloneIsNoValueAndStays) {
    input.udf = {{2, "Car", "%"}};
    const SelectionQuery query = build();
    EXPECT_FALSE(query.HaveUdfCrit);
    EXPECT_EQ(query.UdfSql, "");
    EXPECT_EQ(query.criteria.udf.front().value, "%");
}

TEST_F(UdfCriteria, RowsBelowTheLastFieldAddNoCriterion) {
    input.udf = {{2, "Car", ""}, {std::nullopt, "", ""}, {std::nullopt, "", "x"}};
    EXPECT_FALSE(build().HaveUdfCrit);
}

TEST_F(UdfCriteria, AGridWithMoreRowsThanA16BitCounterCountsOverflows) {
    input.udf.assign(32766, UdfRow{1, "a", ""});
    EXPECT_NO_THROW(build());
    input.udf.emplace_back();
    EXPECT_THROW(build(), RunTimeError);
}

TEST_F(SkillCriteria, OnlyTheFirstSelectedSkillCountsAndTheOthersStaySelected) {
    input.skills = {{"1ID", false}, {"3ID", true}, {"7ID", true}};
    const SelectionQuery query = build();
    EXPECT_EQ(query.SkillSql, "SELECT Skills.NameID FROM Skills WHERE SkillID IN (3)");
    EXPECT_TRUE(query.HaveSkillCrit);
    EXPECT_EQ(query.criteria.skills,
              (std::vector<SkillItem>{{"1ID", false}, {"3ID", false}, {"7ID", true}}));
    EXPECT_EQ(query.NameSql,
              namesOfGroup3 + " And [Names].ID In (" + query.SkillSql + ")" + byName);
}

TEST_F(SkillCriteria, NoneSelectedBuildNothing) {
    input.skills = {{"1ID", false}, {"3ID", false}};
    EXPECT_EQ(build().SkillSql, "");
    EXPECT_FALSE(build().HaveSkillCrit);
}

TEST_F(JoinedCriteria, CardsAndSkillsPutTheSkillsInsideTheCards) {
    input.cardCode = "9";
    input.skills = {{"7ID", true}};
    EXPECT_EQ(build().NameSql,
              namesOfGroup3 + " And [Names].ID In (" + cardsOfGroup3 +
                  " AND Code = 9 And NameID In (SELECT Skills.NameID FROM Skills WHERE SkillID IN "
                  "(7)))" +
                  byName);
}

TEST_F(JoinedCriteria, CardsFieldsAndSkillsCloseTheCardsBehindTheSkills) {
    input.cardCode = "9";
    input.udf = {{2, "Car", "Blue"}};
    input.skills = {{"7ID", true}};
    EXPECT_EQ(build().NameSql,
              namesOfGroup3 + " And [Names].ID In (" + cardsOfGroup3 +
                  " AND Code = 9 And NameID In (SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = 3 "
                  "And Udf.NameID In (SELECT NameID FROM UDF WHERE UdfNum = 2 AND UdfText LIKE "
                  "'Blue%')) And [Names].ID In (SELECT Skills.NameID FROM Skills WHERE SkillID IN "
                  "(7))) ORDER BY LName, FName");
}

TEST_F(JoinedCriteria, ASecondBuildOfTheSameInputStartsFromBlankCriteriaButForTheStatus) {
    input.lastName = "Sm";
    input.status = CardStatus::Active;
    SelectionQuery query = build();
    query.BuildSql();
    EXPECT_EQ(query.NameSql, namesOfGroup3 + " And [Names].ID In (" + cardsOfGroup3 +
                                 " AND Status <> 0)" + byName);
    EXPECT_FALSE(query.HaveNameCrit);
}

} // namespace
} // namespace kintar::selection
