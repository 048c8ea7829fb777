// A statement for PostgreSQL while it is being written.
#pragma once

#include "companion/dialect/StatementOutput.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// The name that the engine knows a table or column of a site by: tables are made with unquoted
/// names, so that any program may write them in any case, and the engine makes those small.
std::string postgresSchemaName(std::string_view name);

class PostgresOutput final : public StatementOutput {
public:
    explicit PostgresOutput(const std::vector<LiteralValue>& values)
        : StatementOutput(values, '$') {}

    /// Where the table's name is taken already, it gets a number; a long alias is another one.
    void introduce(const TableSource& table) override;
    [[nodiscard]] std::string schemaName(std::string_view name) const override {
        return postgresSchemaName(name);
    }
};

} // namespace kintar::companion::dialect
