// Statements in PostgreSQL's language.
#pragma once

#include "companion/dialect/EngineWriter.h"

namespace kintar::companion::dialect {

/// The writer for PostgreSQL.
class PostgresWriter final : public EngineWriter {
public:
    [[nodiscard]] std::string_view engine() const override { return "postgresql"; }
    [[nodiscard]] Translation write(const Statement& statement,
                                    const std::vector<LiteralValue>& values) const override;
    [[nodiscard]] char variantOf(const TextSearch& search,
                                 const LiteralValue& value) const override;
    [[nodiscard]] ParameterValue valueOf(const Parameter& parameter,
                                         const LiteralValue& literal) const override;
};

} // namespace kintar::companion::dialect
