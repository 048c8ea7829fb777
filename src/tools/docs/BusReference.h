// The reference of the bus, written from the class table.
#pragma once

#include "server/ClassTable.h"

#include <string>

namespace kintar::docs {

/// The whole of docs/bus.md: the contract, then every class with its members.
std::string busReference(const ClassTable& table, const std::string& version);

/// The part about one class.
std::string classReference(const PublicClass& publicClass);

} // namespace kintar::docs
