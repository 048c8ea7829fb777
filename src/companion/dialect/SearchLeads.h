// Where the run of a search may begin: with the rows that it selects from, or with those of one of
// its sub-selects.
#pragma once

#include "companion/dialect/Statements.h"

#include <tuple>
#include <vector>

namespace kintar::companion::dialect {

/// Marks the tests `T.key IN (SELECT U.c FROM U WHERE p)` of a rewritten search that may be written
/// as `EXISTS (SELECT 1 FROM U WHERE U.c = T.key AND p)`, and such tests inside them: where False
/// and Null are the same, both columns are whole numbers, and an index of U finds the rows of a
/// value. An engine reads all of a list before it looks up the first value in it; so no more than
/// one of these should be a list, the one that leaves fewest rows.
void markRowTests(Select& select);

/// A table that a search may begin with, and the index of it.
struct SearchLead {
    /// Its sub-select is written as a list, every other marked one as a test of a row. Null for the
    /// table that is selected from: then none is a list.
    const InSelectTest* test = nullptr;
    const TableSource* table = nullptr;
    std::vector<const Expression*> conditions; ///< on this table alone
    std::vector<const Expression*> served;     ///< those of them that the index serves
    const Expression* range =
        nullptr; ///< the one of these that gives a range; null where none does
};

/// How a marked search is run. An order of tests changes no result; the engine asks them as they
/// are written, so the one that fewest rows pass should come first.
struct SearchPlan {
    const InSelectTest* lead = nullptr;     ///< as in `SearchLead`
    const Expression* range = nullptr;      ///< as there: no other search is for an index
    std::vector<const InSelectTest*> order; ///< of tests by row; those left out come behind
    bool operator<(const SearchPlan& other) const {
        return std::tie(lead, range, order) < std::tie(other.lead, other.range, other.order);
    }
};

/// The leads of a marked search, first those with the table that is selected from. None where there
/// is no choice.
std::vector<SearchLead> leadsOf(const Statement& statement);

/// The literal of a text pattern that a condition searches a column for, null for other conditions.
const Literal* searchedText(const Expression& condition);

} // namespace kintar::companion::dialect
