// The statements of the name search and of the advanced search.
#include "base/Number.h"
#include "companion/RecordHelper.h"
#include "search/NameQuery.h"
#include "search/SelectionQuery.h"
#include "tools/explain/Rules.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kintar::explain {
namespace {

/// Literals need no database and announce nothing.
class NoNotices final : public companion::Notices {
public:
    void writeFailed(const std::string& /*reason*/) override {}
};

class Literals {
public:
    std::string sqlText(std::string_view text) { return helper_.SqlText(text); }
    std::string sqlDate(DateTime value) { return helper_.SqlDate(value); }

private:
    NoNotices notices_;
    companion::RecordHelper helper_{notices_};
};

/// Answers of the companion as the input line states them.
class StatedServices final : public selection::SelectionServices {
public:
    explicit StatedServices(const Json& input)
        : companyFilter_(textOrEmpty(input, "companyFilter")),
          groupLocs_(numbers32(input, "groupLocs")) {}

    std::string SqlText(std::string_view text) override { return literals_.sqlText(text); }
    std::string SqlDate(DateTime value) override { return literals_.sqlDate(value); }
    std::string CompanyFilter(std::string_view /*column*/, std::int32_t /*locGrp*/,
                              bool /*flag*/) override {
        return companyFilter_;
    }
    std::vector<std::int32_t> readLocations(const std::string& /*sql*/) override {
        return groupLocs_;
    }

private:
    Literals literals_;
    std::string companyFilter_;
    std::vector<std::int32_t> groupLocs_;
};

template <class Enum>
using Words = std::vector<std::pair<std::string_view, Enum>>;

const Words<selection::Choice> choices = {{"either", selection::Choice::Either},
                                          {"true", selection::Choice::True},
                                          {"false", selection::Choice::False}};
const Words<selection::CardStatus> statuses = {{"either", selection::CardStatus::Either},
                                               {"active", selection::CardStatus::Active},
                                               {"inactive", selection::CardStatus::Inactive}};

/// One of some words; the first of them where the field is absent.
template <class Enum>
Enum oneOf(const Json& input, const char* field, const Words<Enum>& words) {
    // The words "true" and "false" may also stand there as JSON's own values.
    const auto found = input.find(field);
    const std::string word =
        found != input.end() && found->is_boolean() ? jsonText(*found) : textOrEmpty(input, field);
    if (word.empty()) {
        return words.front().second;
    }
    std::string known;
    for (const auto& [name, value] : words) {
        if (name == word) {
            return value;
        }
        known += (known.empty() ? "" : ", ") + std::string(name);
    }
    throw BadInput("'" + std::string(field) + "' is '" + word + "', not one of " + known);
}

template <class Enum>
std::string wordFor(Enum value, const Words<Enum>& words) {
    for (const auto& [name, each] : words) {
        if (each == value) {
            return std::string(name);
        }
    }
    return {};
}

DateTime dateOr(const Json& input, const char* field, DateTime otherwise) {
    return input.contains(field) && !input[field].is_null() ? dateTime(input, field).dateOnly()
                                                            : otherwise;
}

/// Skills are keyed by their ID and letters; the line may name the ID alone or the whole key.
std::string skillKey(const Json& item) {
    const Json& key = required(item, "key");
    return key.is_number() ? std::to_string(number32(item, "key")) + "ID" : text(item, "key");
}

void readLists(const Json& input, selection::SelectionCriteria& criteria) {
    for (const Json& item : objects(input, "companies")) {
        criteria.companies.push_back({number32(item, "data"), booleanOrFalse(item, "selected")});
    }
    for (const Json& item : objects(input, "udf")) {
        criteria.udf.push_back(
            {number32(item, "num"), textOrEmpty(item, "name"), textOrNumber(item, "value")});
    }
    for (const Json& item : objects(input, "skills")) {
        criteria.skills.push_back({skillKey(item), booleanOrFalse(item, "selected")});
    }
}

selection::SelectionCriteria readCriteria(const Json& input, DateTime today) {
    selection::SelectionCriteria criteria =
        selection::blankCriteria(number32(input, "locGrp"), today);
    criteria.lastName = textOrEmpty(input, "lastName");
    criteria.firstName = textOrEmpty(input, "firstName");
    criteria.visitor = oneOf(input, "visitor", choices);
    criteria.trace = oneOf(input, "trace", choices);
    criteria.guardTour = oneOf(input, "guardTour", choices);
    criteria.status = oneOf(input, "status", statuses);
    criteria.cardCode = textOrNumber(input, "cardCode");
    criteria.cardNum = textOrNumber(input, "cardNum");
    criteria.notUsedDays = textOrNumber(input, "notUsedDays");
    criteria.startLow = dateOr(input, "startLow", today);
    criteria.startHigh = dateOr(input, "startHigh", today);
    criteria.stopLow = dateOr(input, "stopLow", today);
    criteria.stopHigh = dateOr(input, "stopHigh", today);
    readLists(input, criteria);
    return criteria;
}

std::string dateText(DateTime value) {
    return value.iso().substr(0, 10);
}

/// The input as the builders leave it, in the fields of the input line. A skill's key is given back
/// as the line had it.
Json after(const Json& input, const selection::SelectionCriteria& criteria) {
    Json left = {{"lastName", criteria.lastName}, {"firstName", criteria.firstName}};
    left["companies"] = Json::array();
    for (const selection::CompanyItem& item : criteria.companies) {
        left["companies"].push_back({{"data", item.data}, {"selected", item.selected}});
    }
    left["visitor"] = wordFor(criteria.visitor, choices);
    left["trace"] = wordFor(criteria.trace, choices);
    left["guardTour"] = wordFor(criteria.guardTour, choices);
    left["status"] = wordFor(criteria.status, statuses);
    left["cardCode"] = criteria.cardCode;
    left["cardNum"] = criteria.cardNum;
    left["startLow"] = dateText(criteria.startLow);
    left["startHigh"] = dateText(criteria.startHigh);
    left["stopLow"] = dateText(criteria.stopLow);
    left["stopHigh"] = dateText(criteria.stopHigh);
    left["notUsedDays"] = criteria.notUsedDays;
    left["udf"] = Json::array();
    for (const selection::UdfRow& row : criteria.udf) {
        left["udf"].push_back(
            {{"num", row.num.value_or(0)}, {"name", row.name}, {"value", row.value}});
    }
    left["skills"] = Json::array();
    for (std::size_t i = 0; i < criteria.skills.size(); ++i) {
        left["skills"].push_back(
            {{"key", input["skills"][i]["key"]}, {"selected", criteria.skills[i].selected}});
    }
    return left;
}

} // namespace

