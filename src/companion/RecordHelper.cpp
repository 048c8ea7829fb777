#include "companion/RecordHelper.h"

#include "companion/DatabaseConnection.h"
#include "companion/DatabaseError.h"
#include "companion/RowCriterion.h"
#include "companion/dialect/LiteralValue.h"
#include "companion/dialect/Parser.h"

#include <variant>

namespace kintar::companion {

namespace {

DatabaseConnection& opened(Connection& connection) {
    auto* database = dynamic_cast<DatabaseConnection*>(&connection);
    if (database == nullptr || !database->isOpen()) {
        throw DatabaseError::closed();
    }
    return *database;
}

bool isUpdate(std::string_view sql) {
    return std::holds_alternative<dialect::Update>(dialect::parseStatement(sql).body);
}

} // namespace

Recordset RecordHelper::OpenRecordset(std::string_view sql, Connection& connection) {
    return opened(connection).open(sql);
}

std::size_t RecordHelper::readTogether(Connection& connection) {
    return opened(connection).readTogether();
}

std::vector<ReadOfMany> RecordHelper::OpenRecordsets(std::span<const std::string> statements,
                                                     Connection& connection) {
    return opened(connection).openTogether(statements);
}

std::unique_ptr<PendingRecordset> RecordHelper::BeginRecordset(std::string_view sql,
                                                               Connection& connection,
                                                               std::function<void()> ended) {
    return opened(connection).openAside(sql, std::move(ended));
}

void RecordHelper::ExecuteSQL(std::string_view sql, Connection& connection) {
    try {
        const std::size_t rows = opened(connection).execute(sql);
        if (rows == 0 && isUpdate(sql)) {
            notices_.writeFailed("What it would have changed is not in the database.");
        }
    } catch (const RunTimeError& error) {
        notices_.writeFailed(error.what());
        throw;
    }
}

bool RecordHelper::FindRecord(Recordset& rows, std::string_view criterion) {
    const RowCriterion wanted(criterion, rows.columns());
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        if (wanted.matches(rows, row)) {
            rows.MoveTo(row);
            return true;
        }
    }
    rows.MoveTo(rows.RecordCount());
    return false;
}

std::string RecordHelper::SqlText(std::string_view text) {
    return dialect::textLiteral(text);
}

std::string RecordHelper::SqlDate(DateTime value) {
    return dialect::dateTimeLiteral(value);
}

void RecordHelper::FillListBox(ListBox& list, Recordset& rows, std::string_view textField,
                               std::string_view dataField) {
    list.clear();
    const std::size_t text = rows.fieldIndex(textField);
    const std::size_t data = rows.fieldIndex(dataField);
    for (std::size_t row = 0; row < rows.RecordCount(); ++row) {
        list.addItem(rows.at(row, text).text(), rows.at(row, data).leadingLong());
    }
}

std::string RecordHelper::text(Connection& connection, std::int16_t number) {
    const std::string sql =
        "SELECT [Text] FROM [" + textsTable_ + "] WHERE Num = " + std::to_string(number);
    const Recordset rows = OpenRecordset(sql, connection);
    return rows.atEnd() ? std::string() : rows.field(std::size_t{0}).text();
}

void RecordHelper::PrepareForm(Connection& connection, PreparableForm& form) {
    for (const FormCaption& caption : form.captions()) {
        const std::string found = text(connection, caption.number);
        if (!found.empty()) {
            caption.set(found);
        }
    }
}

} // namespace kintar::companion
