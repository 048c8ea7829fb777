// Text with places for values.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kintar::reports {

/// How a value is written.
enum class ValueFormat : std::uint8_t {
    Natural, ///< as its type is: date-times as general date
    Date,
    Time,
    Age, ///< how long before the report was made: "2 h 05 min"
};

enum class PieceKind : std::uint8_t {
    Text,     ///< `text` as it stands
    Value,    ///< the field, formula or lookup named `text`
    Sum,      ///< of the field `text`, over the rows that the section stands for
    Distinct, ///< how many different values the field `text` has there
    Count,    ///< how many rows there are
    Row,      ///< the number of the row, from 1
    Page,
    Pages,
    Made, ///< when the report was made
    Title,
    Continued, ///< " (continued)" in a group header that is repeated
};

struct Piece {
    PieceKind kind = PieceKind::Text;
    std::string text;
    ValueFormat format = ValueFormat::Natural;
    bool operator==(const Piece&) const = default;
};

using Template = std::vector<Piece>;

/// Reads `Made {@made:time}, {Name} ({@count})`; `{{` is a brace. Throws ReportError that names
/// what cannot be read.
Template readTemplate(std::string_view text);

} // namespace kintar::reports
