// What the names of a statement stand for, and of which type its expressions are.
#pragma once

#include "companion/Catalog.h"
#include "companion/DatabaseError.h"
#include "companion/dialect/Statements.h"

#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// Binds every name of a statement to a table and column, writes out stars, gives every expression
/// its type, and names the columns of the result. Throws DatabaseError with the position: a name
/// that is unknown or could be several (UnknownName), values that cannot meet (TypeMismatch), an
/// aggregate or a column where none can stand (Syntax).
///
/// A column of the result without a name of its own has its column's name, `Table.Column` where two
/// would have the same, or `Expr1000` and so on.
class Resolver {
public:
    /// Both must outlive the resolver; the catalog also the statement.
    Resolver(const Catalog& catalog, std::string_view statement)
        : catalog_(catalog), statement_(statement) {}

    void resolve(Statement& statement);
    /// A condition over the columns of one table.
    void resolveCondition(Expression& condition, const TableSource& table);

private:
    struct Scope {
        const Scope* outer = nullptr;
        std::vector<const TableSource*> tables;
        const Select* aliases = nullptr; ///< whose names of selected expressions count too
    };
    enum class Aggregates : std::uint8_t { Forbidden, Allowed, Inside };

    void resolveSelect(Select& select, const Scope* outer);
    void resolveInsert(Insert& insert);
    void resolveUpdate(Update& update);
    void resolveDelete(Delete& deletion);
    void bindTable(TableSource& table);
    std::vector<const TableSource*> resolveFrom(FromItem& from, const Scope* outer);
    void checkDistinctNames(const std::vector<const TableSource*>& tables) const;
    void expandStars(Select& select, const Scope& scope);
    std::vector<SelectItem> columnsOf(const SelectItem& star, const Scope& scope);
    void resolveOrder(Select& select, const Scope& scope);
    void checkGroups(Select& select) const;
    void checkGrouped(const Select& select, const Expression& expression) const;
    void nameColumns(Select& select) const;
    const ColumnDefinition& bindColumnToWrite(ColumnName& column, const TableSource& table) const;
    void checkAssignable(const ColumnDefinition& column, const Expression& value) const;

    void resolveExpression(Expression& expression, const Scope& scope, Aggregates aggregates);
    void resolveTest(Expression& condition, const Scope& scope, Aggregates aggregates);
    void bindColumn(ColumnName& column, const Scope& scope) const;
    bool bindAlias(ColumnName& column, const Scope& scope) const;

    ColumnType typeOf(const Literal& literal) const;
    ColumnType typeOf(const Constant& constant) const;
    ColumnType typeOf(const ColumnName& column) const;
    ColumnType typeOf(const Negation& negation) const;
    ColumnType typeOf(const Arithmetic& arithmetic) const;
    ColumnType typeOf(const Concatenation& concatenation) const;
    ColumnType typeOf(const Comparison& comparison) const;
    ColumnType typeOf(const LikeTest& test) const;
    ColumnType typeOf(const BetweenTest& test) const;
    ColumnType typeOf(const InListTest& test) const;
    ColumnType typeOf(const InSelectTest& test) const;
    ColumnType typeOf(const ExistsTest& test) const;
    ColumnType typeOf(const NullTest& test) const;
    ColumnType typeOf(const LogicalNot& inversion) const;
    ColumnType typeOf(const LogicalChain& chain) const;
    ColumnType typeOf(const Aggregate& aggregate) const;
    void needComparable(std::size_t position, ColumnType a, ColumnType b) const;
    void needNumber(const Expression& expression) const;
    void needCondition(const Expression& expression) const;

    [[noreturn]] void fail(ErrorKind kind, std::size_t position, const std::string& text) const;

    const Catalog& catalog_;
    std::string_view statement_;
};

} // namespace kintar::companion::dialect
