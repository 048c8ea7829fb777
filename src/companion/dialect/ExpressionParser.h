// Expressions from tokens: one method for each rule of the grammar.
#pragma once

#include "companion/dialect/Statements.h"
#include "companion/dialect/TokenReader.h"

#include <memory>

namespace kintar::companion::dialect {

/// What expressions need of statements: the sub-selects inside them.
class SelectParser {
public:
    virtual ~SelectParser() = default;
    /// A select; its first word is the next token.
    virtual std::unique_ptr<Select> select() = 0;
};

/// The rules of expressions, the loosest first.
///
///     expression     = conjunction {OR conjunction}
///     conjunction    = inversion {AND inversion}
///     inversion      = NOT inversion | predicate
///     predicate      = concatenation [comparison | [NOT] LIKE concatenation
///                      | [NOT] BETWEEN concatenation AND concatenation
///                      | [NOT] IN ( select | expression {, expression} ) | IS [NOT] NULL]
///     concatenation  = sum {& sum}
///     sum            = product {(+ | -) product}
///     product        = signed {(* | /) signed}
///     signed         = (- | +) signed | primary
///     primary        = literal | TRUE | FALSE | NULL | column | aggregate | EXISTS ( select )
///                      | ( expression )
class ExpressionParser {
public:
    ExpressionParser(TokenReader& reader, SelectParser& selects)
        : reader_(reader), selects_(selects) {}

    ExpressionPtr expression();
    /// A column: `name` or `name.name`.
    std::unique_ptr<ColumnName> column();

private:
    ExpressionPtr chain(bool isAnd);
    ExpressionPtr inversion();
    ExpressionPtr predicate();
    ExpressionPtr comparison(ExpressionPtr left);
    ExpressionPtr like(std::size_t at, ExpressionPtr operand, bool negated);
    ExpressionPtr between(std::size_t at, ExpressionPtr operand, bool negated);
    ExpressionPtr in(std::size_t at, ExpressionPtr operand, bool negated);
    ExpressionPtr concatenation();
    ExpressionPtr sum();
    ExpressionPtr product();
    ExpressionPtr signedValue();
    ExpressionPtr primary();
    ExpressionPtr literal();
    ExpressionPtr constant();
    ExpressionPtr exists();
    ExpressionPtr parenthesized();
    ExpressionPtr aggregate();
    std::unique_ptr<Select> subSelect();
    void checkChain(std::size_t count) const;

    TokenReader& reader_;
    SelectParser& selects_;
};

} // namespace kintar::companion::dialect
