// Rows of a recordset as text.
#pragma once

#include "server/Recordset.h"

#include <ostream>

namespace kintar::tools {

/// Columns under their names, numbers to the right, and a last line that counts the rows. Control
/// characters show as blanks: what a database holds must not steer a terminal.
void writeAligned(const Recordset& rows, std::ostream& out);

/// A line of names and a line for each row, fields quoted where they need it; Null is empty.
void writeCsv(const Recordset& rows, std::ostream& out);

/// An array of objects: numbers, texts, true and false, null.
void writeJson(const Recordset& rows, std::ostream& out);

} // namespace kintar::tools
