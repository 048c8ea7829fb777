// What holds for every class on the bus, in words.
#pragma once

#include <string>

namespace kintar::docs {

/// The contract, examples included, down to the classes.
std::string contractText(const std::string& version);

} // namespace kintar::docs
