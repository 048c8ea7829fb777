// The rows of a server's answer.
#pragma once

#include "server/Recordset.h"

#include <libpq-fe.h>

namespace kintar::companion::postgres {

/// The rows as a recordset with these columns. A value that is not what its column promises is kept
/// as the text that came.
Recordset readResult(const PGresult* result, const SharedColumns& columns);

} // namespace kintar::companion::postgres
