// Statements from text: one method for each rule of the grammar.
#pragma once

#include "companion/dialect/ExpressionParser.h"
#include "companion/dialect/Statements.h"
#include "companion/dialect/TokenReader.h"

#include <string_view>

namespace kintar::companion::dialect {

/// Parses a whole statement: SELECT, INSERT, UPDATE or DELETE, with at most one closing semicolon.
/// Throws DatabaseError (Syntax) with the position of what does not fit.
Statement parseStatement(std::string_view statement);

/// Parses a condition alone, as it stands behind WHERE.
ExpressionPtr parseCondition(std::string_view condition);

/// The rules of statements.
///
///     statement  = select | insert | update | delete
///     select     = SELECT [DISTINCT | DISTINCTROW] item {, item} FROM join {, join}
///                  [WHERE expression] [GROUP BY expression {, expression}] [HAVING expression]
///                  [ORDER BY expression [ASC | DESC] {, …}]
///     item       = * | name . * | expression [AS name]
///     join       = table {[INNER | LEFT [OUTER] | RIGHT [OUTER]] JOIN table ON expression}
///     table      = name [[AS] name] | ( join )
///     insert     = INSERT INTO name ( name {, name} ) VALUES ( expression {, expression} )
///     update     = UPDATE name SET name = expression {, …} [WHERE expression]
///     delete     = DELETE [*] FROM name [WHERE expression]
class Parser final : private SelectParser {
public:
    explicit Parser(std::string_view statement)
        : reader_(statement), expressions_(reader_, *this) {}

    Statement statement();
    ExpressionPtr condition();

private:
    std::unique_ptr<Select> select() override;
    SelectItem selectItem();
    FromItem join();
    FromItem table();
    std::unique_ptr<TableSource> tableName();
    std::optional<JoinKind> joinWord();
    void groupBy(Select& select);
    void orderBy(Select& select);
    Insert insert();
    Update update();
    Delete deletion();
    std::unique_ptr<ColumnName> columnToWrite();
    ExpressionPtr optionalWhere();
    void end();

    TokenReader reader_;
    ExpressionParser expressions_;
};

} // namespace kintar::companion::dialect
