// The rows that searches give on a real database, against a plain evaluation in memory.
#include "search/SelectionCompanion.h"

#include "base/Unicode.h"
#include "search/SearchSite.h"
#include "search/SelectionTwins.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <set>

namespace kintar::selection {
namespace {

using search::testing::SearchSite;
using testing::day;
using testing::today;

constexpr int fieldCount = 30;

struct Card {
    int id, locGrp, code, cardNum, status, start, stop, guardTour, flag, loc, lastUse;
};
struct Person {
    int id, locGrp, company, visitor, trace;
    std::string last, first;
    std::vector<Card> cards;
    std::map<int, std::string> fields;
    std::set<int> skills;
};

/// A day by its distance from today.
DateTime at(int days) {
    return today().plusDays(days);
}

class World {
public:
    World() {
        for (int id = 1; id <= 400; ++id) {
            people.push_back(person(id));
        }
    }
    void store(SearchSite& site) const;

    std::vector<Person> people;

private:
    int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random_); }
    Person person(int id) {
        const std::array<std::string, 8> lasts = {"Smith",   "smythe", "O'Brien", "Öztürk",
                                                  "özdemir", "Adams",  "Adler",   "Zed"};
        const std::array<std::string, 4> firsts = {"Ann", "anna", "Bo", "Émile"};
        Person p{id,
                 3 + upTo(5) / 5,
                 upTo(4),
                 -(upTo(3) / 3),
                 -(upTo(3) / 3),
                 lasts.at(static_cast<std::size_t>(upTo(7))),
                 firsts.at(static_cast<std::size_t>(upTo(3))),
                 {},
                 {},
                 {}};
        for (int count = upTo(2); count > 0; --count) {
            p.cards.push_back({++lastCard_, p.locGrp, upTo(40), upTo(40), upTo(1), upTo(20) - 10,
                               upTo(20) - 10, -upTo(1), upTo(2), 11 + upTo(2), upTo(60) - 60});
        }
        for (int field = 1; field <= fieldCount; ++field) {
            // Most have the first letters alike, so that many fields at once still find somebody.
            p.fields[field] = upTo(19) == 0 ? "other" : "value";
        }
        for (int skill = 1; skill <= 3; ++skill) {
            if (upTo(1) == 0) {
                p.skills.insert(skill);
            }
        }
        return p;
    }

    std::mt19937 random_{20120314};
    int lastCard_ = 0;
};

std::string quoted(const std::string& text) {
    return testing::FakeServices().SqlText(text);
}

std::string date(int days) {
    return "'" + at(days).isoWithBlank() + "'";
}

template <class... Values>
std::string row(const char* table, const Values&... values) {
    std::string list;
    const auto add = [&list](const auto& value) {
        list += list.empty() ? "" : ",";
        if constexpr (std::is_same_v<std::decay_t<decltype(value)>, int>) {
            list += std::to_string(value);
        } else {
            list += value;
        }
    };
    (add(values), ...);
    return "INSERT INTO " + std::string(table) + " VALUES(" + list + ");";
}

void World::store(SearchSite& site) const {
    std::string sql = "BEGIN;";
    for (const Person& p : people) {
        sql += row("Names", p.id, quoted(p.last), quoted(p.first), p.locGrp, p.company, p.visitor,
                   p.trace);
        for (const Card& c : p.cards) {
            // Leading zeros: a code is compared as a number where it is searched as one.
            sql += row("Cards", c.id, p.id, c.locGrp, "'00" + std::to_string(c.code) + "'",
                       "'C" + std::to_string(c.cardNum) + "'", c.status, date(c.start),
                       date(c.stop), c.guardTour, c.flag);
            sql += row("LocCards", c.id, c.id, c.loc, date(c.lastUse), 1, "'I'", "''", "''", "''");
        }
        for (const auto& [num, text] : p.fields) {
            sql += row("UDF", p.id, num, quoted(text), p.locGrp);
        }
        for (const int skill : p.skills) {
            sql += row("Skills", p.id, skill);
        }
    }
    for (int company = 1; company <= 4; ++company) {
        sql += row("Company", 3, company, "'Company " + std::to_string(company) + "'");
    }
    sql += row("Loc", 11, 3, "'North'", "''", 0) + row("Loc", 12, 3, "'South'", "''", 0) +
           row("Loc", 13, 4, "'Elsewhere'", "''", 0);
    site.foreign(sql + "COMMIT;");
    site.settle();
}

