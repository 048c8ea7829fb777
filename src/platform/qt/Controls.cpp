#include "platform/qt/Controls.h"

#include <QVariant>
#include <QWidget>

namespace kintar::platform {

namespace {

constexpr const char* kindProperty = "kintarKind";

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
    for (const QObject* child : window.findChildren<QObject*>()) {
        const QVariant kind = child->property(kindProperty);
        if (!kind.isValid()) {
            continue;
        }
        const auto* widget = qobject_cast<const QWidget*>(child);
        found.push_back({child->objectName().toStdString(), kind.toString().toStdString(),
                         widget != nullptr ? widget->accessibleName().toStdString() : ""});
    }
    return found;
}

} // namespace kintar::platform
