// Who may read hidden user-defined fields.
#pragma once

#include "search/Database.h"

#include <cstdint>

namespace kintar::search {

/// Whether an operator may read hidden values in a location group. A missing operator or profile
/// may not. Database errors pass; whoever catches them must answer no.
bool CanViewUDF(const Database& database, std::int32_t oprId, std::int32_t locGrp);

} // namespace kintar::search
