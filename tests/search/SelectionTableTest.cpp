// Every combination of present and absent criteria, against a formulation of its own: clauses in
// lists, sub-selects by recursion, and one written-out frame for each way to join the tabs.
#include "search/SelectionQuery.h"

#include "search/SelectionTwins.h"

#include <array>
#include <gtest/gtest.h>

namespace kintar::selection {
namespace {

using namespace testing;

constexpr unsigned criteriaKinds = 14;
constexpr unsigned rotations = 3;

/// One case: which of the criteria are present, and which variant of each.
struct Case {
    unsigned mask;
    unsigned rotation;
    [[nodiscard]] bool has(unsigned kind) const { return (mask >> kind & 1U) != 0; }
    /// A number below `variants` that differs from case to case.
    [[nodiscard]] unsigned pick(unsigned kind, unsigned variants) const {
        return (mask / (kind + 1) + rotation + kind) % variants;
    }
};

/// A case with its parts as the clauses that they must give and the input that must remain.
struct Expected {
    SelectionCriteria input = blankCriteria(3, today());
    SelectionCriteria after = blankCriteria(3, today());
    std::vector<std::string> name;
    std::vector<std::string> card;
    std::vector<std::pair<int, std::string>> udf;
    std::string skill;
    bool cardUsed = false;
};

const std::string filter = " AND [Names].Company IN (0, 4)";

std::string joined(const std::vector<std::string>& clauses) {
    std::string text;
    for (const std::string& clause : clauses) {
        text += " AND " + clause;
    }
    return text;
}

void addTexts(const Case& c, Expected& e) {
    const std::array<std::string, 3> used = {"Sm", "O'B", "%x"};
    const auto text = [&](unsigned kind, std::string& field, const std::string& column,
                          std::vector<std::string>& clauses) {
        field = c.has(kind) ? used.at(c.pick(kind, 3)) : c.pick(kind, 2) == 0 ? "" : "%";
        if (c.has(kind)) {
            std::string quoted = field == "O'B" ? "O''B" : field;
            clauses.push_back(column + " LIKE '" + quoted + "%'");
        }
    };
    text(0, e.input.lastName, "LName", e.name);
    text(1, e.input.firstName, "FName", e.name);
}

void addCompanies(const Case& c, Expected& e) {
    const unsigned variant = c.has(2) ? 1 + c.pick(2, 7) : 0; // which of three rows are selected
    e.input.companies = {
        {2, (variant & 1U) != 0}, {4, (variant & 2U) != 0}, {9, (variant & 4U) != 0}};
    e.after.companies = {{2, (variant & 1U) != 0}, {4, false}, {9, false}};
    const std::array<std::string, 8> lists = {"",      "(0)",   "(0,4)",   "(0,4)",
                                              "(0,9)", "(0,9)", "(0,4,9)", "(0,4,9)"};
    if (variant == 0) {
        e.name.push_back(filter.substr(5));
    } else {
        e.name.push_back("[Names].Company In " + lists.at(variant));
    }
}

void addChoice(const Case& c, unsigned kind, Choice& field, const std::string& column,
               std::vector<std::string>& clauses) {
    if (c.has(kind)) {
        const bool yes = c.pick(kind, 2) == 0;
        field = yes ? Choice::True : Choice::False;
        clauses.push_back(column + (yes ? " <> 0" : " = 0"));
    }
}

void addCode(const Case& c, Expected& e) {
    if (!c.has(5)) {
        e.input.cardCode = c.pick(5, 2) == 0 ? "" : "%";
        return;
    }
    const std::array<std::pair<std::string, std::string>, 4> codes = {
        {{"123", "= 123"}, {" 0012.50", "= 12.5"}, {"12A", "LIKE '12A%'"}, {"%7", "LIKE '%7%'"}}};
    const auto& [text, clause] = codes.at(c.pick(5, 4));
    e.input.cardCode = text;
    e.card.push_back("Code " + clause);
}

void addNumberAndStatus(const Case& c, Expected& e) {
    if (c.has(6)) {
        e.input.cardNum = "77";
        e.card.emplace_back("CardNum LIKE '77%'");
    }
    if (c.has(7)) {
        const bool active = c.pick(7, 2) == 0;
        e.input.status = e.after.status = active ? CardStatus::Active : CardStatus::Inactive;
        e.card.emplace_back(active ? "Status <> 0" : "Status = 0");
    }
}

void addDates(const Case& c, Expected& e) {
    const std::string t = "#2012-03-14 00:00:00#";
    const std::string before = "#2012-03-01 00:00:00#";
    const std::string later = "#2012-04-01 00:00:00#";
    const DateTime early = day("2012-03-01");
    const DateTime late = day("2012-04-01");
    struct Range {
        DateTime low;
        DateTime high;
        std::string clause;
    };
    const std::vector<Range> ranges = {{early, today(), before + " AND " + t},
                                       {late, today(), later + " AND " + t},
                                       {today(), early, t + " AND " + before},
                                       {early, late, before + " AND " + later},
                                       {today(), late, t + " AND " + later}};
    if (c.has(8)) { // the last range is none for the start dates
        const Range& range = ranges.at(c.pick(8, 4));
        e.input.startLow = range.low;
        e.input.startHigh = range.high;
        e.card.push_back("StartDate BETWEEN " + range.clause);
    } else if (c.pick(8, 2) == 0) {
        e.input.startHigh = e.after.startHigh = late;
    }
    if (c.has(9)) {
        const Range& range = ranges.at(c.pick(9, 5));
        e.input.stopLow = range.low;
        e.input.stopHigh = range.high;
        e.card.push_back("StopDate BETWEEN " + range.clause);
    }
}

void addDays(const Case& c, Expected& e, FakeServices& services) {
    services.locations.clear();
    if (!c.has(11)) {
        const std::array<std::string, 4> none = {"", "0", "-3", "abc"};
        e.input.notUsedDays = e.after.notUsedDays = none.at(c.pick(11, 4));
        return;
    }
    e.cardUsed = true;
    e.input.notUsedDays = "30.7";
    const std::array<std::string, 3> lists = {"", "11", "12,11"};
    const unsigned variant = c.pick(11, 3);
    services.locations = variant == 0   ? std::vector<std::int32_t>{}
                         : variant == 1 ? std::vector<std::int32_t>{11}
                                        : std::vector<std::int32_t>{12, 11};
    if (variant != 0) {
        e.card.push_back("ID IN (SELECT CardID FROM LocCards WHERE Loc IN (" + lists.at(variant) +
                         ") AND LastDate <= #2012-02-13 23:59:59#)");
    }
}

void addFieldsAndSkills(const Case& c, Expected& e) {
    for (int num = 1; num <= 4; ++num) {
        e.input.udf.push_back({num, "Field", ""});
    }
    if (c.has(12)) {
        const unsigned count = 1 + c.pick(12, 3);
        for (unsigned row = 0; row < count; ++row) {
            e.input.udf.at(row + (row > 0 ? 1 : 0)).value = "v" + std::to_string(row);
        }
    }
    e.after.udf = e.input.udf;
    for (std::size_t row = 0; row < e.input.udf.size(); ++row) {
        if (!e.input.udf[row].value.empty()) {
            e.udf.emplace_back(*e.input.udf[row].num, e.input.udf[row].value);
            e.after.udf[row].value = "";
        }
    }
    const unsigned variant = c.has(13) ? 1 + c.pick(13, 3) : 0;
    e.input.skills = {{"3ID", (variant & 1U) != 0}, {"7ID", (variant & 2U) != 0}};
    e.after.skills = {{"3ID", false}, {"7ID", variant == 3}};
    e.skill = variant == 0 ? "" : variant == 2 ? "7" : "3";
}

Expected expectedOf(const Case& c, FakeServices& services) {
    Expected e;
    addTexts(c, e);
    addCompanies(c, e);
    addChoice(c, 3, e.input.visitor, "Visitor", e.name);
    addChoice(c, 4, e.input.trace, "Trace", e.name);
    addCode(c, e);
    addNumberAndStatus(c, e);
    addDates(c, e);
    addChoice(c, 10, e.input.guardTour, "GTour", e.card);
    addDays(c, e, services);
    e.cardUsed = e.cardUsed || !e.card.empty();
    addFieldsAndSkills(c, e);
    return e;
}

std::string nested(const std::vector<std::pair<int, std::string>>& fields, std::size_t from) {
    return " (SELECT NameID FROM UDF WHERE UdfNum = " + std::to_string(fields[from].first) +
           " AND UdfText LIKE '" + fields[from].second + "%'" +
           (from + 1 < fields.size() ? " AND UDF.NameID IN" + nested(fields, from + 1) : "") + ")";
}

/// The whole statement: one frame for each of the eight ways in which the tabs meet.
std::string statementOf(const Expected& e) {
    const std::array<std::string, 8> frames = {
        "",
        " And [Names].ID In (C)",
        " And [Names].ID In (U)",
        " And [Names].ID In (C And NameID In (U))",
        " And [Names].ID In (S)",
        " And [Names].ID In (C And NameID In (S))",
        " And [Names].ID In (U) And [Names].ID In (S)",
        " And [Names].ID In (C And NameID In (U) And [Names].ID In (S))",
    };
    const std::string& frame =
        frames.at((e.cardUsed ? 1U : 0U) + (e.udf.empty() ? 0U : 2U) + (e.skill.empty() ? 0U : 4U));
    std::string sql = namesOfGroup3 + joined(e.name);
    for (std::size_t i = 0; i < frame.size(); ++i) {
        const bool placeholder = i > 0 && frame[i - 1] == '(';
        if (placeholder && frame[i] == 'C') {
            sql += cardsOfGroup3 + joined(e.card);
        } else if (placeholder && frame[i] == 'U') {
            sql += "SELECT UDF.NameID FROM UDF WHERE Udf.LocGrp = 3 And Udf.NameID In" +
                   nested(e.udf, 0);
        } else if (placeholder && frame[i] == 'S') {
            sql += "SELECT Skills.NameID FROM Skills WHERE SkillID IN (" + e.skill + ")";
        } else {
            sql += frame[i];
        }
    }
    return sql + byName;
}

TEST(SelectionTable, EveryCombinationOfCriteriaGivesItsTextAndLeavesItsInput) {
    for (unsigned rotation = 0; rotation < rotations; ++rotation) {
        for (unsigned mask = 0; mask < 1U << criteriaKinds; ++mask) {
            const Case c{mask, rotation};
            FakeServices services;
            services.filter = filter;
            const Expected e = expectedOf(c, services);
            SelectionQuery query(e.input, today(), services);
            query.BuildSql();
            ASSERT_EQ(query.NameSql, statementOf(e)) << "case " << mask << "/" << rotation;
            ASSERT_EQ(query.criteria, e.after) << "case " << mask << "/" << rotation;
            ASSERT_EQ(query.HaveCardCrit, e.cardUsed);
            ASSERT_EQ(query.HaveUdfCrit, !e.udf.empty());
            ASSERT_EQ(query.HaveSkillCrit, !e.skill.empty());
            ASSERT_EQ(query.HaveNameCrit, c.has(0) || c.has(1) || c.has(2) || c.has(3) || c.has(4));
        }
    }
}

} // namespace
} // namespace kintar::selection
