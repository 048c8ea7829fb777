#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <array>

namespace kintar::companion::dialect {

namespace {

constexpr std::array<std::string_view, 42> reservedWords{
    "ALL",      "AND",         "AS",     "ASC",    "BETWEEN", "BY",     "CREATE", "DELETE", "DESC",
    "DISTINCT", "DISTINCTROW", "DROP",   "EXISTS", "FALSE",   "FROM",   "GROUP",  "HAVING", "IN",
    "INNER",    "INSERT",      "INTO",   "IS",     "JOIN",    "LEFT",   "LIKE",   "NOT",    "NULL",
    "ON",       "OR",          "ORDER",  "OUTER",  "RIGHT",   "SELECT", "SET",    "TOP",    "TRUE",
    "UNION",    "UNIQUE",      "UPDATE", "VALUES", "WHERE",   "WITH"};

constexpr char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

} // namespace

bool sameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return upper(x) == upper(y); });
}

bool NameOrder::operator()(std::string_view a, std::string_view b) const {
    return std::ranges::lexicographical_compare(a, b, {}, upper, upper);
}

std::string quotedName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) {
        quoted += c;
        if (c == '"') {
            quoted += c;
        }
    }
    return quoted + '"';
}

bool isReserved(std::string_view word) {
    return std::ranges::any_of(reservedWords,
                               [&](std::string_view known) { return sameName(known, word); });
}

bool isConstant(std::string_view word) {
    return sameName(word, "TRUE") || sameName(word, "FALSE") || sameName(word, "NULL");
}

} // namespace kintar::companion::dialect
