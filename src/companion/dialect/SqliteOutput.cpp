#include "companion/dialect/SqliteOutput.h"

#include "companion/Catalog.h"
#include "companion/dialect/Keyword.h"

#include <algorithm>
#include <utility>

namespace kintar::companion::dialect {

std::string sqliteName(std::string_view name) {
    std::string quoted = "\"";
    for (const char c : name) {
        quoted += c;
        if (c == '"') {
            quoted += c;
        }
    }
    return quoted + '"';
}

SqliteOutput::SqliteOutput(const std::vector<LiteralValue>& values) : values_(values) {
    for (std::size_t literal = 0; literal < values.size(); ++literal) {
        translation_.parameters.push_back({literal, Parameter::Use::Value, 0, false});
    }
}

SqliteOutput& SqliteOutput::operator<<(const Parameter& parameter) {
    std::size_t number = parameter.literal;
    if (parameter.use != Parameter::Use::Value) {
        number = translation_.parameters.size();
        translation_.parameters.push_back(parameter);
    }
    return *this << "?" << std::to_string(number + 1);
}

std::string SqliteOutput::cut(std::size_t from) {
    std::string taken = translation_.text.substr(from);
    translation_.text.resize(from);
    return taken;
}

void SqliteOutput::introduce(const TableSource& table) {
    const auto isTaken = [&](const std::string& name) {
        return std::ranges::any_of(names_,
                                   [&](const auto& known) { return sameName(known.second, name); });
    };
    std::string name = table.alias.empty() ? table.definition->name : table.alias;
    for (int count = 2; isTaken(name); ++count) {
        name = table.shownName() + "_" + std::to_string(count);
    }
    *this << sqliteName(table.definition->name);
    if (name != table.definition->name) {
        *this << " AS " << sqliteName(name);
    }
    names_.emplace(&table, std::move(name));
}

const std::string& SqliteOutput::nameOf(const TableSource& table) const {
    return names_.at(&table);
}

Translation SqliteOutput::take(std::vector<Column> columns) {
    translation_.columns = std::move(columns);
    return std::move(translation_);
}

} // namespace kintar::companion::dialect