void applyNames(const Json& input, Answer& answer) {
    Literals literals;
    const std::string companyFilter = textOrEmpty(input, "companyFilter");
    const std::int32_t mode = number32Or(input, "mode", 0);
    search::NameCriteria criteria;
    criteria.locGrp = number32(input, "locGrp");
    criteria.mode = toInt16(mode);
    criteria.lastName = textOrEmpty(input, "lastName");
    criteria.firstName = textOrEmpty(input, "firstName");
    answer.add("sql", search::LoadNames(criteria, {[&](std::string_view source) {
                                                       return literals.sqlText(source);
                                                   },
                                                   [&](std::string_view, std::int32_t, bool) {
                                                       return std::string(companyFilter);
                                                   }}));
}

void applySelection(const Json& input, Answer& answer) {
    const DateTime today = dateTime(input, "today").dateOnly();
    StatedServices services(input);
    selection::SelectionQuery query(readCriteria(input, today), today, services);
    query.BuildSql();
    answer.add("sql", query.NameSql)
        .add("cardSql", query.CardSql)
        .add("udfSql", query.UdfSql)
        .add("skillSql", query.SkillSql)
        .add("haveNameCrit", query.HaveNameCrit)
        .add("haveCardCrit", query.HaveCardCrit)
        .add("haveUdfCrit", query.HaveUdfCrit)
        .add("haveSkillCrit", query.HaveSkillCrit)
        .add("companyFilterAsked", query.companyFilterAsked)
        .add("locationQuery", query.locationQuery ? Json(*query.locationQuery) : Json())
        .add("after", after(input, query.criteria));
}

} // namespace kintar::explain
