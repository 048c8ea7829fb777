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

} // namespace

Recordset readResult(const PGresult* result, const SharedColumns& columns) {
    const int count = static_cast<int>(columns->size());
    if (PQnfields(result) != count) {
        throw DatabaseError(ErrorKind::Other, "The database server answers with other columns.");
    }
    Recordset rows(columns);
    const int rowCount = PQntuples(result);
    for (int row = 0; row < rowCount; ++row) {
        for (int column = 0; column < count; ++column) {
            if (PQgetisnull(result, row, column) != 0) {
                rows.addNull();
                continue;
            }
            addValue(rows, (*columns)[static_cast<std::size_t>(column)].type,
                     {PQgetvalue(result, row, column),
                      static_cast<std::size_t>(PQgetlength(result, row, column))});
        }
    }
    rows.finish();
    return rows;
}

} // namespace kintar::companion::postgres
