#include "search/agreement/RandomSite.h"

#include "base/Unicode.h"
#include "companion/dialect/LikePattern.h"

#include <array>

namespace kintar::agreement {

namespace {

using companion::dialect::codePoints;
using companion::dialect::utf8;

constexpr int groups = 2;
constexpr int companyNumbers = 4;
constexpr int fieldNumbers = 3;
constexpr int skillNumbers = 3;

/// What patterns, literals, both engines' languages or case folding treat otherwise than a letter.
const std::u32string awkward = U"%_[]!-^'\"\\`;#&|*?/{}$:@(),.~ \t\n\r\x01\x7f\u00A0\u200D\u200F"
                               U"\u0301\u0345\u0130\u0131\uFFFD\uE000\uFDFA\uFF0E\U0010FFFD";

/// Each with what it folds alike, or nearly so.
const std::u32string lettersOfCase =
    U"aAáÁäÄåÅ\u212BbBkK\u212AsS\u017Fß\u1E9EiI\u0130\u0131"
    U"σΣςθΘϑϴµμΜωΩ\u2126ᾳᾼΐ\u0390\u1FD3дДёЁ\u1C81"
    U"\u13A0\uAB70\u13F0\u13F8\u10D0\u1C90\u0587Ǆǅǆﬀŉ\U00010400\U00010428";

const std::u32string lettersWithoutCase = U"019欧佐さเกاלשل\U0001F600";

std::string literal(const MaybeText& text) {
    if (!text) {
        return "NULL";
    }
    std::string quoted = "'";
    for (const char c : *text) {
        quoted += c == '\'' ? "''" : std::string(1, c);
    }
    return quoted + "'";
}

std::string literal(const MaybeNumber& number) {
    return number ? std::to_string(*number) : "NULL";
}

std::string literal(int number) {
    return std::to_string(number);
}

std::string literal(const MaybeMoment& moment) {
    return moment ? "'" + moment->isoWithBlank() + "'" : "NULL";
}

template <class... Values>
std::string insert(const char* table, const Values&... values) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + literal(values)), ...);
    return "INSERT INTO " + std::string(table) + " VALUES (" + list + ");";
}

} // namespace

DateTime today() {
    return DateTime::fromFields(2012, 3, 14).value();
}

RandomSite::RandomSite(std::uint64_t seed) : random_(seed) {
    for (int count = 0; count < 8; ++count) {
        stems_.push_back(letters(4));
    }
    makePeople();
}

int RandomSite::upTo(int most) {
    return std::uniform_int_distribution<int>(0, most)(random_);
}

MaybeNumber RandomSite::number(int most) {
    return oneIn(12) ? MaybeNumber() : upTo(most);
}

MaybeNumber RandomSite::group() {
    return oneIn(15) ? MaybeNumber() : 3 + upTo(groups - 1);
}

MaybeNumber RandomSite::yesNo() {
    return oneIn(6) ? MaybeNumber() : -upTo(1);
}

MaybeMoment RandomSite::moment() {
    if (oneIn(8)) {
        return std::nullopt;
    }
    const DateTime day = today().plusDays(upTo(8) - 4);
    return oneIn(2) ? day : DateTime(day.moment() + std::chrono::seconds(upTo(86399)));
}

DateTime RandomSite::day() {
    return today().plusDays(upTo(8) - 4);
}

std::string RandomSite::letters(int most) {
    std::u32string text;
    for (int count = upTo(most); count > 0; --count) {
        const std::u32string& from = oneIn(4)   ? awkward
                                     : oneIn(5) ? lettersWithoutCase
                                                : lettersOfCase;
        text += from[static_cast<std::size_t>(upTo(static_cast<int>(from.size()) - 1))];
    }
    return utf8(text);
}

std::string RandomSite::otherCase(const std::string& text) {
    std::u32string points = codePoints(text);
    for (char32_t& point : points) {
        const std::vector<char32_t> alike = unicode::caseVariants(point);
        if (!alike.empty() && oneIn(2)) {
            point = oneOf(alike);
        }
    }
    return utf8(points);
}

