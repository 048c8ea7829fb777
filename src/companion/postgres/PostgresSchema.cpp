#include "companion/postgres/PostgresSchema.h"

#include "companion/dialect/Keyword.h"
#include "companion/dialect/PostgresOutput.h"
#include "companion/postgres/FoldTable.h"

#include <algorithm>
#include <string_view>

namespace kintar::companion::postgres {

namespace {

using dialect::postgresSchemaName;
using dialect::quotedName;

std::string replaced(std::string text, std::string_view what, std::string_view by) {
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

// The engine makes small letters by the whole mapping of Unicode, which has a final sigma; folding
// has one small letter for all. What the two differ in is put right behind it. İ alone becomes two
// characters, so a text that holds it is folded in parts; Cherokee is left to the same, slower way.
// ASCII needs nothing of this.
constexpr std::string_view foldParts = R"(
CREATE FUNCTION kintar_fold_parts(t text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
SELECT string_agg(translate(lower(part COLLATE "und-x-icu") COLLATE "C", 'FROM', 'TO'), 'İ'
                  ORDER BY n)
FROM unnest(string_to_array(t, 'İ')) WITH ORDINALITY AS parts (part, n) $$)";

constexpr std::string_view fold = R"(
CREATE FUNCTION kintar_fold(t text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
SELECT CASE WHEN octet_length(t) = char_length(t) THEN lower(t COLLATE "C") COLLATE "C"
            WHEN t COLLATE "C" !~ '[\u0130\u13A0-\u13FF\uAB70-\uABBF]'
            THEN translate(lower(t COLLATE "und-x-icu") COLLATE "C", 'FROM', 'TO')
            ELSE kintar_fold_parts(t) COLLATE "C" END $$)";

// The engine's numbers end at some thousands of digits; a longer text counts as none.
constexpr std::string_view number = R"(
CREATE FUNCTION kintar_number(t text) RETURNS numeric LANGUAGE sql IMMUTABLE PARALLEL SAFE AS $$
SELECT CASE WHEN t COLLATE "C" ~ '^[ \t]*[-+]?([0-9]+[.]?[0-9]*|[.][0-9]+)[ \t]*$'
                 AND length(t) < 10000
            THEN btrim(t, E' \t')::numeric END $$)";

constexpr std::string_view likeSet = R"(
CREATE FUNCTION kintar_like_set(inside text) RETURNS text LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE
    negated boolean := left(inside, 1) = '!' AND length(inside) > 1;
    wanted text := CASE WHEN negated THEN substr(inside, 2) ELSE inside END;
    at int := 1;
    low int;
    high int;
    result text := '';
BEGIN
    WHILE at <= length(wanted) LOOP
        low := ascii(substr(wanted, at, 1));
        IF substr(wanted, at + 1, 1) = '-' AND at + 2 <= length(wanted) THEN
            high := ascii(substr(wanted, at + 2, 1));
            at := at + 3;
        ELSE
            high := low;
            at := at + 1;
        END IF;
        IF low <= high THEN
            result := result || '\U' || lpad(to_hex(low), 8, '0')
                   || '-\U' || lpad(to_hex(high), 8, '0')
                   || coalesce((SELECT string_agg('\U' || lpad(to_hex(ascii(folded)), 8, '0'), '')
                                FROM (SELECT DISTINCT kintar_fold(chr(c)) AS folded
                                      FROM generate_series(low, least(high, 131071)) AS c
                                      WHERE c NOT BETWEEN 55296 AND 57343) AS every), '');
        END IF;
    END LOOP;
    IF result = '' THEN
        RETURN CASE WHEN negated THEN '.' ELSE '[^\U00000001-\U0010FFFF]' END;
    END IF;
    RETURN CASE WHEN negated THEN '[^' ELSE '[' END || result || ']';
END $$)";

constexpr std::string_view like = R"(
CREATE FUNCTION kintar_like(t text, pattern text) RETURNS boolean LANGUAGE plpgsql IMMUTABLE AS $$
DECLARE
    last_close int := length(pattern) + 1 - strpos(reverse(pattern), ']');
    at int := 1;
    behind int;
    c text;
    expression text := '^';
BEGIN
    IF t IS NULL OR pattern IS NULL THEN
        RETURN NULL;
    END IF;
    IF strpos(pattern, ']') = 0 THEN
        last_close := 0;
    END IF;
    WHILE at <= length(pattern) LOOP
        c := substr(pattern, at, 1);
        IF c = '[' AND at < last_close THEN
            behind := at + strpos(substr(pattern, at), ']');
            IF behind > at + 2 THEN
                expression := expression
                    || kintar_like_set(substr(pattern, at + 1, behind - at - 2));
            END IF;
            at := behind;
            CONTINUE;
        END IF;
        expression := expression || CASE c WHEN '%' THEN '.*' WHEN '_' THEN '.'
            ELSE '\U' || lpad(to_hex(ascii(kintar_fold(c))), 8, '0') END;
        at := at + 1;
    END LOOP;
    RETURN kintar_fold(t) COLLATE "C" ~ (expression || '$');
END $$)";

