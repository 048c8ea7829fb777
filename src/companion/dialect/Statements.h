// The statements of the dialect and what they are made of.
#pragma once

#include "companion/dialect/Expressions.h"

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kintar::companion {
struct TableDefinition;
}

namespace kintar::companion::dialect {

/// A name as the dialect writes it: in brackets.
std::string bracketed(const std::string& name);

/// A table of a FROM clause, or of a statement that writes.
struct TableSource {
    void print(std::string& out) const;
    /// The name that columns of it are written with.
    [[nodiscard]] const std::string& shownName() const { return alias.empty() ? table : alias; }

    std::size_t position = 0;
    std::string table;
    std::string alias;
    const TableDefinition* definition = nullptr; ///< set when names are resolved
};

struct Join;

/// A table or a join.
struct FromItem {
    void print(std::string& out) const;
    std::variant<std::unique_ptr<TableSource>, std::unique_ptr<Join>> item;
};

enum class JoinKind : std::uint8_t { Inner, Left, Right };

struct Join {
    void print(std::string& out) const;
    JoinKind kind = JoinKind::Inner;
    FromItem left;
    FromItem right;
    ExpressionPtr condition;
};

/// What is selected: an expression, `*`, or `T.*`.
struct SelectItem {
    void print(std::string& out) const;
    std::size_t position = 0;
    ExpressionPtr expression;  ///< null for a star
    std::string starQualifier; ///< of `T.*`
    std::string alias;
};

struct OrderTerm {
    void print(std::string& out) const;
    ExpressionPtr expression;
    bool descending = false;
};

enum class Quantifier : std::uint8_t { All, Distinct, DistinctRow };

struct Select {
    void print(std::string& out) const;

    std::size_t position = 0;
    Quantifier quantifier = Quantifier::All;
    std::vector<SelectItem> items; ///< without stars once names are resolved
    std::vector<FromItem> from;
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
    std::vector<OrderTerm> orderBy;

    // Set when names are resolved:
    std::vector<Column> columns;
    bool hasAggregates = false; ///< an aggregate or a GROUP BY
};

struct Insert {
    void print(std::string& out) const;
    std::unique_ptr<TableSource> table;
    std::vector<std::unique_ptr<ColumnName>> columns;
    std::vector<ExpressionPtr> values;
};

struct Assignment {
    std::unique_ptr<ColumnName> column;
    ExpressionPtr value;
};

struct Update {
    void print(std::string& out) const;
    std::unique_ptr<TableSource> table;
    std::vector<Assignment> assignments;
    ExpressionPtr where;
};

struct Delete {
    void print(std::string& out) const;
    std::unique_ptr<TableSource> table;
    ExpressionPtr where;
};

/// A whole statement.
struct Statement {
    [[nodiscard]] std::string print() const;
    [[nodiscard]] bool isSelect() const {
        return std::holds_alternative<std::unique_ptr<Select>>(body);
    }
    std::variant<std::unique_ptr<Select>, Insert, Update, Delete> body;
};

/// Calls `function` with each table of a FROM clause, from left to right.
template <class Function>
void forEachTable(const FromItem& from, const Function& function) {
    if (const auto* table = std::get_if<std::unique_ptr<TableSource>>(&from.item)) {
        function(**table);
        return;
    }
    const Join& join = *std::get<std::unique_ptr<Join>>(from.item);
    forEachTable(join.left, function);
    forEachTable(join.right, function);
}

} // namespace kintar::companion::dialect
