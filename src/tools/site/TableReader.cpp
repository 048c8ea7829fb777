#include "tools/site/TableReader.h"

#include "base/Unicode.h"
#include "companion/dialect/PostgresOutput.h"
#include "tools/site/SiteError.h"

#include <algorithm>
#include <charconv>

namespace kintar::site {

namespace {

using companion::ColumnDefinition;
using companion::KeyKind;
using companion::TableDefinition;

/// Rows that a server hands out at once.
constexpr const char* pieceOfRows = "FETCH 5000 FROM kintar_rows";

const ColumnDefinition* keyOf(const TableDefinition& table) {
    const auto found = std::ranges::find_if(
        table.columns, [](const ColumnDefinition& column) { return column.key != KeyKind::None; });
    return found == table.columns.end() ? nullptr : &*found;
}

std::string selectOf(const TableDefinition& table, bool onServer) {
    const auto name = [&](const std::string& plain) {
        return onServer ? companion::dialect::postgresSchemaName(plain) : '"' + plain + '"';
    };
    const ColumnDefinition* key = keyOf(table);
    std::string columns;
    std::string order;
    for (const ColumnDefinition& column : table.columns) {
        columns += (columns.empty() ? "" : ", ") + name(column.name);
        if (key != nullptr && key != &column) {
            continue;
        }
        // By bytes and with Null in front, as the embedded engine does by itself.
        const bool text = onServer && column.type == ColumnType::Text;
        order += (order.empty() ? "" : ", ") + name(column.name) + (text ? " COLLATE \"C\"" : "") +
                 (onServer ? " NULLS FIRST" : "");
    }
    return "SELECT " + columns + " FROM " + name(table.name) + " ORDER BY " + order;
}

bool isWhole(const std::string& text, std::int64_t lowest, std::int64_t highest) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= lowest &&
           number <= highest;
}

bool isMoment(const std::string& text) {
    const auto moment = DateTime::fromIso(text.size() == 19 && text[10] == ' '
                                              ? text.substr(0, 10) + 'T' + text.substr(11)
                                              : std::string());
    return moment && moment->isoWithBlank() == text;
}

bool holds(ColumnType type, const std::string& text) {
    switch (type) {
    case ColumnType::Integer:
        return isWhole(text, INT64_MIN, INT64_MAX);
    case ColumnType::YesNo:
        return isWhole(text, INT16_MIN, INT16_MAX);
    case ColumnType::DateTime:
        return isMoment(text);
    default:
        return text.find('\0') == std::string::npos && unicode::toValidUtf8(text) == text;
    }
}

} // namespace

TableReader::TableReader(SiteDatabase& database, const TableDefinition& table)
    : database_(database), table_(table), row_(table.columns.size()) {
    const bool onServer = database.server() != nullptr;
    if (onServer) {
        database_.execute("DECLARE kintar_rows NO SCROLL CURSOR FOR " + selectOf(table, true));
    }
    rows_ =
        std::make_unique<SiteStatement>(database_, onServer ? pieceOfRows : selectOf(table, false));
    rows_->start();
}

bool TableReader::fetch() {
    if (rows_->next()) {
        return true;
    }
    if (database_.server() == nullptr) {
        return false;
    }
    rows_->start();
    if (rows_->next()) {
        return true;
    }
    database_.execute("CLOSE kintar_rows");
    return false;
}

const RowTexts* TableReader::next() {
    ended_ = ended_ || !fetch();
    if (ended_) {
        return nullptr;
    }
    ++number_;
    for (std::size_t column = 0; column < row_.size(); ++column) {
        const auto at = static_cast<int>(column);
        row_[column] = rows_->isNull(at) ? std::nullopt : std::optional(rows_->text(at));
        check(column);
    }
    return &row_;
}

void TableReader::check(std::size_t column) const {
    if (row_[column] && !holds(table_.columns[column].type, *row_[column])) {
        throw SiteError(table_.name + ", " + place() + ": " + table_.columns[column].name +
                        " holds no " +
                        std::string(companion::declaredType(table_.columns[column].type)) +
                        " value; 'kintar-site check' names all such values");
    }
}

std::string TableReader::place() const {
    const ColumnDefinition* key = keyOf(table_);
    if (key != nullptr) {
        const auto at = static_cast<std::size_t>(key - table_.columns.data());
        return key->name + " " + row_[at].value_or("Null");
    }
    return "row " + std::to_string(number_);
}

} // namespace kintar::site
