// A small site of random people, as unpleasant as data may be, and random searches for them.
#pragma once

#include "base/DateTime.h"
#include "search/NameQuery.h"
#include "search/SelectionCriteria.h"

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace kintar::agreement {

using MaybeText = std::optional<std::string>;
using MaybeNumber = std::optional<int>;
using MaybeMoment = std::optional<DateTime>;

struct Person {
    int id = 0;
    MaybeText last, first;
    MaybeNumber locGrp, company, visitor, trace;
};
struct Company {
    MaybeNumber locGrp, company;
    MaybeText name;
};
struct Card {
    int id = 0;
    MaybeNumber nameId, locGrp;
    MaybeText code, cardNum;
    MaybeNumber status;
    MaybeMoment start, stop;
    MaybeNumber guardTour, flag;
};
struct Use {
    int id = 0;
    MaybeNumber card, loc;
    MaybeMoment last;
};
struct Field {
    MaybeNumber nameId, num;
    MaybeText text;
    MaybeNumber locGrp;
};
struct Skill {
    MaybeNumber nameId, skill;
};
struct Location {
    int loc = 0;
    MaybeNumber locGrp;
};

/// What searches read. Every value may be Null that is no key.
struct People {
    std::vector<Person> names;
    std::vector<Company> companies;
    std::vector<Card> cards;
    std::vector<Use> uses;
    std::vector<Field> fields;
    std::vector<Skill> skills;
    std::vector<Location> locations;
};

/// The day on which all searches are made.
DateTime today();

/// Everything comes from one seed.
class RandomSite {
public:
    explicit RandomSite(std::uint64_t seed);

    [[nodiscard]] const People& people() const { return people_; }
    /// Statements that put the people into a database, for either engine.
    [[nodiscard]] std::string statements() const;

    selection::SelectionCriteria nextSelection();
    search::NameCriteria nextNames();
    /// The companies that the operator may see, or no restriction.
    std::optional<std::vector<int>> nextRestriction();

private:
    int upTo(int most);
    bool oneIn(int times) { return upTo(times - 1) == 0; }
    template <class Value>
    Value oneOf(const std::vector<Value>& values) {
        return values[static_cast<std::size_t>(upTo(static_cast<int>(values.size()) - 1))];
    }
    MaybeNumber number(int most);
    MaybeNumber group();
    MaybeNumber yesNo();
    MaybeMoment moment();
    MaybeText text();
    MaybeText code();
    std::string letters(int most);
    std::string otherCase(const std::string& text);
    /// A text to search `texts` for: often one that some of them begin with, often a pattern.
    std::string criterion(const std::vector<MaybeText>& texts);
    DateTime day();
    selection::Choice choice();
    void addCriteriaOfCards(selection::SelectionCriteria& criteria);
    void addLists(selection::SelectionCriteria& criteria);

    void makePeople();
    void makeCards(int nameId);
    void makeFields(int nameId);

    std::mt19937_64 random_;
    std::vector<std::string> stems_;
    People people_;
    std::vector<MaybeText> lasts_, firsts_, codes_, cardNums_, fieldTexts_;
};

} // namespace kintar::agreement
