// What statements have in common in every engine's language.
#pragma once

#include "companion/dialect/ExpressionWriter.h"
#include "companion/dialect/StatementOutput.h"

#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// Writes one statement. An engine's own writer says how its SELECT is put together.
class StatementWriter {
public:
    StatementWriter(const StatementWriter&) = delete;
    StatementWriter& operator=(const StatementWriter&) = delete;
    virtual ~StatementWriter() = default;

    Translation write(const Statement& statement);

protected:
    /// Both must outlive the writer; they are used from `write` on.
    StatementWriter(StatementOutput& out, ExpressionWriter& expressions)
        : out_(out), expressions_(expressions) {}

    virtual void select(const Select& select) = 0;
    /// Behind a text that stands for a group of texts that differ in case only.
    [[nodiscard]] virtual std::string_view orderOfRepresentative() const = 0;
    [[nodiscard]] virtual std::string_view direction(const OrderTerm& term) const = 0;

    /// A SELECT without its ORDER BY; `groups` where its DISTINCT is written as a grouping.
    void plainSelect(const Select& select, Projection projection, bool groups);
    /// The FROM clause, taken out again: tables get their names before columns are written.
    std::string fromClause(const Select& select);
    void where(const ExpressionPtr& condition, std::string_view keyword);
    void orderBy(const Select& select);

    template <class List, class Write>
    void list(const List& items, Write write) {
        bool first = true;
        for (const auto& item : items) {
            out_ << (first ? "" : ", ");
            first = false;
            write(item);
        }
    }

private:
    void insert(const Insert& insert);
    void update(const Update& update);
    void deletion(const Delete& deletion);
    void from(const FromItem& item);
    void groupBy(const Select& select);

    StatementOutput& out_;
    ExpressionWriter& expressions_;
};

/// Whether texts that differ in case only have to become one: DISTINCT is then a grouping by what
/// tells them apart.
bool groupsTexts(const Select& select);

/// The tables of a DISTINCTROW that something is selected from, in the order of the FROM clause,
/// where that are not all of them: with something from every table selected, every row is a
/// combination of its own.
std::vector<const TableSource*> tablesThatTellRows(const Select& select);

} // namespace kintar::companion::dialect
