// What the print system's programs say, read.
#pragma once

#include "platform/Printers.h"

#include <string_view>

namespace kintar::platform {

/// The answer of `lpstat -d -v` in the C locale. Lines of any other kind are passed over.
PrinterList readPrinterList(std::string_view answer);

/// The first line of an error, without the name of the program that said it.
std::string firstComplaint(std::string_view standardError);

} // namespace kintar::platform
