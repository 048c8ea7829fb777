#include "search/agreement/PlainSearch.h"

#include "base/Unicode.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <set>

namespace kintar::agreement {

namespace {

using selection::CardStatus;
using selection::Choice;
using selection::SelectionCriteria;

/// The characters of a text in UTF-8.
std::u32string decoded(const std::string& text) {
    std::u32string points;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        const int lead = std::countl_one(byte);
        if (lead == 1) {
            points.back() = points.back() << 6U | (byte & 0x3FU);
        } else {
            points += static_cast<char32_t>(byte & 0xFFU >> lead);
        }
    }
    return points;
}

/// One place of a pattern: what a character must be, or that any number of them may stand here.
struct Place {
    bool many = false;
    std::function<bool(char32_t folded)> takes;
};

Place listPlace(std::u32string inside) {
    const bool negated = inside.size() > 1 && inside.front() == U'!';
    inside.erase(0, negated ? 1 : 0);
    std::vector<std::pair<char32_t, char32_t>> ranges;
    while (!inside.empty()) {
        const bool range = inside.size() > 2 && inside[1] == U'-';
        ranges.emplace_back(inside[0], inside[range ? 2 : 0]);
        inside.erase(0, range ? 3 : 1);
    }
    return {false, [ranges, negated](char32_t folded) {
                std::vector<char32_t> alike = unicode::caseVariants(folded);
                alike.push_back(folded);
                const bool listed = std::ranges::any_of(alike, [&](char32_t c) {
                    return std::ranges::any_of(
                        ranges, [c](const auto& r) { return r.first <= c && c <= r.second; });
                });
                return listed != negated;
            }};
}

std::vector<Place> placesOf(const std::string& pattern) {
    std::vector<Place> places;
    std::u32string rest = decoded(pattern);
    while (!rest.empty()) {
        const char32_t first = rest.front();
        const std::size_t close = first == U'[' ? rest.find(U']') : std::u32string::npos;
        if (close != std::u32string::npos) {
            if (close > 1) {
                places.push_back(listPlace(rest.substr(1, close - 1)));
            }
            rest.erase(0, close + 1);
            continue;
        }
        if (first == U'%') {
            places.push_back({true, {}});
        } else if (first == U'_') {
            places.push_back({false, [](char32_t) { return true; }});
        } else {
            places.push_back({false, [first](char32_t folded) {
                                  const std::vector<char32_t> alike = unicode::caseVariants(first);
                                  return first == folded || std::ranges::count(alike, folded) > 0;
                              }});
        }
        rest.erase(0, 1);
    }
    return places;
}

bool isYes(const MaybeNumber& value) {
    return value && *value != 0;
}

bool meets(Choice choice, const MaybeNumber& value) {
    return choice == Choice::Either || (value && (choice == Choice::True) == (*value != 0));
}

bool isAsked(const std::string& text) {
    return !text.empty() && text != "%";
}

bool begins(const MaybeText& text, const std::string& asked) {
    return !isAsked(asked) || isLike(text, asked + "%");
}

bool contains(const std::vector<int>& list, const MaybeNumber& value) {
    return value && std::ranges::count(list, *value) > 0;
}

bool isBetween(const MaybeMoment& moment, DateTime one, DateTime other) {
    return moment && *moment >= std::min(one, other) && *moment <= std::max(one, other);
}

MaybeText shownYesNo(const MaybeNumber& value) {
    return value ? MaybeText(*value != 0 ? "True" : "False") : MaybeText();
}

void addRows(std::vector<Row>& rows, const People& people, const Person& person) {
    const auto add = [&](const MaybeText& company) {
        rows.push_back({placeOf(person),
                        valuesOf(std::to_string(person.id),
                                 person.last.value_or("") + ", " + person.first.value_or(""),
                                 shownYesNo(person.visitor), shownYesNo(person.trace), company)});
    };
    bool any = false;
    for (const Company& company : people.companies) {
        if (person.locGrp && person.company && company.locGrp == person.locGrp &&
            company.company == person.company) {
            add(company.name);
            any = true;
        }
    }
    if (!any) {
        add(std::nullopt);
    }
}

/// Cards and their uses, as an advanced search asks for them.
class CardSearch {
public:
    CardSearch(const People& people, const SelectionCriteria& criteria)
        : people_(people), criteria_(criteria) {}

