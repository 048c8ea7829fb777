// A record helper that answers known statements with given rows, and records what was sent.
#pragma once

#include "base/RunTimeError.h"
#include "search/Database.h"

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace kintar::testing {

using Cell = std::variant<std::monostate, int, std::string>;
using Row = std::vector<Cell>;
constexpr std::monostate null;

/// Rows under named columns; `:b` behind a name makes the column Yes/No, `:d` a date-time.
inline Recordset recordset(const std::vector<std::string>& columns, const std::vector<Row>& rows) {
    std::vector<Column> described;
    for (std::string name : columns) {
        ColumnType type = ColumnType::Any;
        if (const auto mark = name.find(':'); mark != std::string::npos) {
            type = name.substr(mark) == ":b" ? ColumnType::YesNo : ColumnType::DateTime;
            name.resize(mark);
        }
        described.push_back({name, type});
    }
    Recordset made(described);
    for (const Row& row : rows) {
        for (const Cell& cell : row) {
            if (const auto* number = std::get_if<int>(&cell)) {
                made.addInteger(*number);
            } else if (const auto* text = std::get_if<std::string>(&cell)) {
                made.addText(*text);
            } else {
                made.addNull();
            }
        }
    }
    made.MoveFirst();
    return made;
}

class TableTwin final : public TarnRec {
public:
    struct Answer {
        std::vector<std::string> columns;
        std::vector<Row> rows;
    };

    /// What a statement gives; one that is not known fails.
    void answer(const std::string& sql, std::vector<std::string> columns, std::vector<Row> rows) {
        answers_[sql] = {std::move(columns), std::move(rows)};
    }
    void forget(const std::string& sql) { answers_.erase(sql); }

    std::vector<std::string> takeStatements() { return std::exchange(statements_, {}); }

    Recordset OpenRecordset(std::string_view sql, Connection& /*connection*/) override {
        statements_.emplace_back(sql);
        const auto found = answers_.find(std::string(sql));
        if (found == answers_.end()) {
            throw RunTimeError(-2147217900, "no such statement here: " + std::string(sql));
        }
        return recordset(found->second.columns, found->second.rows);
    }
    /// Reads at once, unless the test puts its own way of reading in `begin`.
    std::unique_ptr<PendingRecordset> BeginRecordset(std::string_view sql, Connection& connection,
                                                     std::function<void()> ended) override {
        if (begin) {
            statements_.emplace_back(sql);
            return begin(sql, std::move(ended));
        }
        return TarnRec::BeginRecordset(sql, connection, std::move(ended));
    }
    std::function<std::unique_ptr<PendingRecordset>(std::string_view sql,
                                                    std::function<void()> ended)>
        begin;

    void ExecuteSQL(std::string_view /*sql*/, Connection& /*connection*/) override {
        throw std::logic_error("the name search writes nothing");
    }
    /// Knows `column = number`.
    bool FindRecord(Recordset& rows, std::string_view criterion) override {
        statements_.push_back("find " + std::string(criterion));
        const auto sign = criterion.find(" = ");
        const std::string wanted(criterion.substr(sign + 3));
        for (rows.MoveFirst(); !rows.atEnd(); rows.MoveNext()) {
            if (rows.field(criterion.substr(0, sign)).text() == wanted) {
                return true;
            }
        }
        return false;
    }
    std::string SqlText(std::string_view text) override {
        std::string literal = "'";
        for (const char c : text) {
            literal += c == '\'' ? std::string("''") : std::string(1, c);
        }
        return literal + "'";
    }
    std::string SqlDate(DateTime value) override { return "#" + value.iso() + "#"; }
    void FillListBox(ListBox& /*list*/, Recordset& /*rows*/, std::string_view /*textField*/,
                     std::string_view /*dataField*/) override {}
    void PrepareForm(Connection& /*connection*/, PreparableForm& form) override {
        statements_.push_back("PrepareForm " + form.formName());
    }

private:
    std::map<std::string, Answer> answers_;
    std::vector<std::string> statements_;
};

/// A database on the twin.
struct TwinDatabase {
    TableTwin record;
    ClosedConnection connection;
    search::Database database{record, connection};
};

} // namespace kintar::testing
