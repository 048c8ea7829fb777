// Statements with their literals lifted out.
#pragma once

#include "companion/dialect/Lexer.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::companion::dialect {

/// A statement with its literals lifted out.
struct LiftedStatement {
    /// The text with a mark for each literal: statements that differ only in their values have one.
    std::string shape;
    /// In the order of the text; views into the statement.
    std::vector<LiteralValue> values;
};

/// Lifts the literals of a statement in one pass, reusing the memory of `lifted`. Throws as the
/// lexer does.
void liftLiterals(std::string_view statement, LiftedStatement& lifted);

/// Where the literals of a shape stand. Most statements differ from an earlier one in their values
/// only, and then comparing what stands between them takes the place of reading every token.
class ShapeOutline {
public:
    /// No outline: takes no text.
    ShapeOutline() = default;
    /// The outline of a statement that the lexer takes. It takes no text where a literal follows
    /// something that another literal in its place might belong to, such as a name.
    explicit ShapeOutline(std::string_view statement);

    /// Where `statement` has the shape `shape`, of which this is the outline, gives its literals as
    /// `liftLiterals` does and is true. False where it has another, or where that cannot be told:
    /// `values` means nothing then. Throws what `liftLiterals` would throw.
    bool lift(std::string_view shape, std::string_view statement,
              std::vector<LiteralValue>& values) const;

private:
    struct Place {
        std::size_t mark = 0; ///< of the literal, in the shape
        Lexer::Signs signs;
    };

    std::vector<Place> places_;
    bool usable_ = false;
};

} // namespace kintar::companion::dialect