    [[nodiscard]] bool isWanted() const {
        return isAsked(criteria_.cardCode) || isAsked(criteria_.cardNum) ||
               criteria_.status != CardStatus::Either || asksForStart() || asksForStop() ||
               criteria_.guardTour != Choice::Either || unusedDays() > 0;
    }
    [[nodiscard]] bool matches(const Card& card) const {
        return card.locGrp == criteria_.LocGrp && card.flag && *card.flag != 2 &&
               matchesCode(card) && begins(card.cardNum, criteria_.cardNum) &&
               matchesStatus(card) &&
               (!asksForStart() ||
                isBetween(card.start, criteria_.startLow, criteria_.startHigh)) &&
               (!asksForStop() || isBetween(card.stop, criteria_.stopLow, criteria_.stopHigh)) &&
               meets(criteria_.guardTour, card.guardTour) &&
               (unusedDays() == 0 || wasLastUsedBefore(card));
    }

private:
    [[nodiscard]] bool asksForStart() const {
        return criteria_.startLow != today() || criteria_.startHigh < today();
    }
    [[nodiscard]] bool asksForStop() const {
        return criteria_.stopLow != today() || criteria_.stopHigh != today();
    }
    [[nodiscard]] int unusedDays() const {
        return criteria_.notUsedDays.empty() ? 0 : std::stoi(criteria_.notUsedDays);
    }
    [[nodiscard]] bool matchesCode(const Card& card) const {
        const auto number = plainNumber(criteria_.cardCode);
        return number ? card.code && plainNumber(*card.code) == number
                      : begins(card.code, criteria_.cardCode);
    }
    [[nodiscard]] bool matchesStatus(const Card& card) const {
        return criteria_.status == CardStatus::Either ||
               (card.status && (criteria_.status == CardStatus::Active) == (*card.status != 0));
    }
    [[nodiscard]] bool wasLastUsedBefore(const Card& card) const {
        const DateTime firstThatIsNot = today().plusDays(1 - unusedDays());
        return std::ranges::any_of(people_.uses, [&](const Use& use) {
            return use.card == card.id && use.last && *use.last < firstThatIsNot &&
                   std::ranges::any_of(people_.locations, [&](const Location& location) {
                       return use.loc == location.loc && location.locGrp == criteria_.LocGrp;
                   });
        });
    }

    const People& people_;
    const SelectionCriteria& criteria_;
};

bool hasCard(const People& people, const SelectionCriteria& criteria, int nameId) {
    const CardSearch search(people, criteria);
    return !search.isWanted() || std::ranges::any_of(people.cards, [&](const Card& card) {
        return card.nameId == nameId && search.matches(card);
    });
}

bool hasFields(const People& people, const SelectionCriteria& criteria, int nameId) {
    bool asked = false;
    for (const selection::UdfRow& row : criteria.udf) {
        if (!isAsked(row.value)) {
            continue;
        }
        asked = true;
        if (std::ranges::none_of(people.fields, [&](const Field& field) {
                return field.nameId == nameId && field.num == *row.num &&
                       begins(field.text, row.value);
            })) {
            return false;
        }
    }
    // Whichever field it is, one of them has to belong to the group.
    return !asked || std::ranges::any_of(people.fields, [&](const Field& field) {
        return field.nameId == nameId && field.locGrp == criteria.LocGrp;
    });
}

bool hasSkill(const People& people, const SelectionCriteria& criteria, int nameId) {
    const auto first = std::ranges::find_if(criteria.skills, &selection::SkillItem::selected);
    return first == criteria.skills.end() ||
           std::ranges::any_of(people.skills, [&](const Skill& skill) {
               return skill.nameId == nameId && skill.skill == std::stoi(first->key);
           });
}

/// The companies that are chosen; nothing where none is. The list's first row never counts.
Restriction chosenCompanies(const SelectionCriteria& criteria) {
    if (std::ranges::none_of(criteria.companies, &selection::CompanyItem::selected)) {
        return std::nullopt;
    }
    std::vector<int> chosen{0};
    for (std::size_t at = 1; at < criteria.companies.size(); ++at) {
        if (criteria.companies[at].selected) {
            chosen.push_back(criteria.companies[at].data);
        }
    }
    return chosen;
}

bool isAllowed(const Restriction& restriction, const Person& person) {
    return !restriction || contains(*restriction, person.company);
}

} // namespace