bool begins(const std::string& text, const std::string& prefix) {
    return unicode::fold(text).starts_with(unicode::fold(prefix));
}

bool choose(Choice choice, int value) {
    return choice == Choice::Either || (choice == Choice::True) == (value != 0);
}

bool cardMatches(const SelectionCriteria& c, const Card& card) {
    const auto between = [](int value, DateTime low, DateTime high) {
        return at(value) >= std::min(low, high) && at(value) <= std::max(low, high);
    };
    const bool startAsked = c.startLow != today() || c.startHigh < today();
    const bool stopAsked = c.stopLow != today() || c.stopHigh != today();
    const int days = c.notUsedDays.empty() ? 0 : std::stoi(c.notUsedDays);
    return card.locGrp == c.LocGrp && card.flag != 2 &&
           (c.cardCode.empty() || card.code == std::stoi(c.cardCode)) &&
           (c.cardNum.empty() || begins("C" + std::to_string(card.cardNum), c.cardNum)) &&
           (c.status == CardStatus::Either ||
            (c.status == CardStatus::Active) == (card.status != 0)) &&
           (!startAsked || between(card.start, c.startLow, c.startHigh)) &&
           (!stopAsked || between(card.stop, c.stopLow, c.stopHigh)) &&
           choose(c.guardTour, card.guardTour) &&
           (days == 0 || (card.loc != 13 && card.lastUse <= -days));
}

bool cardsAsked(const SelectionCriteria& c) {
    return !c.cardCode.empty() || !c.cardNum.empty() || c.status != CardStatus::Either ||
           c.startLow != today() || c.startHigh < today() || c.stopLow != today() ||
           c.stopHigh != today() || c.guardTour != Choice::Either || !c.notUsedDays.empty();
}

bool matches(const SelectionCriteria& c, const Person& p) {
    const bool companyAsked = std::any_of(c.companies.begin(), c.companies.end(),
                                          [](const CompanyItem& item) { return item.selected; });
    const bool inCompany =
        p.company == 0 ||
        std::any_of(c.companies.begin() + 1, c.companies.end(), [&p](const CompanyItem& item) {
            return item.selected && item.data == p.company;
        });
    const auto skill = std::find_if(c.skills.begin(), c.skills.end(),
                                    [](const SkillItem& item) { return item.selected; });
    return p.locGrp == c.LocGrp && begins(p.last, c.lastName) && begins(p.first, c.firstName) &&
           (!companyAsked || inCompany) && choose(c.visitor, p.visitor) &&
           choose(c.trace, p.trace) &&
           (!cardsAsked(c) ||
            std::any_of(p.cards.begin(), p.cards.end(),
                        [&c](const Card& card) { return cardMatches(c, card); })) &&
           std::all_of(c.udf.begin(), c.udf.end(),
                       [&p](const UdfRow& field) {
                           return field.value.empty() ||
                                  begins(p.fields.at(*field.num), field.value);
                       }) &&
           (skill == c.skills.end() || p.skills.contains(std::stoi(skill->key)));
}

class SelectionRows : public ::testing::Test {
protected:
    SelectionRows() { world.store(site); }

