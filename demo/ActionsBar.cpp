#include "demo/ActionsBar.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <array>
#include <utility>

namespace kintar::demo {
namespace {

/// 0x00BBGGRR.
constexpr int alarmRed = 0x0000C0;
/// The number of the who-is-in report in PrintEnded.
constexpr int whoIsInRequest = 2;

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
    connect(&search_, &ServerObject::told, this, &ActionsBar::hear);
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

void ActionsBar::hear(const QString& signal, const QVariantList& arguments) {
    if (signal != QLatin1String("PrintEnded") || arguments.size() != 2) {
        return;
    }
    const QString report = arguments.at(0).toInt() == whoIsInRequest ? tr("The list of who is in")
                                                                     : tr("The card status report");
    const QString error = arguments.at(1).toString();
    Q_EMIT said(error.isEmpty() ? tr("%1 has been sent to the printer").arg(report)
                                : tr("%1 was not printed: %2").arg(report, error));
}

void ActionsBar::printStatus() {
    search_.call(QStringLiteral("PrintStatus"));
    Q_EMIT said(tr("Asked for the card status report"));
}

} // namespace kintar::demo
