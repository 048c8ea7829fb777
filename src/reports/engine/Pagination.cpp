#include "reports/engine/Pagination.h"

#include "reports/engine/ReportError.h"

#include <algorithm>

namespace kintar::reports {
namespace {

/// What page numbers are measured with before they are known.
constexpr std::size_t widePageNumber = 88888;
/// Headings that are repeated take at most this part of a page: rows have to have room.
constexpr double mostOfHeadings = 0.5;
constexpr double leastBody = 72; ///< points, in both directions
constexpr double roundingSlack = 0.001;

} // namespace

PagedReport::PagedReport(const Report& report, TextMeasure& measure, PageSize size,
                         const std::atomic<bool>& cancelled)
    : report_(report), size_(size),
      layout_(report, measure, size.width - 2 * report.definition().margin),
      cancelled_(&cancelled) {
    const ReportBody& main = report_.definition().main;
    const double margin = report_.definition().margin;
    top_ = margin + pageSectionHeight(main.pageHeader);
    bottom_ = size_.height - margin - pageSectionHeight(main.pageFooter);
    if (bodyHeight() < leastBody || size_.width - 2 * margin < leastBody) {
        throw ReportError("the margins and page sections leave no room for rows");
    }
    run(cancelled);
    cancelled_ = nullptr;
}

double PagedReport::pageSectionHeight(const Section& section) const {
    const TextPlace place{report_.rows(), 0,    report_.rows().allRows(), widePageNumber,
                          widePageNumber, false};
    return layout_.layOut(section, place).height;
}

void PagedReport::run(const std::atomic<bool>& cancelled) {
    startFirstPage();
    runBody(report_.rows(), cancelled);
}

/// The report's own heading stands above the page's, where it has no rows of its own below it.
void PagedReport::startFirstPage() {
    startPage();
    const Section& section = report_.definition().main.reportHeader;
    const ReportRows& rows = report_.rows();
    const double height = heightOf(section, rows, 0, rows.allRows(), false);
    firstHeaderTop_ = report_.definition().margin;
    if (section.subReport.empty() && height <= bodyHeight() * mostOfHeadings) {
        y_ = firstHeaderTop_;
        firstHeaderTop_ += height;
        addBlock({&section, &rows, 0, rows.allRows(), y_, 0, height, false});
        y_ = top_ + height;
    }
}

void PagedReport::runBody(const ReportRows& rows, const std::atomic<bool>& cancelled) {
    const ReportBody& body = rows.body();
    const bool isPlaced = &rows == &report_.rows() && !pages_.front().empty() &&
                          pages_.front().front().section == &body.reportHeader;
    if (!isPlaced) {
        place(body.reportHeader, rows, 0, rows.allRows());
    }
    if (rows.count() == 0) {
        place(body.empty, rows, 0, rows.allRows());
    }
    for (std::size_t row = 0; row < rows.count() && !cancelled; ++row) {
        openGroups(rows, row);
        place(body.detail, rows, row, {row, row + 1});
        closeGroups(rows, row);
    }
    place(body.reportFooter, rows, rows.count() == 0 ? 0 : rows.count() - 1, rows.allRows());
}

void PagedReport::openGroups(const ReportRows& rows, std::size_t row) {
    const std::vector<Group>& groups = rows.body().groups;
    const std::size_t first = rows.firstLevelBeginningAt(row);
    // The headings of all groups that begin here stay with each other and with the first row.
    double kept = heightOf(rows.body().detail, rows, row, {row, row + 1}, false);
    std::vector<double> heights(groups.size());
    for (std::size_t level = first; level < groups.size(); ++level) {
        heights[level] = heightOf(groups[level].header, rows, row, rows.spanOf(level, row), false);
        kept += heights[level];
    }
    for (std::size_t level = first; level < groups.size(); ++level) {
        kept -= heights[level];
        place(groups[level].header, rows, row, rows.spanOf(level, row), kept);
    }
}

void PagedReport::closeGroups(const ReportRows& rows, std::size_t row) {
    const std::vector<Group>& groups = rows.body().groups;
    const std::size_t firstClosed =
        row + 1 < rows.count() ? rows.firstLevelBeginningAt(row + 1) : 0;
    for (std::size_t level = groups.size(); level-- > firstClosed;) {
        place(groups[level].footer, rows, row, rows.spanOf(level, row));
    }
}

void PagedReport::place(const Section& section, const ReportRows& rows, std::size_t row,
                        RowSpan span, double keepWith) {
    if (section.suppressed || section.isEmpty()) {
        return;
    }
    const double height = heightOf(section, rows, row, span, false);
    const bool atTop = y_ <= top_ + roundingSlack;
    const double wanted = std::min(height + keepWith, bodyHeight());
    if ((section.newPage && !atTop) || (y_ + wanted > bottom_ + roundingSlack && !atTop)) {
        breakPage(rows, row);
    }
    Block block{&section, &rows, row, span, y_, 0, height, false};
    if (y_ + height > bottom_ + roundingSlack) {
        // Higher than what a page offers: it goes on over as many pages as it takes.
        const LaidOut all = layout_.layOut(section, {rows, row, span, 0, 0, false});
        while (block.from < all.height && y_ + (all.height - block.from) > bottom_) {
            const double part = partHeight(all, block.from, bottom_ - y_);
            block.height = part > 0 ? part : std::max(1.0, bottom_ - y_);
            addBlock(block);
            block.from += block.height;
            breakPage(rows, row);
            block.y = y_;
        }
        block.height = all.height - block.from;
    }
    addBlock(block);
    if (&rows == &report_.rows()) {
        placeSubReport(section, row);
    }
}

void PagedReport::placeSubReport(const Section& section, std::size_t row) {
    if (const ReportRows* rows = report_.subRows(section, row)) {
        runBody(*rows, *cancelled_);
    }
}

void PagedReport::addBlock(Block block) {
    block.y = y_;
    y_ += block.height;
    pages_.back().push_back(block);
}

void PagedReport::startPage() {
    pages_.emplace_back();
    y_ = top_;
}

void PagedReport::breakPage(const ReportRows& rows, std::size_t row) {
    startPage();
    if (rows.count() == 0) {
        return;
    }
    const std::vector<Group>& groups = rows.body().groups;
    for (std::size_t level = 0; level < groups.size(); ++level) {
        const RowSpan span = rows.spanOf(level, row);
        const Section& header = groups[level].header;
        // A group that begins with this row has its own heading still to come.
        if (!header.repeat || header.suppressed || header.isEmpty() || span.begin == row) {
            continue;
        }
        const double height = heightOf(header, rows, row, span, true);
        if (y_ - top_ + height <= bodyHeight() * mostOfHeadings) {
            addBlock({&header, &rows, row, span, y_, 0, height, true});
        }
    }
}

double PagedReport::heightOf(const Section& section, const ReportRows& rows, std::size_t row,
                             RowSpan span, bool continued) const {
    return layout_.layOut(section, {rows, row, span, 0, 0, continued}).height;
}

std::vector<Item> PagedReport::pageItems(std::size_t page) const {
    const ReportBody& main = report_.definition().main;
    const double margin = report_.definition().margin;
    const std::vector<Block>& blocks = pages_.at(page);
    const std::size_t row =
        blocks.empty() || blocks.front().rows != &report_.rows() ? 0 : blocks.front().row;
    const RowSpan all = report_.rows().allRows();
    std::vector<Item> items;
    const double headerTop = page == 0 ? firstHeaderTop_ : margin;
    addItems({&main.pageHeader, &report_.rows(), row, all, headerTop, 0, top_ - margin, false},
             page, items);
    for (const Block& block : blocks) {
        addItems(block, page, items);
    }
    addItems({&main.pageFooter, &report_.rows(), row, all, bottom_, 0,
              size_.height - margin - bottom_, false},
             page, items);
    return items;
}

void PagedReport::addItems(const Block& block, std::size_t page, std::vector<Item>& items) const {
    const TextPlace place{*block.rows, block.row,     block.span,
                          page + 1,    pages_.size(), block.continued};
    LaidOut section = layout_.layOut(*block.section, place);
    const double margin = report_.definition().margin;
    for (Item& item : section.items) {
        const bool before = item.bottom() <= block.from + roundingSlack && block.from > 0;
        const bool after = item.y >= block.from + block.height - roundingSlack;
        if (before || after) {
            continue;
        }
        if (item.kind == ItemKind::Fill) {
            const double bottom = std::min(item.bottom(), block.from + block.height);
            item.y = std::max(item.y, block.from);
            item.height = bottom - item.y;
        }
        item.x += margin;
        item.y += block.y - block.from;
        items.push_back(std::move(item));
    }
}

} // namespace kintar::reports
