// The rows of a report or sub-report, and the groups that they fall into.
#pragma once

#include "reports/engine/ReportDefinition.h"
#include "server/Recordset.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kintar::reports {

/// Some rows that follow each other.
struct RowSpan {
    std::size_t begin = 0;
    std::size_t end = 0;
    [[nodiscard]] std::size_t count() const { return end - begin; }
};

class ReportRows {
public:
    /// `body` outlives the rows.
    ReportRows(const ReportBody& body, Recordset rows);

    [[nodiscard]] const ReportBody& body() const { return body_; }
    [[nodiscard]] const Recordset& recordset() const { return rows_; }
    [[nodiscard]] std::size_t count() const { return rows_.RecordCount(); }

    /// The rows of group `level` (0 the outermost) that `row` belongs to.
    [[nodiscard]] RowSpan spanOf(std::size_t level, std::size_t row) const;
    /// The outermost group that begins at `row`; the number of groups where none does.
    [[nodiscard]] std::size_t firstLevelBeginningAt(std::size_t row) const;
    [[nodiscard]] RowSpan allRows() const { return {0, count()}; }

    /// The column of a field, or of the field that a lookup is of.
    [[nodiscard]] std::size_t columnOf(const std::string& name) const;
    /// The sum of a field as plain decimal text; what is no number counts as 0.
    [[nodiscard]] std::string sum(const std::string& field, RowSpan span) const;
    /// How many different values a field has, letter case ignored; Null is none.
    [[nodiscard]] std::size_t distinct(const std::string& field, RowSpan span) const;

private:
    [[nodiscard]] std::string groupKey(const Group& group, std::size_t column,
                                       std::size_t row) const;
    void findGroups();

    const ReportBody& body_;
    Recordset rows_;
    /// By level: the rows at which its groups begin.
    std::vector<std::vector<std::size_t>> begins_;
};

} // namespace kintar::reports