MaybeText RandomSite::text() {
    if (oneIn(12)) {
        return std::nullopt;
    }
    if (oneIn(40)) {
        return otherCase(oneOf(stems_)) + std::string(300, 'x');
    }
    return otherCase(oneOf(stems_)) + (oneIn(3) ? std::string() : letters(2));
}

MaybeText RandomSite::code() {
    static const std::vector<MaybeText> some{"123",       "00123",
                                             " 123 ",     "+123",
                                             "123.0",     "123.",
                                             "-5",        "-05",
                                             "0",         "-0",
                                             "0.5",       ".5",
                                             "1e3",       "1,234",
                                             "&H1F",      "99999999999999999999",
                                             "\n12",      "12",
                                             "12A",       "12a",
                                             "1 2",       "",
                                             ".",         "\u00A012",
                                             "٣",         "100000000000000000001",
                                             std::nullopt};
    return oneIn(5) ? text() : oneOf(some);
}

std::string RandomSite::criterion(const std::vector<MaybeText>& texts) {
    if (oneIn(3)) {
        return {};
    }
    if (oneIn(10)) {
        return oneIn(3) ? std::string("%") : letters(3);
    }
    std::u32string points = codePoints(otherCase(oneOf(texts).value_or("")));
    points.resize(
        static_cast<std::size_t>(upTo(static_cast<int>(std::min<std::size_t>(points.size(), 4)))));
    if (oneIn(3) && !points.empty()) {
        static const std::array<std::u32string, 4> lists{U"[a-z]", U"[!a-z]", U"[А-я]", U"[z-a]"};
        const auto at = static_cast<std::size_t>(upTo(static_cast<int>(points.size()) - 1));
        const std::u32string one(1, points[at]);
        const std::u32string next(1, points[at] + 1);
        const std::vector<std::u32string> patterns{U"_",
                                                   U"%",
                                                   U"[" + one + U"]",
                                                   U"[!" + one + U"]",
                                                   U"[]" + one,
                                                   U"[" + one,
                                                   U"[" + one + U"-" + next + U"]",
                                                   U"[-" + one + U"]",
                                                   lists[static_cast<std::size_t>(upTo(3))]};
        points.replace(at, 1, oneOf(patterns));
    }
    return utf8(points);
}

selection::Choice RandomSite::choice() {
    return oneIn(3) ? (oneIn(2) ? selection::Choice::True : selection::Choice::False)
                    : selection::Choice::Either;
}

void RandomSite::makePeople() {
    for (int company = 0; company < companyNumbers + 2; ++company) {
        people_.companies.push_back({group(), number(companyNumbers), text()});
    }
    people_.locations = {{11, 3}, {12, 3}, {13, 4}, {14, std::nullopt}};
    for (int id = 1; id <= 40; ++id) {
        people_.names.push_back(
            {id, text(), text(), group(), number(companyNumbers), yesNo(), yesNo()});
        if (oneIn(6)) { // somebody of the very same name
            people_.names.back().last = people_.names.front().last;
            people_.names.back().first = people_.names.front().first;
        }
        lasts_.push_back(people_.names.back().last);
        firsts_.push_back(people_.names.back().first);
        makeCards(id);
        makeFields(id);
        for (int count = upTo(2); count > 0; --count) {
            people_.skills.push_back({oneIn(20) ? MaybeNumber() : id, number(skillNumbers)});
        }
    }
}

void RandomSite::makeCards(int nameId) {
    for (int count = upTo(3); count > 0; --count) {
        const int id = static_cast<int>(people_.cards.size()) + 1;
        people_.cards.push_back({id, oneIn(20) ? MaybeNumber() : nameId, group(), code(), text(),
                                 number(1), moment(), moment(), yesNo(), number(2)});
        codes_.push_back(people_.cards.back().code);
        cardNums_.push_back(people_.cards.back().cardNum);
        for (int uses = upTo(2); uses > 0; --uses) {
            people_.uses.push_back({static_cast<int>(people_.uses.size()) + 1,
                                    oneIn(20) ? MaybeNumber() : id,
                                    oneIn(20) ? MaybeNumber() : 11 + upTo(3), moment()});
        }
    }
}