    SelectionCriteria criteria(unsigned mask) {
        SelectionCriteria c = blankCriteria(3, today());
        const auto has = [mask](unsigned kind) { return (mask >> kind & 1U) != 0; };
        c.lastName = has(0) ? "S" : "";
        c.firstName = has(1) ? "A" : "";
        c.companies = {{1, false}, {2, has(2)}, {3, has(2)}, {4, false}};
        c.visitor = has(3) ? Choice::False : Choice::Either;
        c.trace = has(4) ? Choice::False : Choice::Either;
        c.cardNum = has(5) ? "c" : "";
        c.status = has(6) ? CardStatus::Active : CardStatus::Either;
        c.startLow = has(7) ? at(-9) : today();
        c.stopHigh = has(8) ? at(9) : today();
        c.guardTour = has(9) ? Choice::True : Choice::Either;
        c.notUsedDays = has(10) ? "10" : "";
        for (int field = 1; field <= fieldCount; ++field) {
            c.udf.push_back({field, "Field", has(11) && field <= 3 ? "VAL" : ""});
        }
        c.skills = {{"1ID", false}, {"2ID", has(12)}, {"3ID", has(12)}};
        return c;
    }
    /// The names that the search finds, in its order.
    std::vector<int> found(const SelectionCriteria& c) {
        SelectionCompanion companion(site.globals());
        SelectionQuery query(c, today(), companion);
        query.BuildSql();
        std::vector<int> ids;
        for (Recordset rows =
                 site.globals().tarnRec().OpenRecordset(query.NameSql, site.globals().gCnn());
             !rows.atEnd(); rows.MoveNext()) {
            ids.push_back(rows.field("ID").asLong());
        }
        return ids;
    }
    std::vector<int> expected(const SelectionCriteria& c) {
        std::vector<int> ids;
        for (const Person& p : world.people) {
            if (matches(c, p)) {
                ids.push_back(p.id);
            }
        }
        return ids;
    }

    SearchSite site;
    World world;
};

TEST_F(SelectionRows, AreThoseOfAPlainEvaluationForCombinationsOfAllCriteria) {
    std::size_t withRows = 0;
    // A stride that meets every criterion with every other, in both ways.
    for (unsigned mask = 0; mask < 1U << 13; mask += 13) {
        const SelectionCriteria c = criteria(mask);
        std::vector<int> ids = found(c);
        std::sort(ids.begin(), ids.end());
        ASSERT_EQ(ids, expected(c)) << "criteria " << mask;
        withRows += ids.empty() ? 0 : 1;
    }
    EXPECT_GT(withRows, 300U); // the data must not make the comparison an empty one
}

TEST_F(SelectionRows, AreInTheOrderOfTheNames) {
    std::map<int, std::string> keys;
    for (const Person& p : world.people) {
        keys[p.id] = unicode::sortKey(p.last) + '\0' + unicode::sortKey(p.first);
    }
    const std::vector<int> ids = found(criteria(0));
    EXPECT_TRUE(std::is_sorted(ids.begin(), ids.end(),
                               [&keys](int a, int b) { return keys[a] < keys[b]; }));
    EXPECT_GT(ids.size(), 200U);
}

TEST_F(SelectionRows, ThirtyFieldsWithinACardCriterionAndASkillAreFound) {
    SelectionCriteria c = criteria(1U << 6 | 1U << 12);
    for (UdfRow& field : c.udf) {
        field.value = "v";
    }
    std::vector<int> ids = found(c);
    std::sort(ids.begin(), ids.end());
    EXPECT_EQ(ids, expected(c));
    EXPECT_FALSE(ids.empty());
}

TEST_F(SelectionRows, ACodeIsFoundAsANumberWithAndWithoutLeadingZeros) {
    SelectionCriteria c = criteria(0);
    for (const char* code : {"7", "007", " +7.0 "}) {
        c.cardCode = code;
        std::vector<int> ids = found(c);
        std::sort(ids.begin(), ids.end());
        SelectionCriteria plain = c;
        plain.cardCode = "7";
        EXPECT_EQ(ids, expected(plain)) << code;
        EXPECT_FALSE(ids.empty());
    }
}

TEST_F(SelectionRows, TheCompanyFilterOfTheOperatorHoldsWhereNoCompanyIsSelected) {
    site.foreign("INSERT INTO OprCompany VALUES(5, 3, 2)");
    site.globals().gSys->SetOperator(5);
    for (const int id : found(criteria(0))) {
        const Person& p = world.people.at(static_cast<std::size_t>(id - 1));
        EXPECT_TRUE(p.company == 0 || p.company == 2) << id;
    }
}

} // namespace
} // namespace kintar::selection
