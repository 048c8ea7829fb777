// Expressions evaluated over one row in memory.
#pragma once

#include "companion/dialect/Expressions.h"
#include "companion/dialect/LiteralValue.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace kintar::companion::dialect {

/// Evaluates resolved expressions without sub-selects and aggregates over a row, with the meaning
/// that engines' writers give them.
class Evaluator {
public:
    /// Null, a whole number, a number, a text; date-times are texts as the database holds them.
    using Value = std::variant<std::monostate, std::int64_t, double, std::string>;
    /// Nothing where the answer is Null.
    using Truth = std::optional<bool>;

    Evaluator(const Recordset& rows, std::size_t row, const std::vector<LiteralValue>& literals)
        : rows_(rows), row_(row), literals_(literals) {}

    [[nodiscard]] Value value(const Expression& expression) const;
    [[nodiscard]] Truth condition(const Expression& expression) const;

private:
    [[nodiscard]] Value evaluate(const Literal& literal) const;
    [[nodiscard]] Value evaluate(const Constant& constant) const;
    [[nodiscard]] Value evaluate(const ColumnName& column) const;
    [[nodiscard]] Value evaluate(const Negation& negation) const;
    [[nodiscard]] Value evaluate(const Arithmetic& arithmetic) const;
    [[nodiscard]] Value evaluate(const Concatenation& concatenation) const;
    [[nodiscard]] Truth test(const Comparison& comparison) const;
    [[nodiscard]] Truth test(const LikeTest& like) const;
    [[nodiscard]] Truth test(const BetweenTest& between) const;
    [[nodiscard]] Truth test(const InListTest& in) const;
    [[nodiscard]] Truth test(const NullTest& null) const;
    [[nodiscard]] Truth test(const LogicalNot& inversion) const;
    [[nodiscard]] Truth test(const LogicalChain& chain) const;

    /// How two values compare; nothing where one is Null, or a text that is no number beside a
    /// number. `a` is the value of `left`.
    [[nodiscard]] std::optional<int> compared(const Value& a, const Expression& left,
                                              const Expression& right) const;
    [[nodiscard]] std::optional<std::string> decimal(const Expression& expression,
                                                     const Value& value) const;

    const Recordset& rows_;
    std::size_t row_;
    const std::vector<LiteralValue>& literals_;
};

} // namespace kintar::companion::dialect
