#include "platform/qt/Controls.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QGroupBox>
#include <QLabel>
#include <QTabBar>
#include <QVariant>

#include <map>
#include <stdexcept>

namespace kintar::platform {

namespace {

constexpr const char* kindProperty = "kintarKind";

/// The names under which the toolkit puts its roles on the accessibility bus.
std::string roleName(QAccessible::Role role) {
    static const std::map<QAccessible::Role, const char*> names{
        {QAccessible::StaticText, "label"},
        {QAccessible::EditableText, "text"},
        {QAccessible::Button, "push button"},
        {QAccessible::CheckBox, "check box"},
        {QAccessible::RadioButton, "radio button"},
        {QAccessible::ComboBox, "combo box"},
        {QAccessible::SpinBox, "spin button"},
        {QAccessible::Slider, "slider"},
        {QAccessible::PageTabList, "page tab list"},
        {QAccessible::Table, "table"},
        {QAccessible::Tree, "tree"},
        {QAccessible::List, "list"},
        {QAccessible::ProgressBar, "progress bar"},
        {QAccessible::Grouping, "panel"},
        {QAccessible::Border, "frame"},
        {QAccessible::Client, "filler"},
        {QAccessible::Graphic, "image"}};
    const auto found = names.find(role);
    if (found == names.end()) {
        throw std::logic_error("a control has a role without a name: " +
                               std::to_string(static_cast<int>(role)));
    }
    return found->second;
}

/// Without the mark of the underlined letter.
std::string captionOf(QString text) {
    text.remove(u'&');
    return text.trimmed().toStdString();
}

std::string textOf(const QWidget& control) {
    if (const auto* label = qobject_cast<const QLabel*>(&control)) {
        return label->text().toStdString();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&control)) {
        return captionOf(button->text());
    }
    if (const auto* group = qobject_cast<const QGroupBox*>(&control)) {
        return captionOf(group->title());
    }
    std::string captions;
    if (const auto* tabs = qobject_cast<const QTabBar*>(&control)) {
        for (int tab = 0; tab < tabs->count(); ++tab) {
            captions += (tab == 0 ? "" : ", ") + captionOf(tabs->tabText(tab));
        }
    }
    return captions;
}

void describe(QWidget& control, const QWidget& window, ControlInfo& info) {
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&control);
    info.accessibleName = accessible->text(QAccessible::Name).trimmed().toStdString();
    info.role = roleName(accessible->role());
    info.text = textOf(control);
    info.shown = control.isVisibleTo(&window);
    info.enabled = control.isEnabledTo(&window);
}

} // namespace

void nameControl(QObject& control, const char* name, const char* kind) {
    control.setObjectName(QLatin1String(name));
    control.setProperty(kindProperty, QString::fromLatin1(kind));
}

void nameControl(QWidget& control, const char* name, const char* kind,
                 const QString& accessibleName) {
    nameControl(static_cast<QObject&>(control), name, kind);
    control.setAccessibleName(accessibleName);
    control.setAccessibleDescription(QLatin1String(name));
}

std::vector<ControlInfo> controlsOf(const QWidget& window) {
    std::vector<ControlInfo> found;
    for (QObject* child : window.findChildren<QObject*>()) {
        const QVariant kind = child->property(kindProperty);
        if (!kind.isValid()) {
            continue;
        }
        ControlInfo& info = found.emplace_back();
        info.name = child->objectName().toStdString();
        info.kind = kind.toString().toStdString();
        if (auto* control = qobject_cast<QWidget*>(child)) {
            describe(*control, window, info);
        }
    }
    return found;
}

} // namespace kintar::platform
