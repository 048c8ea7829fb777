#include "reports/engine/Report.h"

#include "reports/engine/ReportError.h"
#include "reports/engine/ReportStatement.h"

#include <algorithm>

namespace kintar::reports {

Report::Report(ReportDefinition definition, const std::string& folder, const ReportSources& sources,
               DateTime made, LocaleFormats formats)
    : definition_(std::move(definition)), folder_(folder), made_(made),
      formats_(std::move(formats)) {
    const ReportBody& main = definition_.main;
    rows_ = std::make_unique<ReportRows>(
        main, sources.record.OpenRecordset(composeSelect(main), connectionFor(main, sources)));
    readAllSubReports(sources);
    for (const auto& [path, connection] : opened_) {
        connection->Close();
    }
    opened_.clear();
}

Connection& Report::connectionFor(const ReportBody& body, const ReportSources& sources) {
    if (body.source.empty()) {
        return sources.site;
    }
    std::shared_ptr<Connection>& connection = opened_[body.source];
    if (!connection) {
        connection = sources.databases.openReadOnly(folder_ + "/" + body.source);
    }
    return *connection;
}

void Report::readAllSubReports(const ReportSources& sources) {
    const ReportBody& main = definition_.main;
    readSubReports(main.reportHeader, 0, sources);
    if (rows_->count() == 0) {
        readSubReports(main.empty, 0, sources);
    }
    const bool inDetail = !main.detail.subReport.empty();
    for (std::size_t row = 0; row < rows_->count(); ++row) {
        if (inDetail) {
            readSubReports(main.detail, row, sources);
        }
        for (std::size_t level = rows_->firstLevelBeginningAt(row); level < main.groups.size();
             ++level) {
            readSubReports(main.groups[level].header, row, sources);
            // A footer stands at the last row of its group.
            readSubReports(main.groups[level].footer, rows_->spanOf(level, row).end - 1, sources);
        }
    }
    readSubReports(main.reportFooter, rows_->count() == 0 ? 0 : rows_->count() - 1, sources);
}

void Report::readSubReports(const Section& section, std::size_t row, const ReportSources& sources) {
    if (section.subReport.empty() || section.suppressed) {
        return;
    }
    const auto found =
        std::ranges::find_if(definition_.subReports, [&section](const ReportBody& known) {
            return sameName(known.name, section.subReport);
        });
    if (found == definition_.subReports.end()) {
        throw ReportError("there is no sub-report '" + section.subReport + "'");
    }
    const Recordset* above = rows_->count() == 0 ? nullptr : &rows_->recordset();
    subRows_[{&section, row}] = std::make_unique<ReportRows>(
        *found, sources.record.OpenRecordset(composeSelect(*found, above, row),
                                             connectionFor(*found, sources)));
}

const ReportRows* Report::subRows(const Section& section, std::size_t row) const {
    const auto found = subRows_.find({&section, row});
    return found == subRows_.end() ? nullptr : found->second.get();
}

} // namespace kintar::reports
