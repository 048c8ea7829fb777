#include "tools/explain/Rules.h"

#include "base/RunTimeError.h"
#include "base/Unicode.h"
#include "platform/SystemLocale.h"
#include "tools/explain/LineId.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

namespace kintar::explain {
namespace {

BadInput wrong(const char* field, const char* expected) {
    return BadInput("'" + std::string(field) + "' is not " + expected);
}

std::string errorLine(const Json& id, const std::string& message) {
    return Answer().add("id", id).add("error", unicode::toValidUtf8(message)).line();
}

/// Whether brackets nest deeper than any rule asks: writing a value out again takes a stack frame a
/// level. Counted before parsing, since the parser's own hook looks at a whole list at each item.
bool nestsTooDeep(std::string_view line) {
    constexpr int deepest = 64;
    int depth = 0;
    bool inText = false;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const char c = line[at];
        if (inText) {
            at += c == '\\' ? 1 : 0;
            inText = c != '"';
        } else if (c == '[' || c == '{') {
            if (++depth > deepest) {
                return true;
            }
        } else if (c == ']' || c == '}') {
            --depth;
        } else {
            inText = c == '"';
        }
    }
    return false;
}

Json parsed(std::string_view line) {
    if (nestsTooDeep(line)) {
        throw BadInput("the line nests too deep");
    }
    return Json::parse(line);
}

bool isNumber32(const Json& value) {
    if (value.is_number_unsigned()) { // compared as signed, the largest would be negative
        return std::in_range<std::int32_t>(value.get<std::uint64_t>());
    }
    if (value.is_number_float()) { // many writers of JSON put 3 as 3.0
        const double number = value.get<double>();
        return number == std::nearbyint(number) &&
               number >= std::numeric_limits<std::int32_t>::min() &&
               number <= std::numeric_limits<std::int32_t>::max();
    }
    return value.is_number_integer() && std::in_range<std::int32_t>(value.get<std::int64_t>());
}

template <class Item>
std::vector<Item> listOf(const Json& input, const char* field, const char* expected,
                         bool (*isItem)(const Json&)) {
    const auto found = input.find(field);
    if (found == input.end() || found->is_null()) {
        return {};
    }
    if (!found->is_array() || !std::ranges::all_of(*found, isItem)) {
        throw wrong(field, expected);
    }
    return found->get<std::vector<Item>>();
}

} // namespace

const std::vector<Rule>& rules() {
    static const std::vector<Rule> table = {
        {"card",
         "in: enable, id (the person's number; nameId where the line has an id of its own), "
         "locGrp, "
         "code, now, locale (en-US, de-DE, iso), ruleFile (text or null), existing (names); out: "
         "written, staging, stopDate, fileName",
         applyCard},
        {"dialect",
         "in: sql, engine (sqlite, postgresql); out: text, values, or error with position (the "
         "character, "
         "1 the first)",
         applyDialect},
        {"in-out",
         "in: names (ID and Name), locale, tables (Cards and LocCards, each a list of rows); out: "
         "items in the order of the names, in, out",
         applyInOut},
        {"names", "in: locGrp, mode, lastName, firstName, companyFilter; out: sql", applyNames},
        {"number", "in: text, reading (leading, whole, numeric); out: value, or error",
         applyNumber},
        {"override-accept",
         "in: the record's fields (ID, PointID, PointType, StartCmd, StartDate, StopCmd, StopDate, "
         "Opr, OprID, Status, IsAdd), startSlider, stopSlider, additionalDays (start, stop), zone, "
         "useDst, record, locationRow (false: the point has no location); out: outcome (ok, dates, "
         "command), statements",
         applyOverrideAccept},
        {"override-correction",
         "in: isAdd, now, locTimeDiff, sysTimeDiff (0 where left out), date, slider (0 to 95); "
         "out: "
         "date, slider, moment",
         applyOverrideCorrection},
        {"override-save",
         "in: the record's fields, zone (absent: the point has no location; null: Null in the "
         "database), useDst, record (as in zone); out: sql (null: none was run), result, after",
         applyOverrideSave},
        {"selection",
         "in: today, locGrp, groupLocs, companyFilter and the criteria (lastName, firstName, "
         "companies, visitor, trace, guardTour, status, cardCode, cardNum, startLow, startHigh, "
         "stopLow, stopHigh, notUsedDays, udf, skills); out: sql and the parts it was joined of, "
         "and the input as the builders leave it",
         applySelection},
        {"who-is-in",
         "in: loc, now, builds (how many on the same object), map (the printer map's text or "
         "null), "
         "tables (Loc, Cards, LocCards, Dev, Names, Company: each a list of rows); out: builds, "
         "for "
         "each rows, totals, totalStatements, inCount, printer, locationList, and error where it "
         "failed",
         applyWhoIsIn},
        {"zone",
         "in: zone, useDst, toUtc, moment, and record (bias, standardBias, daylightBias, "
         "standardDate, daylightDate) in place of the system's; out: moment, ok",
         applyZone},
    };
    return table;
}

