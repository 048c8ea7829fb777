// The SELECT that gets a report's rows.
#pragma once

#include "reports/engine/ReportDefinition.h"
#include "server/Recordset.h"

#include <string>

namespace kintar::reports {

/// The statement of a body's rows in their order: groups first, then sort fields. A sub-report's
/// links compare with row `row` of `above`; without links `above` may be null.
std::string composeSelect(const ReportBody& body, const Recordset* above = nullptr,
                          std::size_t row = 0);

/// A value as a literal of the statement language.
std::string literalOf(const FieldValue& value, ColumnType type);

} // namespace kintar::reports
