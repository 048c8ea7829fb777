// The report that is open, and what callers may change of it.
#pragma once

#include "platform/Printers.h"
#include "reports/engine/Report.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace kintar::reports {

/// A report file as read, with the changes of its callers; its rows are read by `run`.
class OpenReport {
public:
    /// Throws ReportError where `text` is no report file.
    OpenReport(std::string_view text, const std::string& path);

    [[nodiscard]] const ReportDefinition& definition() const { return definition_; }

    /// The first formula of that name, without regard to case; an unknown name changes nothing.
    void setFormula(std::string_view name, const std::string& text);
    /// Replaces the selection of the report's rows.
    void setSelection(const std::string& text) { definition_.main.selection = text; }
    /// Throws ReportError for an unknown section.
    void setSuppressed(std::string_view section, bool suppressed);
    /// Group `number` (from 1) falls into groups by `field` and `condition` (0 each value, 1 days,
    /// 2 months, 3 years). Throws ReportError for what there is not.
    void setGroupCondition(std::int16_t number, const std::string& field, std::int16_t condition);
    /// Sort field `number` (from 1, or the next one). Throws ReportError for what there is not.
    void setSortField(std::int16_t number, const std::string& field, bool descending);
    /// Throws ReportError for an unknown sub-report.
    void setSubReportSelection(std::string_view subReport, const std::string& text);
    void selectPrinter(const platform::Printer& printer) { printer_ = printer; }
    /// Nothing while the engine's own printer is meant.
    [[nodiscard]] const std::optional<platform::Printer>& printer() const { return printer_; }

    /// Reads the rows. Throws RunTimeError where that fails.
    [[nodiscard]] std::shared_ptr<const Report> run(const ReportSources& sources, DateTime made,
                                                    const LocaleFormats& formats) const;

private:
    template <class Visit>
    void forEachSection(const Visit& visit);

    ReportDefinition definition_;
    std::string folder_;
    std::optional<platform::Printer> printer_;
};

} // namespace kintar::reports
