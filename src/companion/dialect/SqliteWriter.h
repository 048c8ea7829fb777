// Statements in SQLite's language.
#pragma once

#include "companion/dialect/EngineWriter.h"
#include "companion/dialect/SearchLeads.h"

namespace kintar::companion::dialect {

/// The writer for the embedded engine.
class SqliteWriter final : public EngineWriter {
public:
    [[nodiscard]] std::string_view engine() const override { return "sqlite"; }
    [[nodiscard]] Translation write(const Statement& statement,
                                    const std::vector<LiteralValue>& values) const override;
    /// The same by a plan of our own.
    [[nodiscard]] Translation write(const Statement& statement,
                                    const std::vector<LiteralValue>& values,
                                    const SearchPlan& plan) const;
    /// A row of nothing in particular for each that an index gives for this lead.
    [[nodiscard]] Translation writeServedRows(const SearchLead& lead,
                                              const std::vector<LiteralValue>& values) const;
    /// A number of rows that the lead's table has at most, where its rows are numbered from 1.
    [[nodiscard]] Translation writeLargestRow(const SearchLead& lead) const;
    /// How many of the first `sample` of those rows meet all conditions of the lead.
    [[nodiscard]] Translation writeSample(const SearchLead& lead,
                                          const std::vector<LiteralValue>& values,
                                          std::size_t sample) const;
    [[nodiscard]] char variantOf(const TextSearch& search,
                                 const LiteralValue& value) const override;
    [[nodiscard]] ParameterValue valueOf(const Parameter& parameter,
                                         const LiteralValue& literal) const override;
};

} // namespace kintar::companion::dialect
