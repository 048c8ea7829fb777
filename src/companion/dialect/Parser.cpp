#include "companion/dialect/Parser.h"

#include <utility>

namespace kintar::companion::dialect {

Statement parseStatement(std::string_view statement) {
    return Parser(statement).statement();
}

ExpressionPtr parseCondition(std::string_view condition) {
    return Parser(condition).condition();
}

Statement Parser::statement() {
    Statement parsed;
    if (reader_.atKeyword("SELECT")) {
        parsed.body = select();
    } else if (reader_.takeKeyword("INSERT")) {
        parsed.body = insert();
    } else if (reader_.takeKeyword("UPDATE")) {
        parsed.body = update();
    } else if (reader_.takeKeyword("DELETE")) {
        parsed.body = deletion();
    } else {
        reader_.failExpected("SELECT, INSERT, UPDATE or DELETE");
    }
    reader_.takeIf(TokenKind::Semicolon);
    end();
    return parsed;
}

ExpressionPtr Parser::condition() {
    ExpressionPtr parsed = expressions_.expression();
    end();
    return parsed;
}

void Parser::end() {
    if (!reader_.at(TokenKind::End)) {
        reader_.failExpected("the end of the statement");
    }
}

std::unique_ptr<Select> Parser::select() {
    auto select = std::make_unique<Select>();
    select->position = reader_.peek().begin;
    reader_.expectKeyword("SELECT");
    if (reader_.takeKeyword("DISTINCTROW")) {
        select->quantifier = Quantifier::DistinctRow;
    } else if (reader_.takeKeyword("DISTINCT")) {
        select->quantifier = Quantifier::Distinct;
    }
    do {
        select->items.push_back(selectItem());
    } while (reader_.takeIf(TokenKind::Comma));
    reader_.expectKeyword("FROM");
    do {
        select->from.push_back(join());
    } while (reader_.takeIf(TokenKind::Comma));
    select->where = optionalWhere();
    groupBy(*select);
    orderBy(*select);
    return select;
}

SelectItem Parser::selectItem() {
    SelectItem item;
    item.position = reader_.peek().begin;
    if (reader_.takeIf(TokenKind::Star)) {
        return item;
    }
    if (reader_.atName() && reader_.peek(1).kind == TokenKind::Dot &&
        reader_.peek(2).kind == TokenKind::Star) {
        item.starQualifier = reader_.expectName("a table");
        reader_.take();
        reader_.take();
        return item;
    }
    item.expression = expressions_.expression();
    if (reader_.takeKeyword("AS")) {
        item.alias = reader_.expectName("a name");
    }
    return item;
}

std::optional<JoinKind> Parser::joinWord() {
    std::optional<JoinKind> kind;
    if (reader_.takeKeyword("INNER")) {
        kind = JoinKind::Inner;
    } else if (reader_.takeKeyword("LEFT")) {
        kind = JoinKind::Left;
    } else if (reader_.takeKeyword("RIGHT")) {
        kind = JoinKind::Right;
    }
    if (kind && *kind != JoinKind::Inner) {
        reader_.takeKeyword("OUTER");
    }
    if (kind) {
        reader_.expectKeyword("JOIN");
    } else if (reader_.takeKeyword("JOIN")) {
        kind = JoinKind::Inner;
    }
    return kind;
}

FromItem Parser::join() {
    FromItem left = table();
    std::size_t count = 1;
    while (const auto kind = joinWord()) {
        if (++count > maximumNesting) {
            reader_.fail(reader_.peek().begin, "too many joins");
        }
        auto made = std::make_unique<Join>();
        made->kind = *kind;
        made->left = std::move(left);
        made->right = table();
        reader_.expectKeyword("ON");
        made->condition = expressions_.expression();
        left = FromItem{std::move(made)};
    }
    return left;
}

FromItem Parser::table() {
    if (reader_.takeIf(TokenKind::OpenParenthesis)) {
        const TokenReader::Level level(reader_);
        FromItem inside = join();
        reader_.expect(TokenKind::CloseParenthesis, "a join or )");
        return inside;
    }
    std::unique_ptr<TableSource> source = tableName();
    if (reader_.takeKeyword("AS") || reader_.atName()) {
        source->alias = reader_.expectName("a name");
    }
    return {std::move(source)};
}

std::unique_ptr<TableSource> Parser::tableName() {
    auto source = std::make_unique<TableSource>();
    source->position = reader_.peek().begin;
    source->table = reader_.expectName("a table");
    return source;
}

void Parser::groupBy(Select& select) {
    if (reader_.takeKeyword("GROUP")) {
        reader_.expectKeyword("BY");
        do {
            select.groupBy.push_back(expressions_.expression());
        } while (reader_.takeIf(TokenKind::Comma));
    }
    if (reader_.takeKeyword("HAVING")) {
        select.having = expressions_.expression();
    }
}

void Parser::orderBy(Select& select) {
    if (!reader_.takeKeyword("ORDER")) {
        return;
    }
    reader_.expectKeyword("BY");
    do {
        OrderTerm term;
        term.expression = expressions_.expression();
        term.descending = reader_.takeKeyword("DESC");
        if (!term.descending) {
            reader_.takeKeyword("ASC");
        }
        select.orderBy.push_back(std::move(term));
    } while (reader_.takeIf(TokenKind::Comma));
}

ExpressionPtr Parser::optionalWhere() {
    return reader_.takeKeyword("WHERE") ? expressions_.expression() : nullptr;
}

std::unique_ptr<ColumnName> Parser::columnToWrite() {
    return expressions_.column();
}

Insert Parser::insert() {
    Insert insert;
    reader_.expectKeyword("INTO");
    insert.table = tableName();
    reader_.expect(TokenKind::OpenParenthesis, "( and the columns");
    do {
        insert.columns.push_back(columnToWrite());
    } while (reader_.takeIf(TokenKind::Comma));
    reader_.expect(TokenKind::CloseParenthesis, "a comma or )");
    reader_.expectKeyword("VALUES");
    reader_.expect(TokenKind::OpenParenthesis, "( and the values");
    const std::size_t at = reader_.peek().begin;
    do {
        insert.values.push_back(expressions_.expression());
    } while (reader_.takeIf(TokenKind::Comma));
    reader_.expect(TokenKind::CloseParenthesis, "a comma or )");
    if (insert.values.size() != insert.columns.size()) {
        reader_.fail(at, std::to_string(insert.columns.size()) + " columns, but " +
                             std::to_string(insert.values.size()) + " values");
    }
    return insert;
}

Update Parser::update() {
    Update update;
    update.table = tableName();
    reader_.expectKeyword("SET");
    do {
        Assignment assignment;
        assignment.column = columnToWrite();
        reader_.expect(TokenKind::Equal, "=");
        assignment.value = expressions_.expression();
        update.assignments.push_back(std::move(assignment));
    } while (reader_.takeIf(TokenKind::Comma));
    update.where = optionalWhere();
    return update;
}

Delete Parser::deletion() {
    Delete deletion;
    reader_.takeIf(TokenKind::Star);
    reader_.expectKeyword("FROM");
    deletion.table = tableName();
    deletion.where = optionalWhere();
    return deletion;
}

} // namespace kintar::companion::dialect
