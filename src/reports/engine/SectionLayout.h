// Where everything of a section stands.
#pragma once

#include "reports/engine/ReportText.h"
#include "reports/engine/TextMeasure.h"

#include <cstdint>
#include <string>
#include <vector>

namespace kintar::reports {

enum class ItemKind : std::uint8_t { Text, Rule, Box, Fill };

/// One thing to be painted, in points. Text stands on one line.
struct Item {
    ItemKind kind = ItemKind::Text;
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    std::string text;
    std::size_t style = 0;
    Align align = Align::Start;
    std::uint32_t colour = 0; ///< of a fill

    [[nodiscard]] double bottom() const { return y + height; }
};

struct LaidOut {
    double height = 0;
    std::vector<Item> items;
};

/// Lays out the sections of one report at one width.
class SectionLayout {
public:
    SectionLayout(const Report& report, TextMeasure& measure, double width)
        : text_(report), measure_(measure), width_(width) {}

    /// The section's own elements, from its top left corner; its sub-report is not part of them.
    [[nodiscard]] LaidOut layOut(const Section& section, const TextPlace& place) const;

private:
    void addLine(const Line& line, const TextPlace& place, LaidOut& out) const;
    [[nodiscard]] double addCell(const Cell& cell, const TextPlace& place, double lower,
                                 LaidOut& out) const;

    ReportText text_;
    TextMeasure& measure_;
    double width_;
};

/// The height of the part of a section that begins at `from`, is not higher than `room` and parts
/// no line of text; 0 where not even one line has room.
double partHeight(const LaidOut& section, double from, double room);

} // namespace kintar::reports