std::string jsonText(const Json& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Answer& Answer::add(std::string_view field, const Json& value) {
    return addText(field, jsonText(value));
}

Answer& Answer::addText(std::string_view field, const std::string& text) {
    fields_ += (fields_.empty() ? "" : ",") + jsonText(Json(std::string(field))) + ":" + text;
    return *this;
}

std::string answerLine(const Rule& rule, std::string_view line) {
    Json id;
    try {
        const Json input = parsed(line);
        if (!input.is_object()) {
            throw BadInput("the line is not a JSON object");
        }
        id = input.value("id", Json());
        Answer answer;
        answer.add("id", id);
        rule.apply(input, answer);
        return answer.line();
    } catch (const RunTimeError& error) {
        return errorLine(id, error.clientText());
    } catch (const std::exception& error) {
        return errorLine(id.is_null() ? idOf(line) : id, error.what());
    }
}

bool has(const Json& input, const char* field) {
    const auto found = input.find(field);
    return found != input.end() && !found->is_null();
}

const Json& required(const Json& input, const char* field) {
    const auto found = input.find(field);
    if (found == input.end()) {
        throw BadInput("'" + std::string(field) + "' is missing");
    }
    return *found;
}

std::string text(const Json& input, const char* field) {
    const Json& value = required(input, field);
    if (!value.is_string()) {
        throw wrong(field, "a text");
    }
    return value.get<std::string>();
}

std::string textOrEmpty(const Json& input, const char* field) {
    return has(input, field) ? text(input, field) : std::string();
}

std::string textOrNumber(const Json& input, const char* field) {
    const auto found = input.find(field);
    return found != input.end() && found->is_number_integer() ? jsonText(*found)
                                                              : textOrEmpty(input, field);
}

bool booleanOrFalse(const Json& input, const char* field) {
    return has(input, field) && boolean(input, field);
}

bool boolean(const Json& input, const char* field) {
    const Json& value = required(input, field);
    if (value.is_boolean()) {
        return value.get<bool>();
    }
    if (value != 0 && value != 1 && value != -1) { // as databases hold it
        throw wrong(field, "true or false");
    }
    return value != 0;
}

std::int32_t number32Or(const Json& input, const char* field, std::int32_t otherwise) {
    return has(input, field) ? number32(input, field) : otherwise;
}

std::int32_t number32(const Json& input, const char* field) {
    const Json& value = required(input, field);
    if (!isNumber32(value)) {
        throw wrong(field, "a 32-bit integer");
    }
    return value.get<std::int32_t>();
}

DateTime dateTime(const Json& input, const char* field) {
    const std::optional<DateTime> moment = DateTime::fromIso(text(input, field));
    if (!moment) {
        throw wrong(field, "a date as YYYY-MM-DD or YYYY-MM-DDTHH:MM:SS");
    }
    return *moment;
}

std::vector<std::string> texts(const Json& input, const char* field) {
    return listOf<std::string>(input, field, "a list of texts",
                               [](const Json& item) { return item.is_string(); });
}

std::vector<std::int32_t> numbers32(const Json& input, const char* field) {
    return listOf<std::int32_t>(input, field, "a list of 32-bit integers", isNumber32);
}

std::vector<Json> objects(const Json& input, const char* field) {
    return listOf<Json>(input, field, "a list of objects",
                        [](const Json& item) { return item.is_object(); });
}

LocaleFormats locale(const Json& input, const char* field) {
    const std::string name = textOrEmpty(input, field);
    if (name.empty()) {
        return {};
    }
    const std::optional<LocaleFormats> formats = platform::localeFormats(name);
    if (!formats) {
        throw BadInput("'" + std::string(field) + "' is '" + name + "', which is no known locale");
    }
    return *formats;
}

} // namespace kintar::explain
