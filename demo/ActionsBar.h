// The workstation's buttons for doors, alarms and printed reports.
#pragma once

#include "demo/CardEvent.h"
#include "demo/ServerObject.h"

#include <QWidget>

#include <functional>

class QMenu;
class QPushButton;

namespace kintar::demo {

/// What the buttons speak about: where the latest event was, and who is working.
struct ActionPlace {
    int loc = 1;
    QString locName;
    int operatorId = 0;
};

class ActionsBar : public QWidget {
    Q_OBJECT

public:
    ActionsBar(const QDBusConnection& bus, std::function<ActionPlace()> place,
               QWidget* parent = nullptr);

    /// The points of the doors' menu, in place of those offered before.
    void offerPoints(const QList<PointChoice>& points);

    /// As the buttons do.
    void scheduleOverride(const PointChoice& point);
    void announceAlarm();
    void printWhoIsIn();
    void printStatus();

Q_SIGNALS:
    /// A sentence for people: what was asked for, or why it was refused.
    void said(const QString& text);

private:
    void hear(const QString& signal, const QVariantList& arguments);
    QPushButton* addButton(const QString& caption);

    std::function<ActionPlace()> place_;
    ServerObject override_;
    ServerObject alarm_;
    ServerObject search_;
    QPushButton* doors_ = nullptr;
    QMenu* points_ = nullptr;
    int alarms_ = 0;
};

} // namespace kintar::demo
