// Values of the bus as text, in both directions.
#pragma once

#include "host/BusMessage.h"

#include <string>

namespace kintar::ctl {

/// Appends a value of the basic type `type` (`i`, `n`, `b`, `s`). Throws UsageError, and appends
/// nothing, where the text is none of that type; `what` names it.
void appendText(const host::BusMessage& message, const std::string& type, const std::string& text,
                const std::string& what);

/// The next value, in a variant or not: numbers in decimal, `true` and `false`, texts as they are.
std::string readText(const host::BusMessage& message);

} // namespace kintar::ctl
