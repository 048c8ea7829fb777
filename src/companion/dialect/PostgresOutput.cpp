#include "companion/dialect/PostgresOutput.h"

#include "companion/SiteSchema.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

namespace {

/// The engine cuts longer names, and two cut names could be one.
constexpr std::size_t longestName = 60;

} // namespace

std::string postgresName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) {
        quoted += c;
        if (c == '"') {
            quoted += c;
        }
    }
    return quoted + '"';
}

std::string postgresSchemaName(std::string_view name) {
    std::string small(name);
    std::ranges::transform(small, small.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return postgresName(small);
}

PostgresOutput::PostgresOutput(const std::vector<LiteralValue>& values) : values_(values) {
    for (std::size_t literal = 0; literal < values.size(); ++literal) {
        translation_.parameters.push_back({literal, Parameter::Use::Value, 0, false});
    }
}

PostgresOutput& PostgresOutput::operator<<(const Parameter& parameter) {
    std::size_t number = parameter.literal;
    if (parameter.use != Parameter::Use::Value) {
        number = translation_.parameters.size();
        translation_.parameters.push_back(parameter);
    }
    return *this << "$" << std::to_string(number + 1);
}

std::string PostgresOutput::cut(std::size_t from) {
    std::string taken = translation_.text.substr(from);
    translation_.text.resize(from);
    return taken;
}

bool PostgresOutput::isTaken(const std::string& quoted) const {
    return std::ranges::any_of(names_, [&](const auto& known) { return known.second == quoted; });
}

void PostgresOutput::introduce(const TableSource& table) {
    const std::string own = postgresSchemaName(table.definition->name);
    const std::string& shown = table.alias.empty() ? table.definition->name : table.alias;
    std::string name = shown.size() > longestName ? "\"t\"" : postgresSchemaName(shown);
    const std::string stem = name.substr(0, name.size() - 1);
    for (int count = 2; isTaken(name); ++count) {
        name = stem + "_" + std::to_string(count) + "\"";
    }
    *this << own;
    if (name != own) {
        *this << " AS " << name;
    }
    names_.emplace(&table, std::move(name));
}

const std::string& PostgresOutput::nameOf(const TableSource& table) const {
    return names_.at(&table);
}

Translation PostgresOutput::take(std::vector<Column> columns) {
    translation_.columns = std::move(columns);
    return std::move(translation_);
}

} // namespace kintar::companion::dialect
