// Statements in SQLite's language.
#pragma once

#include "companion/dialect/EngineWriter.h"

namespace kintar::companion::dialect {

/// The writer for the embedded engine.
class SqliteWriter final : public EngineWriter {
public:
    [[nodiscard]] std::string_view engine() const override { return "sqlite"; }
    [[nodiscard]] Translation write(const Statement& statement,
                                    const std::vector<LiteralValue>& values) const override;
    [[nodiscard]] char variantOf(const TextSearch& search,
                                 const LiteralValue& value) const override;
    [[nodiscard]] ParameterValue valueOf(const Parameter& parameter,
                                         const LiteralValue& literal) const override;
};

} // namespace kintar::companion::dialect
