// Whose a line is that is no JSON as a whole.
#pragma once

#include "tools/explain/Rules.h"

#include <string_view>

namespace kintar::explain {

/// The `id` of a line that begins as a JSON object, whatever follows it; null where it is not
/// reached, or is a list or an object.
Json idOf(std::string_view line);

} // namespace kintar::explain