std::string withFoldings(std::string_view function, Cherokee cherokee) {
    const FoldTable table = foldTable(cherokee);
    return replaced(replaced(std::string(function), "'FROM'", "'" + table.from + "'"), "'TO'",
                    "'" + table.to + "'");
}

std::string columnClause(const ColumnDefinition& column) {
    std::string clause =
        postgresSchemaName(column.name) + ' ' + std::string(engineType(column.type));
    if (column.key == KeyKind::Assigned) {
        clause += " GENERATED BY DEFAULT AS IDENTITY";
    }
    if (column.key != KeyKind::None) {
        clause += " PRIMARY KEY";
    }
    return clause;
}

/// A column of an index from the words that the embedded engine takes.
std::string indexColumn(std::string_view word) {
    constexpr std::string_view ignoringCase = " COLLATE NOCASE";
    constexpr std::string_view asNumber = "CAST(";
    if (word.starts_with(asNumber)) {
        word.remove_prefix(asNumber.size());
        return "kintar_number(" + postgresSchemaName(word.substr(0, word.find(' '))) + ")";
    }
    const bool text = word.ends_with(ignoringCase);
    if (text) {
        word.remove_suffix(ignoringCase.size());
    }
    if (word.starts_with('"')) {
        word = word.substr(1, word.size() - 2);
    }
    const std::string name = postgresSchemaName(word);
    return text ? "kintar_fold(" + name + ") COLLATE \"C\"" : name;
}

std::string indexColumns(std::string_view columns) {
    std::string clause;
    for (;;) {
        const std::size_t comma = columns.find(", ");
        clause += (clause.empty() ? "" : ", ") + indexColumn(columns.substr(0, comma));
        if (comma == std::string_view::npos) {
            return clause;
        }
        columns.remove_prefix(comma + 2);
    }
}

} // namespace

std::string_view engineType(ColumnType type) {
    switch (type) {
    case ColumnType::Integer:
        return "bigint";
    case ColumnType::Real:
        return "double precision";
    case ColumnType::YesNo:
        return "yesno";
    case ColumnType::DateTime:
        return "timestamp(0)";
    default:
        return "text";
    }
}

std::vector<std::string> functionStatements() {
    return {"CREATE DOMAIN yesno AS smallint",
            withFoldings(foldParts, Cherokee::With),
            withFoldings(fold, Cherokee::Without),
            std::string(number),
            std::string(likeSet),
            std::string(like)};
}

std::string createTableStatement(const TableDefinition& table) {
    std::string columns;
    for (const ColumnDefinition& column : table.columns) {
        columns += (columns.empty() ? "" : ", ") + columnClause(column);
    }
    return "CREATE TABLE " + postgresSchemaName(table.name) + " (" + columns + ")";
}

std::vector<std::string> createIndexStatements(const TableDefinition& table) {
    std::vector<std::string> statements;
    for (const IndexDefinition& index : table.indexes) {
        statements.push_back(
            "CREATE INDEX " +
            postgresSchemaName(table.name + "Index" + std::to_string(statements.size() + 1)) +
            " ON " + postgresSchemaName(table.name) + " (" + indexColumns(index.columns) + ")");
    }
    return statements;
}

std::string continueKeysStatement(const TableDefinition& table) {
    const auto assigned =
        std::ranges::find(table.columns, KeyKind::Assigned, &ColumnDefinition::key);
    if (assigned == table.columns.end()) {
        return {};
    }
    const std::string name = postgresSchemaName(table.name);
    const std::string key = postgresSchemaName(assigned->name);
    return "SELECT setval(pg_get_serial_sequence('" + name + "', '" +
           key.substr(1, key.size() - 2) + "'), greatest(1, (SELECT max(" + key + ") FROM " + name +
           ")), EXISTS (SELECT FROM " + name + "))";
}

} // namespace kintar::companion::postgres
