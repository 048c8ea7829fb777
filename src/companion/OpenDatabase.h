// A site's database, whichever engine it needs.
#pragma once

#include "companion/DatabaseConnection.h"
#include "companion/ServerLimits.h"

#include <memory>
#include <string>

namespace kintar::companion {

/// Opens what a site's settings name: a file of the embedded engine, or the connection text of a
/// database server, which is waited for so long. Throws DatabaseError.
std::unique_ptr<DatabaseConnection> openDatabase(const std::string& database, DatabaseAccess access,
                                                 const ServerLimits& limits = {});

} // namespace kintar::companion
