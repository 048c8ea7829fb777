#include "reports/engine/SectionLayout.h"

#include <algorithm>

namespace kintar::reports {
namespace {

constexpr double cellGap = 4; ///< points between the text of one cell and the next cell
constexpr double linePadding = 1.5;
constexpr double aboveBaseline = 0.79; ///< of a line's height
constexpr double boxOfLine = 0.75;     ///< a tick box's side, of its line's height
constexpr std::uint32_t paper = 0xFFFFFF;
constexpr double percent = 100;

} // namespace

LaidOut SectionLayout::layOut(const Section& section, const TextPlace& place) const {
    LaidOut out;
    if (section.suppressed) {
        return out;
    }
    for (const Element& element : section.elements) {
        if (const auto* line = std::get_if<Line>(&element)) {
            addLine(*line, place, out);
        } else if (const auto* rule = std::get_if<Rule>(&element)) {
            out.items.push_back(
                {ItemKind::Rule, 0, out.height, width_, rule->thickness, {}, 0, Align::Start, 0});
            out.height += rule->thickness;
        } else {
            out.height += std::get<Space>(element).height;
        }
    }
    return out;
}

void SectionLayout::addLine(const Line& line, const TextPlace& place, LaidOut& out) const {
    const std::size_t fill = out.items.size();
    if (line.background != paper) {
        out.items.push_back(
            {ItemKind::Fill, 0, out.height, width_, 0, {}, 0, Align::Start, line.background});
    }
    double highest = 0;
    for (const Cell& cell : line.cells) {
        highest = std::max(highest, measure_.lineHeight(cell.style));
    }
    double height = 0;
    for (const Cell& cell : line.cells) {
        // Texts of different sizes stand on one line, not under one.
        const double lower = (highest - measure_.lineHeight(cell.style)) * aboveBaseline;
        height = std::max(height, lower + addCell(cell, place, lower, out));
    }
    height += 2 * linePadding;
    if (line.background != paper) {
        out.items[fill].height = height;
    }
    out.height += height;
}

double SectionLayout::addCell(const Cell& cell, const TextPlace& place, double lower,
                              LaidOut& out) const {
    const double lineHeight = measure_.lineHeight(cell.style);
    const double left = width_ * cell.left / percent;
    double top = out.height + linePadding + lower;
    if (cell.box) {
        const double side = lineHeight * boxOfLine;
        out.items.push_back({ItemKind::Box,
                             left,
                             top + (lineHeight - side) / 2,
                             side,
                             side,
                             {},
                             cell.style,
                             cell.align,
                             0});
        return lineHeight;
    }
    const std::string text = text_.text(cell.text, place);
    if (text.empty()) {
        return lineHeight;
    }
    const double width = std::max(1.0, width_ * cell.width / percent - cellGap);
    std::vector<std::string> lines;
    if (cell.wrap) {
        lines = measure_.wrapped(text, cell.style, width);
    } else {
        lines.push_back(measure_.elided(text, cell.style, width));
    }
    for (std::string& line : lines) {
        out.items.push_back({ItemKind::Text, left, top, width, lineHeight, std::move(line),
                             cell.style, cell.align, 0});
        top += lineHeight;
    }
    return lineHeight * static_cast<double>(lines.size());
}

double partHeight(const LaidOut& section, double from, double room) {
    if (section.height - from <= room) {
        return section.height - from;
    }
    // A cut goes only where no text stands across it: below a line, or above the next one.
    double cut = from + room;
    bool moved = true;
    while (moved) {
        moved = false;
        for (const Item& item : section.items) {
            if (item.kind != ItemKind::Fill && item.y < cut && item.bottom() > cut &&
                item.y >= from) {
                cut = item.y;
                moved = true;
            }
        }
    }
    return std::max(0.0, cut - from);
}

} // namespace kintar::reports
