#include "companion/RowCriterion.h"

#include "companion/Catalog.h"
#include "companion/DatabaseError.h"
#include "companion/dialect/Dispatch.h"
#include "companion/dialect/Evaluator.h"
#include "companion/dialect/Parser.h"
#include "companion/dialect/Resolver.h"

namespace kintar::companion {

namespace {

void refuseSelects(const dialect::Expression& expression, std::string_view text) {
    if (dialect::subSelectOf(expression) != nullptr) {
        throw DatabaseError::inStatement(ErrorKind::Syntax, text, expression.position,
                                         "a criterion of a recordset holds no SELECT");
    }
    dialect::forEachPart(expression,
                         [&](const dialect::Expression& part) { refuseSelects(part, text); });
}

} // namespace

RowCriterion::RowCriterion(std::string_view criterion, const std::vector<Column>& columns)
    : text_(criterion) {
    for (const Column& column : columns) {
        table_.columns.push_back({column.name, column.type, KeyKind::None});
    }
    source_.definition = &table_;
    condition_ = dialect::parseCondition(text_);
    refuseSelects(*condition_, text_);
    const Catalog nothing({});
    dialect::Resolver(nothing, text_).resolveCondition(*condition_, source_);
    dialect::liftLiterals(text_, literals_);
}

bool RowCriterion::matches(const Recordset& rows, std::size_t row) const {
    return dialect::Evaluator(rows, row, literals_.values).condition(*condition_).value_or(false);
}

} // namespace kintar::companion
