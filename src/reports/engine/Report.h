// A report with its rows: everything that laying it out needs.
#pragma once

#include "base/DateTime.h"
#include "base/LocaleFormats.h"
#include "reports/engine/ReportRows.h"
#include "server/Companion.h"
#include "server/ReportDatabase.h"

#include <map>
#include <memory>
#include <string>

namespace kintar::reports {

/// What a report reads its rows from.
struct ReportSources {
    TarnRec& record;
    /// The site's database, for reading only.
    Connection& site;
    ReportDatabases& databases;
};

/// Made whole, then only read: it may be laid out on another thread than the one that made it.
class Report {
public:
    /// Reads all rows, of sub-reports too. `folder` is that of the report file. Throws RunTimeError
    /// where a statement fails.
    Report(ReportDefinition definition, const std::string& folder, const ReportSources& sources,
           DateTime made, LocaleFormats formats);
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;

    [[nodiscard]] const ReportDefinition& definition() const { return definition_; }
    [[nodiscard]] const ReportRows& rows() const { return *rows_; }
    [[nodiscard]] DateTime made() const { return made_; }
    [[nodiscard]] const LocaleFormats& formats() const { return formats_; }
    /// The rows of a section's sub-report as it stands at `row`; null where it has none.
    [[nodiscard]] const ReportRows* subRows(const Section& section, std::size_t row) const;

private:
    Connection& connectionFor(const ReportBody& body, const ReportSources& sources);
    void readSubReports(const Section& section, std::size_t row, const ReportSources& sources);
    void readAllSubReports(const ReportSources& sources);

    ReportDefinition definition_;
    std::string folder_;
    DateTime made_;
    LocaleFormats formats_;
    std::map<std::string, std::shared_ptr<Connection>> opened_;
    std::unique_ptr<ReportRows> rows_;
    std::map<std::pair<const Section*, std::size_t>, std::unique_ptr<ReportRows>> subRows_;
};

} // namespace kintar::reports
