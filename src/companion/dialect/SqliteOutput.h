// A statement for SQLite while it is being written.
#pragma once

#include "companion/dialect/Keyword.h"
#include "companion/dialect/StatementOutput.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

class SqliteOutput final : public StatementOutput {
public:
    explicit SqliteOutput(const std::vector<LiteralValue>& values) : StatementOutput(values, '?') {}

    /// Where the table's name is taken already, it gets a number.
    void introduce(const TableSource& table) override;
    [[nodiscard]] std::string schemaName(std::string_view name) const override {
        return quotedName(name);
    }
};

} // namespace kintar::companion::dialect
