// Sorting by a key instead of by a column that equals it.
#pragma once

#include "companion/dialect/Statements.h"

namespace kintar::companion::dialect {

/// In `… FROM U INNER JOIN C ON U.CardID = C.ID WHERE C.NameID = 5 ORDER BY U.CardID, U.Date` the
/// rows of C come from an index in the order of their keys, and those of U for each of them from
/// another: sorted by `C.ID, U.Date`, which is the same, they need no sorting. So where a sort
/// column must equal the whole-number key of a table, and a value is given for a column of that
/// table and for none of its own, the key takes its place.
void sortByKeys(Select& select);

} // namespace kintar::companion::dialect
