#include "companion/postgres/ResultReader.h"

#include "companion/DatabaseError.h"

#include <charconv>
#include <string_view>

namespace kintar::companion::postgres {

namespace {

template <class Number>
bool readWhole(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

void addValue(Recordset& rows, ColumnType type, std::string_view text) {
    std::int64_t whole = 0;
    double real = 0;
    switch (type) {
    case ColumnType::Integer:
    case ColumnType::YesNo:
        if (readWhole(text, whole)) {
            rows.addInteger(whole);
            return;
        }
        [[fallthrough]];
    case ColumnType::Real:
        if (readWhole(text, real)) {
            rows.addReal(real);
            return;
        }
        break;
    default:
        break;
    }
    rows.addText(text);
}

/// What stands in a row from column `first` on.
void addRow(Recordset& rows, const PGresult* result, int row, int first) {
    int column = first;
    for (const Column& definition : rows.columns()) {
        if (PQgetisnull(result, row, column) != 0) {
            rows.addNull();
        } else {
            addValue(rows, definition.type,
                     {PQgetvalue(result, row, column),
                      static_cast<std::size_t>(PQgetlength(result, row, column))});
        }
        ++column;
    }
}

void checkColumns(const PGresult* result, std::size_t count) {
    if (PQnfields(result) != static_cast<int>(count)) {
        throw DatabaseError(ErrorKind::Other, "The database server answers with other columns.");
    }
}

} // namespace

Recordset readResult(const PGresult* result, const SharedColumns& columns) {
    checkColumns(result, columns->size());
    Recordset rows(columns);
    const int rowCount = PQntuples(result);
    for (int row = 0; row < rowCount; ++row) {
        addRow(rows, result, row, 0);
    }
    rows.finish();
    return rows;
}

std::vector<Recordset> readResultOfManyRuns(const PGresult* result, const SharedColumns& columns,
                                            std::size_t runs) {
    checkColumns(result, columns->size() + 1);
    std::vector<Recordset> all;
    all.reserve(runs);
    while (all.size() < runs) {
        all.emplace_back(columns);
    }
    const int rowCount = PQntuples(result);
    for (int row = 0; row < rowCount; ++row) {
        std::size_t run = 0;
        readWhole(std::string_view(PQgetvalue(result, row, 0)), run);
        addRow(all.at(run - 1), result, row, 1);
    }
    for (Recordset& rows : all) {
        rows.finish();
    }
    return all;
}

} // namespace kintar::companion::postgres
