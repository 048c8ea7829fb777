// How a search is run so that it has fewest rows to look at.
#pragma once

#include "companion/sqlite/StatementCache.h"

#include <vector>

namespace kintar::companion::sqlite {

/// Counts the rows of all leads side by side, until one is through, or its table is known to be so
/// small, that no other can be cheaper: the engine's own statistics know neither this search's
/// values nor the rows of now. Counting an index's entries takes a small part of the time that a
/// search spends on each. The statements must be bound. Throws DatabaseError.
dialect::SearchPlan bestPlan(sqlite3* database, std::vector<LeadRunner>& runners);

} // namespace kintar::companion::sqlite