bool isLike(const MaybeText& text, const std::string& pattern) {
    if (!text) {
        return false;
    }
    const std::vector<Place> places = placesOf(pattern);
    const std::u32string folded = decoded(unicode::fold(*text));
    // How many characters the places so far can have taken.
    std::set<std::size_t> taken{0};
    for (const Place& place : places) {
        std::set<std::size_t> next;
        for (const std::size_t count : taken) {
            if (place.many) {
                for (std::size_t more = count; more <= folded.size(); ++more) {
                    next.insert(more);
                }
            } else if (count < folded.size() && place.takes(folded[count])) {
                next.insert(count + 1);
            }
        }
        taken = std::move(next);
    }
    return taken.contains(folded.size());
}

std::optional<std::string> plainNumber(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) {
        return std::nullopt;
    }
    std::string rest = text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
    const bool negative = rest.front() == '-';
    rest.erase(0, negative || rest.front() == '+' ? 1 : 0);
    const std::size_t point = rest.find('.');
    std::string whole = rest.substr(0, point);
    std::string fraction = point == std::string::npos ? "" : rest.substr(point + 1);
    if ((whole + fraction).empty() ||
        (whole + fraction).find_first_not_of("0123456789") != std::string::npos) {
        return std::nullopt;
    }
    whole.erase(0, whole.find_first_not_of('0'));
    fraction.erase(fraction.find_last_not_of('0') + 1);
    const bool zero = whole.empty() && fraction.empty();
    return (negative && !zero ? "-" : "") + whole + "." + fraction;
}

std::string valuesOf(const std::string& id, const std::string& name, const MaybeText& visitor,
                     const MaybeText& trace, const MaybeText& company) {
    return id + " | " + name + " | " + visitor.value_or("(null)") + " | " +
           trace.value_or("(null)") + " | " + company.value_or("(null)");
}

std::string placeOf(const Person& person) {
    // Null stands before every text, the empty one included.
    const auto key = [](const MaybeText& text) {
        return text ? "\x01" + unicode::sortKey(*text) : std::string();
    };
    return key(person.last) + '\0' + key(person.first);
}

std::vector<Row> namesFound(const People& people, const search::NameCriteria& criteria,
                            const Restriction& restriction) {
    std::vector<Row> rows;
    for (const Person& person : people.names) {
        const bool onTour = criteria.mode != search::guardTourMode ||
                            std::ranges::any_of(people.cards, [&](const Card& card) {
                                return card.nameId == person.id && isYes(card.guardTour);
                            });
        if (person.locGrp == criteria.locGrp && onTour &&
            (criteria.lastName.empty() || isLike(person.last, criteria.lastName + "%")) &&
            (criteria.firstName.empty() || isLike(person.first, criteria.firstName + "%")) &&
            isAllowed(restriction, person)) {
            addRows(rows, people, person);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

std::vector<Row> selectionFound(const People& people, const SelectionCriteria& criteria,
                                const Restriction& restriction) {
    const Restriction chosen = chosenCompanies(criteria);
    std::vector<Row> rows;
    for (const Person& person : people.names) {
        if (person.locGrp == criteria.LocGrp && begins(person.last, criteria.lastName) &&
            begins(person.first, criteria.firstName) &&
            isAllowed(chosen ? chosen : restriction, person) &&
            meets(criteria.visitor, person.visitor) && meets(criteria.trace, person.trace) &&
            hasCard(people, criteria, person.id) && hasFields(people, criteria, person.id) &&
            hasSkill(people, criteria, person.id)) {
            addRows(rows, people, person);
        }
    }
    std::ranges::sort(rows);
    return rows;
}

} // namespace kintar::agreement
