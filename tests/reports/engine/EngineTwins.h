// Twins for tests of the report engine.
#pragma once

#include "reports/engine/Report.h"
#include "reports/engine/ReportFile.h"
#include "reports/engine/TextMeasure.h"

#include <functional>
#include <string>
#include <vector>

namespace kintar::testing {

/// Every character is 5 points wide, every line 10 high.
class EvenMeasure final : public reports::TextMeasure {
public:
    static constexpr double characterWidth = 5;
    [[nodiscard]] double lineHeight(std::size_t /*style*/) override { return 10; }
    std::vector<std::string> wrapped(std::string_view text, std::size_t /*style*/,
                                     double width) override {
        const auto most = static_cast<std::size_t>(width / characterWidth);
        std::vector<std::string> lines;
        for (std::size_t at = 0; at < text.size(); at += most) {
            lines.emplace_back(text.substr(at, most));
        }
        return lines;
    }
    std::string elided(std::string_view text, std::size_t /*style*/, double width) override {
        return std::string(text.substr(0, static_cast<std::size_t>(width / characterWidth)));
    }
};

/// Answers each SELECT with rows that a test sets, and writes the statements down.
class RowsRecord final : public TarnRec {
public:
    Recordset OpenRecordset(std::string_view sql, Connection& /*connection*/) override {
        statements.emplace_back(sql);
        return rows(sql);
    }
    void ExecuteSQL(std::string_view /*sql*/, Connection& /*connection*/) override {}
    bool FindRecord(Recordset& /*rows*/, std::string_view /*criterion*/) override { return false; }
    std::string SqlText(std::string_view text) override { return std::string(text); }
    std::string SqlDate(DateTime value) override { return value.iso(); }
    void FillListBox(ListBox& /*list*/, Recordset& /*rows*/, std::string_view /*textField*/,
                     std::string_view /*dataField*/) override {}
    void PrepareForm(Connection& /*connection*/, PreparableForm& /*form*/) override {}

    std::function<Recordset(std::string_view)> rows;
    std::vector<std::string> statements;
};

class NoDatabases final : public ReportDatabases {
public:
    void remove(const std::string& /*path*/) override {}
    std::unique_ptr<ReportDatabase> create(const std::string& /*path*/,
                                           const std::vector<ReportTable>& /*tables*/) override {
        return nullptr;
    }
    std::shared_ptr<Connection> openReadOnly(const std::string& path) override {
        opened.push_back(path);
        return std::make_shared<ClosedConnection>();
    }
    std::vector<std::string> opened;
};

/// A report file around what a test is about.
inline std::string reportFile(const std::string& content, const std::string& data = {}) {
    const std::string usualData = "<data><from>People</from>"
                                  "<field name=\"Place\">People.Place</field>"
                                  "<field name=\"Name\">People.Name</field></data>";
    return "<report xmlns=\"urn:tarnholm:kintar3:report:1\" title=\"Title\" margin=\"50\">" +
           (data.empty() ? usualData : data) + content + "</report>";
}

/// Rows of two texts: place and name.
inline Recordset people(const std::vector<std::pair<std::string, std::string>>& rows) {
    Recordset made({{"Place", ColumnType::Text}, {"Name", ColumnType::Text}});
    for (const auto& [place, name] : rows) {
        made.addText(place);
        made.addText(name);
    }
    return made;
}

/// A report on rows of people.
struct PeopleReport {
    PeopleReport(const std::string& file,
                 std::vector<std::pair<std::string, std::string>> everybody) {
        record.rows = [everybody](std::string_view) { return people(everybody); };
        report = std::make_unique<reports::Report>(
            reports::readReportFile(file, "test.rpt"), "/folder",
            reports::ReportSources{record, site, databases},
            *DateTime::fromFields(2012, 3, 14, 17, 5, 0), LocaleFormats());
    }
    RowsRecord record;
    ClosedConnection site;
    NoDatabases databases;
    std::unique_ptr<reports::Report> report;
};

} // namespace kintar::testing
