#include "demo/ActionsBar.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <array>
#include <utility>

namespace kintar::demo {
namespace {

/// 0x00BBGGRR.
constexpr int alarmRed = 0x0000C0;

} // namespace

ActionsBar::ActionsBar(const QDBusConnection& bus, std::function<ActionPlace()> place,
                       QWidget* parent)
    : QWidget(parent), place_(std::move(place)), alarm_(bus, QStringLiteral("objAlarmPopUp")),
      search_(bus, QStringLiteral("objNameSearch")) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    const auto add = [this, row](const QString& caption, void (ActionsBar::*action)()) {
        auto* button = new QPushButton(caption, this);
        button->setAccessibleName(QString(caption).remove(QLatin1Char('&')));
        connect(button, &QPushButton::clicked, this, action);
        row->addWidget(button);
    };
    add(tr("&Alarm"), &ActionsBar::announceAlarm);
    add(tr("Print &who is in"), &ActionsBar::printWhoIsIn);
    add(tr("Print card s&tatus"), &ActionsBar::printStatus);
    for (ServerObject* object : {&alarm_, &search_}) {
        connect(object, &ServerObject::refused, this, &ActionsBar::said);
    }
}

void ActionsBar::announceAlarm() {
    static const std::array<QString, 3> texts{tr("Door forced open: Loading Dock"),
                                              tr("Door held open: Main Entrance"),
                                              tr("Fire alarm: Building 2")};
    alarm_.set(QStringLiteral("WsHandle"), static_cast<int>(window()->winId()));
    alarm_.set(QStringLiteral("ForeColor"), alarmRed);
    alarm_.set(QStringLiteral("LocName"), place_().locName);
    alarm_.set(QStringLiteral("EventString"),
               texts.at(static_cast<std::size_t>(alarms_++) % texts.size()));
}

void ActionsBar::printWhoIsIn() {
    const ActionPlace place = place_();
    search_.call(QStringLiteral("PrintWhoIsIn"), {place.loc});
    Q_EMIT said(tr("Asked for the list of who is in at %1").arg(place.locName));
}

void ActionsBar::printStatus() {
    search_.call(QStringLiteral("PrintStatus"));
    Q_EMIT said(tr("Asked for the card status report"));
}

} // namespace kintar::demo
