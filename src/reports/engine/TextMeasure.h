// How much room text takes, for whoever lays it out.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::reports {

/// Text in the styles of one report; lengths in points. Used by one thread at a time.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    [[nodiscard]] virtual double lineHeight(std::size_t style) = 0;
    /// The lines of a text that are not wider than `width`; a word that is wider is parted. One
    /// line, empty, for no text.
    virtual std::vector<std::string> wrapped(std::string_view text, std::size_t style,
                                             double width) = 0;
    /// The text itself where it fits, else its beginning with an ellipsis.
    virtual std::string elided(std::string_view text, std::size_t style, double width) = 0;
};

} // namespace kintar::reports
