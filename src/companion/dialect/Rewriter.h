// Statements made easier for engines, without a change of meaning.
#pragma once

#include "companion/dialect/Statements.h"

namespace kintar::companion::dialect {

/// Rewrites a resolved statement:
///
/// - `A RIGHT JOIN B` becomes `B LEFT JOIN A`, at every depth: engines materialise the former.
/// - In `T.d IN (SELECT U.c FROM U WHERE p AND U.c IN (s))` over the same column or two of whole
///   numbers, the inner test moves out: `T.d IN (SELECT U.c FROM U WHERE p) AND T.d IN (s)`. Thirty
///   levels of such nesting, as the user-field criteria make them, become a flat conjunction;
///   engines' parsers give up on the nesting.
/// - A condition inside such a sub-select that uses none of its tables moves out as well, so that
///   the sub-select need not run for each row.
/// - The tests that may be asked of one row at a time are marked (`markRowTests`).
/// - A sort column that must equal a key gives way to it where that spares sorting (SortKeys.h).
///
/// Tests move only where they stand in the conjunction of a WHERE: there, Null and False are the
/// same.
void rewrite(Statement& statement);

} // namespace kintar::companion::dialect
