#include "reports/engine/ReportStatement.h"

#include "base/Number.h"
#include "reports/engine/ReportError.h"

namespace kintar::reports {
namespace {

/// Names come from files that the schema has checked, or from callers: a bracket inside would end
/// the name.
std::string bracketed(const std::string& name) {
    if (name.find_first_of("[]") != std::string::npos) {
        throw ReportError("'" + name + "' is no name of a field");
    }
    return '[' + name + ']';
}

std::string fieldList(const ReportBody& body) {
    std::string list;
    for (const Field& field : body.fields) {
        list += (list.empty() ? "" : ", ") + field.expression + " AS " + bracketed(field.name);
    }
    return list;
}

std::string conditions(const ReportBody& body, const Recordset* above, std::size_t row) {
    std::string all;
    const auto add = [&all](const std::string& condition) {
        all += (all.empty() ? " WHERE (" : " AND (") + condition + ")";
    };
    if (!body.selection.empty()) {
        add(body.selection);
    }
    for (const Link& link : body.links) {
        if (above == nullptr) {
            throw ReportError("the sub-report's link has no row above it");
        }
        const std::size_t index = above->fieldIndex(link.field);
        const FieldValue value = above->at(row, index);
        add(link.expression + (value.isNull()
                                   ? " IS NULL"
                                   : " = " + literalOf(value, above->columns().at(index).type)));
    }
    return all;
}

std::string order(const ReportBody& body) {
    std::string list;
    const auto add = [&list](const std::string& field, bool descending) {
        list +=
            (list.empty() ? " ORDER BY " : ", ") + bracketed(field) + (descending ? " DESC" : "");
    };
    for (const Group& group : body.groups) {
        for (const std::string& field : group.sortBy) {
            add(field, group.descending);
        }
        add(group.field, group.descending);
    }
    for (const SortField& sort : body.sortFields) {
        add(sort.field, sort.descending);
    }
    return list;
}

} // namespace

std::string literalOf(const FieldValue& value, ColumnType type) {
    switch (value.kind()) {
    case FieldValue::Kind::Null:
        return "Null";
    case FieldValue::Kind::Integer:
    case FieldValue::Kind::Real:
        return decimalText(value.asReal());
    case FieldValue::Kind::Text:
        break;
    }
    if (type == ColumnType::DateTime) {
        return "#" + value.asDateTime().isoWithBlank() + "#";
    }
    std::string quoted = "'";
    for (const char c : value.view()) {
        quoted += c;
        if (c == '\'') {
            quoted += c;
        }
    }
    return quoted + "'";
}

std::string composeSelect(const ReportBody& body, const Recordset* above, std::size_t row) {
    return "SELECT " + fieldList(body) + " FROM " + body.from + conditions(body, above, row) +
           order(body);
}

} // namespace kintar::reports
