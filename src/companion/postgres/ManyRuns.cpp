#include "companion/postgres/ManyRuns.h"

#include <algorithm>
#include <charconv>

namespace kintar::companion::postgres {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The text with the parameters that are arrays replaced by the value of the run, `p1` and so on.
std::string withValuesOfTheRun(std::string_view text, const std::vector<bool>& areArrays) {
    std::string written;
    char quote = '\0';
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char c = text[at];
        if (quote == '\0' ? c == '"' || c == '\'' : c == quote) {
            // A doubled quote ends and begins again, which comes to the same.
            quote = quote == '\0' ? c : '\0';
        }
        std::size_t number = 0;
        const char* const digits = text.data() + at + 1;
        if (quote == '\0' && c == '$' && at + 1 < text.size() && isDigit(*digits)) {
            std::from_chars(digits, text.data() + text.size(), number);
        }
        written += number > 0 && areArrays.at(number - 1) ? "v.p" : std::string(1, c);
    }
    return written;
}

/// "$2, $5" or "p2, p5" of those that are arrays.
std::string listOfArrays(char mark, const std::vector<bool>& areArrays) {
    std::string list;
    for (std::size_t at = 0; at < areArrays.size(); ++at) {
        if (areArrays[at]) {
            list += (list.empty() ? "" : ", ") + std::string(1, mark) + std::to_string(at + 1);
        }
    }
    return list;
}

} // namespace

bool areEqual(const ValuesOfRuns& values) {
    return std::ranges::all_of(values, [&](const auto& value) { return value == values.front(); });
}

std::string arrayText(const ValuesOfRuns& values) {
    std::string text = "{";
    for (const auto& value : values) {
        text += text.size() > 1 ? "," : "";
        if (!value) {
            text += "NULL";
            continue;
        }
        text += '"';
        for (const char c : *value) {
            if (c == '"' || c == '\\') {
                text += '\\';
            }
            text += c;
        }
        text += '"';
    }
    return text + '}';
}

Oid arrayTypeOf(Oid type) {
    constexpr Oid pairs[][2]{{20, 1016}, {25, 1009}, {701, 1022}, {1700, 1231}, {1114, 1115}};
    const auto* const found =
        std::ranges::find_if(pairs, [type](const auto& pair) { return pair[0] == type; });
    return found == std::end(pairs) ? 0 : (*found)[1];
}

std::string textOfManyRuns(std::string_view text, const std::vector<bool>& areArrays,
                           std::size_t columns) {
    std::string names;
    for (std::size_t column = 1; column <= columns; ++column) {
        names += (column == 1 ? "c" : ", c") + std::to_string(column);
    }
    // The OFFSET keeps the engine from mixing the SELECT with what surrounds it: each run goes as
    // the SELECT alone would, by the indexes that were made for it, and in its order.
    return "SELECT v.run, r.* FROM unnest(" + listOfArrays('$', areArrays) +
           ") WITH ORDINALITY AS v (" + listOfArrays('p', areArrays) +
           ", run) CROSS JOIN LATERAL (" + withValuesOfTheRun(text, areArrays) +
           " OFFSET 0) AS r (" + names + ")";
}

} // namespace kintar::companion::postgres
