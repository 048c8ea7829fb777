#include "tools/docs/WindowsReference.h"

#include "tools/docs/WindowsContract.h"

namespace kintar::docs {

namespace {

std::string cell(const std::string& text) {
    std::string escaped;
    for (const char letter : text) {
        escaped += letter == '|' ? "\\|" : std::string(1, letter);
    }
    return escaped.empty() ? "" : escaped + " ";
}

std::string atStart(const platform::ControlInfo& control) {
    if (control.role.empty()) {
        return "";
    }
    return std::string(control.shown ? "shown" : "hidden") + (control.enabled ? "" : ", disabled");
}

std::string row(const platform::ControlInfo& control) {
    return "| `" + control.name + "` | " + control.kind + " | " + cell(control.role) + "| " +
           cell(control.accessibleName) + "| " + cell(control.text) + "| " +
           cell(atStart(control)) + "|\n";
}

} // namespace

std::string formReference(const QWidget& form) {
    std::string text = "## " + form.objectName().toStdString() + "\n\n";
    if (!form.windowTitle().isEmpty()) {
        text += "Title at the start: " + form.windowTitle().toStdString() + "\n\n";
    }
    text += formText(form.objectName().toStdString());
    text += "\n| control | kind | role | accessible name | text | at the start |\n"
            "|---|---|---|---|---|---|\n";
    for (const platform::ControlInfo& control : platform::controlsOf(form)) {
        text += row(control);
    }
    return text;
}

std::string windowsReference(const std::vector<const QWidget*>& forms) {
    std::string text = windowsText();
    for (std::size_t i = 0; i < forms.size(); ++i) {
        text += (i == 0 ? "" : "\n") + formReference(*forms[i]);
    }
    return text;
}

} // namespace kintar::docs