void RandomSite::makeFields(int nameId) {
    for (int num = 1; num <= fieldNumbers; ++num) {
        if (!oneIn(4)) {
            people_.fields.push_back({oneIn(20) ? MaybeNumber() : nameId, num, text(), group()});
            fieldTexts_.push_back(people_.fields.back().text);
        }
    }
}

std::string RandomSite::statements() const {
    std::string sql = "BEGIN;";
    for (const Person& p : people_.names) {
        sql += insert("Names", p.id, p.last, p.first, p.locGrp, p.company, p.visitor, p.trace);
    }
    for (const Company& c : people_.companies) {
        sql += insert("Company", c.locGrp, c.company, c.name);
    }
    for (const Card& c : people_.cards) {
        sql += insert("Cards", c.id, c.nameId, c.locGrp, c.code, c.cardNum, c.status, c.start,
                      c.stop, c.guardTour, c.flag);
    }
    for (const Use& u : people_.uses) {
        sql += insert("LocCards", u.id, u.card, u.loc, u.last, MaybeNumber(), MaybeText(),
                      MaybeText(), MaybeText(), MaybeText());
    }
    for (const Field& f : people_.fields) {
        sql += insert("UDF", f.nameId, f.num, f.text, f.locGrp);
    }
    for (const Skill& s : people_.skills) {
        sql += insert("Skills", s.nameId, s.skill);
    }
    for (const Location& l : people_.locations) {
        sql += insert("Loc", l.loc, l.locGrp, MaybeText(), MaybeText(), MaybeNumber());
    }
    return sql + "COMMIT;";
}

void RandomSite::addCriteriaOfCards(selection::SelectionCriteria& criteria) {
    if (oneIn(4)) {
        criteria.cardCode = oneIn(2) ? code().value_or("") : criterion(codes_);
    }
    if (oneIn(4)) {
        criteria.cardNum = criterion(cardNums_);
    }
    if (oneIn(4)) {
        criteria.status =
            oneIn(2) ? selection::CardStatus::Active : selection::CardStatus::Inactive;
    }
    if (oneIn(4)) {
        criteria.startLow = day();
        criteria.startHigh = day();
    }
    if (oneIn(4)) {
        criteria.stopLow = day();
        criteria.stopHigh = day();
    }
    if (oneIn(4)) {
        criteria.guardTour = choice();
    }
    if (oneIn(4)) {
        criteria.notUsedDays = std::to_string(upTo(4));
    }
}

void RandomSite::addLists(selection::SelectionCriteria& criteria) {
    for (int company = 1; company <= companyNumbers; ++company) {
        criteria.companies.push_back({company, oneIn(6)});
    }
    for (int num = 1; num <= fieldNumbers; ++num) {
        criteria.udf.push_back({num, "Field", oneIn(5) ? criterion(fieldTexts_) : ""});
    }
    for (int skill = 0; skill <= skillNumbers; ++skill) {
        criteria.skills.push_back({std::to_string(skill) + "ID", oneIn(16)});
    }
}

selection::SelectionCriteria RandomSite::nextSelection() {
    selection::SelectionCriteria criteria = selection::blankCriteria(3 + upTo(groups - 1), today());
    criteria.lastName = oneIn(2) ? criterion(lasts_) : "";
    criteria.firstName = oneIn(3) ? criterion(firsts_) : "";
    criteria.visitor = choice();
    criteria.trace = choice();
    if (oneIn(2)) {
        addCriteriaOfCards(criteria);
    }
    addLists(criteria);
    return criteria;
}

search::NameCriteria RandomSite::nextNames() {
    return {.locGrp = 3 + upTo(groups - 1),
            .mode = oneIn(2) ? search::guardTourMode : std::int16_t{0},
            .lastName = criterion(lasts_),
            .firstName = oneIn(2) ? criterion(firsts_) : ""};
}

std::optional<std::vector<int>> RandomSite::nextRestriction() {
    if (!oneIn(4)) {
        return std::nullopt;
    }
    return std::vector<int>{0, upTo(companyNumbers), upTo(companyNumbers)};
}

} // namespace kintar::agreement
