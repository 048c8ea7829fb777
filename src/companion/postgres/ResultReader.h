// The rows of a server's answer.
#pragma once

#include "server/Recordset.h"

#include <cstddef>
#include <libpq-fe.h>
#include <vector>

namespace kintar::companion::postgres {

/// The rows as a recordset with these columns. A value that is not what its column promises is kept
/// as the text that came.
Recordset readResult(const PGresult* result, const SharedColumns& columns);
/// The rows of so many runs, each as a recordset of its own; see `textOfManyRuns`.
std::vector<Recordset> readResultOfManyRuns(const PGresult* result, const SharedColumns& columns,
                                            std::size_t runs);

} // namespace kintar::companion::postgres
