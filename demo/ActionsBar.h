// The workstation's buttons for alarms and printed reports.
#pragma once

#include "demo/ServerObject.h"

#include <QWidget>

#include <functional>

class QPushButton;

namespace kintar::demo {

/// What the buttons speak about: where the latest event was.
struct ActionPlace {
    int loc = 1;
    QString locName;
};

class ActionsBar : public QWidget {
    Q_OBJECT

public:
    ActionsBar(const QDBusConnection& bus, std::function<ActionPlace()> place,
               QWidget* parent = nullptr);

    /// As the buttons do.
    void announceAlarm();
    void printWhoIsIn();
    void printStatus();

Q_SIGNALS:
    /// A sentence for people: what was asked for, or why it was refused.
    void said(const QString& text);

private:
    void hear(const QString& signal, const QVariantList& arguments);

    std::function<ActionPlace()> place_;
    ServerObject alarm_;
    ServerObject search_;
    int alarms_ = 0;
};

} // namespace kintar::demo
