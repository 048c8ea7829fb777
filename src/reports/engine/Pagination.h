// A report in pages.
#pragma once

#include "reports/engine/SectionLayout.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace kintar::reports {

/// A sheet, in points.
struct PageSize {
    double width = 595; ///< A4
    double height = 842;
    bool operator==(const PageSize&) const = default;
};

/// A section, or a part of one that is higher than a page, at its place on a page.
struct Block {
    const Section* section = nullptr;
    const ReportRows* rows = nullptr;
    std::size_t row = 0;
    RowSpan span;
    double y = 0;      ///< from the top of the sheet
    double from = 0;   ///< what of the section stands on earlier pages
    double height = 0; ///< of this part
    bool continued = false;
};

/// Which section stands where. What stands in it is laid out again when a page is looked at, so
/// that a report of many pages takes little room.
class PagedReport {
public:
    /// Lays out the whole report; `report` and `measure` outlive this. Ends early, with the pages
    /// so far, where `cancelled` becomes true. Throws ReportError where the sheet has no room.
    PagedReport(const Report& report, TextMeasure& measure, PageSize size,
                const std::atomic<bool>& cancelled);

    [[nodiscard]] std::size_t pageCount() const { return pages_.size(); }
    [[nodiscard]] PageSize size() const { return size_; }
    /// Everything on a page, 0 the first, in points from the sheet's top left corner.
    [[nodiscard]] std::vector<Item> pageItems(std::size_t page) const;

private:
    void run(const std::atomic<bool>& cancelled);
    void runBody(const ReportRows& rows, const std::atomic<bool>& cancelled);
    void openGroups(const ReportRows& rows, std::size_t row);
    void closeGroups(const ReportRows& rows, std::size_t row);
    void place(const Section& section, const ReportRows& rows, std::size_t row, RowSpan span,
               double keepWith = 0);
    void placeSubReport(const Section& section, std::size_t row);
    void startFirstPage();
    void startPage();
    void breakPage(const ReportRows& rows, std::size_t row);
    void addBlock(Block block);
    [[nodiscard]] double heightOf(const Section& section, const ReportRows& rows, std::size_t row,
                                  RowSpan span, bool continued) const;
    [[nodiscard]] double pageSectionHeight(const Section& section) const;
    [[nodiscard]] double bodyHeight() const { return bottom_ - top_; }
    void addItems(const Block& block, std::size_t page, std::vector<Item>& items) const;

    const Report& report_;
    PageSize size_;
    SectionLayout layout_;
    double top_ = 0;
    double firstHeaderTop_ = 0; ///< of the page header on the first page
    double bottom_ = 0;
    double y_ = 0;
    const std::atomic<bool>* cancelled_ = nullptr;
    std::vector<std::vector<Block>> pages_;
};

} // namespace kintar::reports
