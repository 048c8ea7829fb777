#include "companion/dialect/Statements.h"

#include <array>

namespace kintar::companion::dialect {

namespace {

template <class List>
void printList(const List& list, std::string& out) {
    bool first = true;
    for (const auto& item : list) {
        out += first ? "" : ", ";
        first = false;
        if constexpr (requires { item->print(out); }) {
            item->print(out);
        } else {
            item.print(out);
        }
    }
}

void printClause(std::string_view keyword, const ExpressionPtr& condition, std::string& out) {
    if (condition) {
        out += keyword;
        condition->print(out);
    }
}

} // namespace

std::string bracketed(const std::string& name) {
    return '[' + name + ']';
}

void TableSource::print(std::string& out) const {
    out += bracketed(table);
    out += alias.empty() ? "" : " AS " + bracketed(alias);
}

void FromItem::print(std::string& out) const {
    if (const auto* table = std::get_if<std::unique_ptr<TableSource>>(&item)) {
        (*table)->print(out);
        return;
    }
    out += '(';
    std::get<std::unique_ptr<Join>>(item)->print(out);
    out += ')';
}

void Join::print(std::string& out) const {
    constexpr std::array<std::string_view, 3> words{" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN "};
    left.print(out);
    out += words.at(static_cast<std::size_t>(kind));
    right.print(out);
    out += " ON ";
    condition->print(out);
}

void SelectItem::print(std::string& out) const {
    if (!expression) {
        out += starQualifier.empty() ? "*" : bracketed(starQualifier) + ".*";
        return;
    }
    expression->print(out);
    out += alias.empty() ? "" : " AS " + bracketed(alias);
}

void OrderTerm::print(std::string& out) const {
    expression->print(out);
    out += descending ? " DESC" : "";
}

void Select::print(std::string& out) const {
    constexpr std::array<std::string_view, 3> words{"SELECT ", "SELECT DISTINCT ",
                                                    "SELECT DISTINCTROW "};
    out += words.at(static_cast<std::size_t>(quantifier));
    printList(items, out);
    if (!from.empty()) {
        out += " FROM ";
        printList(from, out);
    }
    printClause(" WHERE ", where, out);
    if (!groupBy.empty()) {
        out += " GROUP BY ";
        printList(groupBy, out);
    }
    printClause(" HAVING ", having, out);
    if (!orderBy.empty()) {
        out += " ORDER BY ";
        printList(orderBy, out);
    }
}

void Insert::print(std::string& out) const {
    out += "INSERT INTO ";
    table->print(out);
    out += " (";
    printList(columns, out);
    out += ") VALUES (";
    printList(values, out);
    out += ')';
}

void Update::print(std::string& out) const {
    out += "UPDATE ";
    table->print(out);
    out += " SET ";
    bool first = true;
    for (const Assignment& assignment : assignments) {
        out += first ? "" : ", ";
        first = false;
        assignment.column->print(out);
        out += " = ";
        assignment.value->print(out);
    }
    printClause(" WHERE ", where, out);
}

void Delete::print(std::string& out) const {
    out += "DELETE FROM ";
    table->print(out);
    printClause(" WHERE ", where, out);
}

std::string Statement::print() const {
    std::string out;
    std::visit(
        [&](const auto& statement) {
            if constexpr (requires { statement->print(out); }) {
                statement->print(out);
            } else {
                statement.print(out);
            }
        },
        body);
    return out;
}

} // namespace kintar::companion::dialect
