// Text that came from outside, shown as what it is: plain text.
#pragma once

#include <QString>

#include <string>
#include <string_view>

class QLabel;
class QWidget;

namespace kintar::platform {

/// One line of text that can be shown: line breaks and control characters become blanks, characters
/// that turn the direction of the text around them are left out, what is no UTF-8 becomes U+FFFD,
/// and a text longer than any window is cut.
QString oneLine(std::string_view text);

/// For window titles, where `[*]` stands for a sign of change.
QString titleText(std::string_view text);
/// For buttons, tabs and menus, where `&` underlines a letter.
QString captionText(std::string_view text);
/// For tooltips, which are taken for rich text where they look like it.
QString tooltipText(std::string_view text);

/// Makes a label show whatever text it gets as plain text.
void makePlain(QLabel& label);

} // namespace kintar::platform
