// What a person should know about the windows and a program cannot read from them.
#pragma once

#include <string>

namespace kintar::docs {

/// What holds for all windows, examples included, down to the forms.
std::string windowsText();

/// When a form appears, what its title becomes and what closing it does; throws where nobody has
/// written it.
std::string formText(const std::string& form);

} // namespace kintar::docs
