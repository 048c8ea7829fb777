#include "companion/Explain.h"
#include "tools/explain/Rules.h"

namespace kintar::explain {
namespace {

/// The values as a JSON list; numbers of any length stay exact.
std::string listOf(const std::vector<companion::LiftedValue>& values) {
    std::string list;
    for (const companion::LiftedValue& value : values) {
        const std::string item =
            std::holds_alternative<companion::DecimalNumber>(value)
                ? std::get<companion::DecimalNumber>(value).text
            : std::holds_alternative<DateTime>(value) ? jsonText(std::get<DateTime>(value).iso())
            : std::holds_alternative<std::int64_t>(value) ? jsonText(std::get<std::int64_t>(value))
                                                          : jsonText(std::get<std::string>(value));
        list += (list.empty() ? "" : ",") + item;
    }
    return "[" + list + "]";
}

} // namespace

void applyDialect(const Json& input, Answer& answer) {
    const std::string stated = textOrEmpty(input, "engine");
    const std::string engine = stated.empty() ? "sqlite" : stated;
    try {
        const companion::Explained explained =
            companion::explainDialect(text(input, "sql"), engine);
        answer.add("text", explained.text).addText("values", listOf(explained.values));
    } catch (const companion::DatabaseError& error) {
        answer.add("error", error.what());
        if (error.position()) {
            answer.add("position", *error.position());
        }
    }
}

} // namespace kintar::explain
