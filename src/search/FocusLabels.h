// The label of the control that has the focus, in the system's selection colours.
#pragma once

#include <QHash>
#include <QLabel>
#include <QObject>
#include <QPointer>

namespace kintar::search {

/// Watches controls; the colours come from the palette, so that they follow light and dark schemes.
class FocusLabels : public QObject {
public:
    using QObject::QObject;

    /// `label` is coloured while `control` has the focus. Several controls may share a label.
    void watch(QWidget* control, QLabel* label);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QHash<QObject*, QPointer<QLabel>> labels_;
};

} // namespace kintar::search
