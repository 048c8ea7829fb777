// The rules that kintar-explain can apply, each to one line of input.
#pragma once

#include "base/DateTime.h"
#include "base/LocaleFormats.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::explain {

using Json = nlohmann::ordered_json;

/// A line that cannot be applied: a field is missing, of the wrong type or out of its range.
class BadInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The fields of an answer in order, each already JSON text: a number of any length stays exact.
class Answer {
public:
    Answer& add(std::string_view field, const Json& value);
    /// `text` is JSON as it stands.
    Answer& addText(std::string_view field, const std::string& text);
    /// The whole line: an object of the fields.
    [[nodiscard]] std::string line() const { return "{" + fields_ + "}"; }

private:
    std::string fields_;
};

/// A rule: its name, what goes in and comes out (for `--help`), and how it is applied. `apply` gets
/// the object of one line and adds the fields of the answer; it throws BadInput or RunTimeError.
struct Rule {
    std::string_view name;
    std::string_view help;
    void (*apply)(const Json& input, Answer& answer);
};

const std::vector<Rule>& rules();

/// The answer to one line, whatever it holds: the fields of the rule's answer, or `error`, with the
/// `id` of the line in front where it has one. A line that is no JSON still has the one it begins
/// with.
std::string answerLine(const Rule& rule, std::string_view line);

/// A value as JSON text; bytes that are no UTF-8 become U+FFFD.
std::string jsonText(const Json& value);

/// Whether the field is there and not null.
bool has(const Json& input, const char* field);

// Reading fields; all throw BadInput naming the field.
const Json& required(const Json& input, const char* field);
std::string text(const Json& input, const char* field);
/// "" where the field is absent or null.
std::string textOrEmpty(const Json& input, const char* field);
/// As `textOrEmpty`; a whole number is taken as its digits.
std::string textOrNumber(const Json& input, const char* field);
/// true or false, or a database's 0, 1 and -1.
bool boolean(const Json& input, const char* field);
/// False where the field is absent or null.
bool booleanOrFalse(const Json& input, const char* field);
/// Whole numbers may be written with a fraction of zero.
std::int32_t number32(const Json& input, const char* field);
/// `otherwise` where the field is absent or null.
std::int32_t number32Or(const Json& input, const char* field, std::int32_t otherwise);
DateTime dateTime(const Json& input, const char* field);
// Lists are empty where the field is absent or null.
std::vector<std::string> texts(const Json& input, const char* field);
std::vector<std::int32_t> numbers32(const Json& input, const char* field);
std::vector<Json> objects(const Json& input, const char* field);
/// `en-US` where the field is absent, null or empty.
LocaleFormats locale(const Json& input, const char* field);

void applyZone(const Json& input, Answer& answer);
void applyOverrideSave(const Json& input, Answer& answer);
void applyOverrideCorrection(const Json& input, Answer& answer);
void applyOverrideAccept(const Json& input, Answer& answer);
void applyNumber(const Json& input, Answer& answer);
void applyCard(const Json& input, Answer& answer);
void applyDialect(const Json& input, Answer& answer);
void applyNames(const Json& input, Answer& answer);
void applyInOut(const Json& input, Answer& answer);
void applySelection(const Json& input, Answer& answer);
void applyWhoIsIn(const Json& input, Answer& answer);

} // namespace kintar::explain
