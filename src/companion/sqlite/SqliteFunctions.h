// The functions that translated statements call.
#pragma once

#include <sqlite3.h>

namespace kintar::companion::sqlite {

/// Registers on a connection, for statements only and never for a schema:
///
/// - `kintar_like(text, pattern)`: 1 or 0 by the dialect's LIKE
/// - `kintar_fold(text)`: the text without its letter case
/// - `kintar_sort(text)`: its place in the order of names, as bytes
/// - `kintar_decimal(value)`: the number that it is, as exact plain decimal text; Null for none
/// - `kintar_compare(a, b)`: -1, 0 or 1 as two numbers compare exactly; Null where one is none
/// - the collation `KINTAR`: the order of names
///
/// All give Null for Null. Throws DatabaseError where registering fails.
void registerFunctions(sqlite3* database);

} // namespace kintar::companion::sqlite
