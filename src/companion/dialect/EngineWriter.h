// Statements in an engine's own language: what every engine's writer gives.
#pragma once

#include "companion/dialect/LiteralValue.h"
#include "companion/dialect/Statements.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace kintar::companion::dialect {

/// What a parameter holds: the value of a literal, or something made from it.
struct Parameter {
    enum class Use : std::uint8_t {
        Value,          ///< the literal itself
        FoldedText,     ///< a text without its letter case
        SortKey,        ///< a text's place in the order of names
        Decimal,        ///< a number as exact decimal text
        NumberOfText,   ///< the number that a text writes; Null where it writes none
        ApproximateLow, ///< a number a little below the literal
        ApproximateHigh,
        SearchLow, ///< the lower bound of the `part`th range of a text search
        SearchHigh,
        LikeForm,    ///< a pattern over folded text, as SQL's own LIKE takes it
        RegularForm, ///< a pattern over folded text, as a regular expression
    };
    std::size_t literal = 0;
    Use use = Use::Value;
    std::size_t part = 0;
    bool isPattern = false; ///< of a text search: LIKE rather than equality
};

/// A literal on whose value the text itself depends, not only its parameters.
struct TextSearch {
    std::size_t literal = 0;
    bool isPattern = false;
};

/// A statement as an engine takes it.
struct Translation {
    std::string text;
    /// The first parameters are the statement's literals, in order; those behind are made from
    /// them.
    std::vector<Parameter> parameters;
    std::vector<TextSearch> searches;
    std::vector<Column> columns; ///< of the result; none for a statement that writes
};

/// A parameter's value.
using ParameterValue = std::variant<std::monostate, std::int64_t, double, std::string>;

/// The value of the literal itself; a date-time as text.
ParameterValue plainValue(const LiteralValue& literal);

/// Writes statements for one engine.
class EngineWriter {
public:
    virtual ~EngineWriter() = default;
    /// "sqlite" and so on.
    [[nodiscard]] virtual std::string_view engine() const = 0;
    /// Writes a resolved and rewritten statement. `values` are its literals' values; statements of
    /// one shape differ in text only as far as `variantOf` says so.
    [[nodiscard]] virtual Translation write(const Statement& statement,
                                            const std::vector<LiteralValue>& values) const = 0;
    /// Which of the possible texts a search for this value gives: a small number.
    [[nodiscard]] virtual char variantOf(const TextSearch& search,
                                         const LiteralValue& value) const = 0;
    /// The value of a parameter.
    [[nodiscard]] virtual ParameterValue valueOf(const Parameter& parameter,
                                                 const LiteralValue& literal) const = 0;
};

} // namespace kintar::companion::dialect
