#include "tools/sql/SqlCommand.h"

#include "companion/Explain.h"
#include "companion/OpenDatabase.h"
#include "companion/SiteSettings.h"
#include "tools/sql/RowsOutput.h"

namespace kintar::tools {

namespace {

using companion::DatabaseAccess;
using companion::DatabaseConnection;

std::string shown(const companion::LiftedValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    if (const auto* decimal = std::get_if<companion::DecimalNumber>(&value)) {
        return decimal->text;
    }
    if (const auto* moment = std::get_if<DateTime>(&value)) {
        return companion::dialect::dateTimeLiteral(*moment);
    }
    return companion::dialect::textLiteral(std::get<std::string>(value));
}

std::string shown(const companion::dialect::ParameterValue& value) {
    if (const auto* whole = std::get_if<std::int64_t>(&value)) {
        return std::to_string(*whole);
    }
    if (const auto* real = std::get_if<double>(&value)) {
        char text[32];
        std::snprintf(text, sizeof text, "%.17g", *real);
        return text;
    }
    const auto* text = std::get_if<std::string>(&value);
    return text != nullptr ? companion::dialect::textLiteral(*text) : "Null";
}

void explain(DatabaseConnection& connection, const std::string& statement, std::ostream& out) {
    const auto plan = connection.plan(statement);
    const companion::Explained explained = companion::explainTranslation(
        statement, connection.engine(), connection.translate(statement));
    const std::string mark = connection.engine() == "sqlite" ? "  ?" : "  $";
    out << "The engine gets:\n  " << explained.text << "\n";
    std::size_t number = 0;
    out << "Values lifted from the statement:\n";
    for (const auto& value : explained.values) {
        out << mark << ++number << " = " << shown(value) << "\n";
    }
    out << "Values made from them:\n";
    for (const auto& value : explained.derived) {
        out << mark << ++number << " = " << shown(value) << "\n";
    }
    out << "Plan:\n";
    for (const std::string& line : plan) {
        out << "  " << line << "\n";
    }
}

void writeRows(const Recordset& rows, RowsFormat format, std::ostream& out) {
    switch (format) {
    case RowsFormat::Aligned:
        writeAligned(rows, out);
        break;
    case RowsFormat::Csv:
        writeCsv(rows, out);
        break;
    case RowsFormat::Json:
        writeJson(rows, out);
        break;
    }
}

} // namespace

void runSql(const SqlRequest& request, std::ostream& out) {
    const auto settings = companion::SiteSettings::read(request.site);
    const auto opened = companion::openDatabase(
        settings.database, request.write ? DatabaseAccess::ReadWrite : DatabaseAccess::ReadOnly);
    DatabaseConnection& connection = *opened;
    if (request.explain) {
        explain(connection, request.statement, out);
        return;
    }
    if (!connection.translate(request.statement).columns.empty()) {
        writeRows(connection.open(request.statement), request.format, out);
    } else if (request.write) {
        connection.execute(request.statement);
    } else {
        throw companion::DatabaseError(companion::ErrorKind::ReadOnly,
                                       "A statement that writes needs --write.");
    }
}

} // namespace kintar::tools
