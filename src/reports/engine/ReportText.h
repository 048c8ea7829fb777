// The text of a cell at its place in a report.
#pragma once

#include "reports/engine/Report.h"

#include <cstddef>
#include <string>

namespace kintar::reports {

/// Where a section stands: which row it shows and which rows it sums up.
struct TextPlace {
    const ReportRows& rows;
    std::size_t row = 0;
    RowSpan span;
    std::size_t page = 0; ///< from 1
    std::size_t pages = 0;
    bool continued = false;
};

/// Writes the text of templates for one report.
class ReportText {
public:
    explicit ReportText(const Report& report) : report_(report) {}
    [[nodiscard]] std::string text(const Template& pieces, const TextPlace& place) const;

private:
    [[nodiscard]] std::string piece(const Piece& piece, const TextPlace& place) const;
    [[nodiscard]] std::string value(const Piece& piece, const TextPlace& place) const;
    [[nodiscard]] std::string dateText(DateTime value, ValueFormat format) const;

    const Report& report_;
};

/// How long `then` lies before `now`: "5 min", "2 h 05 min", "3 d 04 h"; "0 min" where it lies
/// after it.
std::string ageText(DateTime then, DateTime now);

} // namespace kintar::reports
