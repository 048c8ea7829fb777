// The reference of the windows, written from the forms themselves.
#pragma once

#include "platform/qt/Controls.h"

#include <QWidget>

#include <string>
#include <vector>

namespace kintar::docs {

/// The part about one form, from its title and its named controls.
std::string formReference(const QWidget& form);

/// The whole of docs/windows.md: what holds for all windows, then each of the forms.
std::string windowsReference(const std::vector<const QWidget*>& forms);

} // namespace kintar::docs
