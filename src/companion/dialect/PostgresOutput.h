// A statement for PostgreSQL while it is being written.
#pragma once

#include "companion/dialect/EngineWriter.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// A name as PostgreSQL takes it whatever it holds.
std::string postgresName(std::string_view name);
/// The name that the engine knows a table or column of a site by: tables are made with unquoted
/// names, so that any program may write them in any case, and the engine makes those small.
std::string postgresSchemaName(std::string_view name);

/// The text, its parameters, and the names that tables have in it.
class PostgresOutput {
public:
    explicit PostgresOutput(const std::vector<LiteralValue>& values);

    PostgresOutput& operator<<(std::string_view text) {
        translation_.text += text;
        return *this;
    }
    /// A parameter: the literal itself, or what is made from it.
    PostgresOutput& operator<<(const Parameter& parameter);

    [[nodiscard]] std::size_t size() const { return translation_.text.size(); }
    /// Takes away and gives back what was written from `from` on.
    std::string cut(std::size_t from);

    /// The clause that introduces a table: its name, and an alias where that is another.
    void introduce(const TableSource& table);
    /// The name that columns of an introduced table are written with, quoted.
    [[nodiscard]] const std::string& nameOf(const TableSource& table) const;

    [[nodiscard]] const LiteralValue& value(std::size_t literal) const { return values_[literal]; }
    void addSearch(const TextSearch& search) { translation_.searches.push_back(search); }
    Translation take(std::vector<Column> columns);

private:
    [[nodiscard]] bool isTaken(const std::string& quoted) const;

    const std::vector<LiteralValue>& values_;
    Translation translation_;
    std::map<const TableSource*, std::string> names_;
};

} // namespace kintar::companion::dialect
