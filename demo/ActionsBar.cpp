#include "demo/ActionsBar.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>

#include <array>
#include <utility>

namespace kintar::demo {
namespace {

/// 0x00BBGGRR.
constexpr int alarmRed = 0x0000C0;
/// The number of the who-is-in report in PrintEnded.
constexpr int whoIsInRequest = 2;

/// Inputs can be armed, doors and outputs cannot.
bool canBeArmed(int pointType) {
    return pointType == 1 || pointType == 3;
}

} // namespace

ActionsBar::ActionsBar(const QDBusConnection& bus, std::function<ActionPlace()> place,
                       QWidget* parent)
    : QWidget(parent), place_(std::move(place)), override_(bus, QStringLiteral("objOverride")),
      alarm_(bus, QStringLiteral("objAlarmPopUp")), search_(bus, QStringLiteral("objNameSearch")) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addStretch();
    doors_ = addButton(tr("&Doors"));
    doors_->setToolTip(tr("Schedule an override of a door or an input"));
    doors_->setEnabled(false);
    points_ = new QMenu(doors_);
    doors_->setMenu(points_);
    const auto add = [this](const QString& caption, void (ActionsBar::*action)()) {
        connect(addButton(caption), &QPushButton::clicked, this, action);
    };
    add(tr("&Alarm"), &ActionsBar::announceAlarm);
    add(tr("Print &who is in"), &ActionsBar::printWhoIsIn);
    add(tr("Print card s&tatus"), &ActionsBar::printStatus);
    for (ServerObject* object : {&override_, &alarm_, &search_}) {
        connect(object, &ServerObject::refused, this, &ActionsBar::said);
    }
    connect(&search_, &ServerObject::told, this, &ActionsBar::hear);
}

QPushButton* ActionsBar::addButton(const QString& caption) {
    auto* button = new QPushButton(caption, this);
    button->setAccessibleName(QString(caption).remove(QLatin1Char('&')));
    layout()->addWidget(button);
    return button;
}

void ActionsBar::offerPoints(const QList<PointChoice>& points) {
    points_->clear();
    for (const PointChoice& point : points) {
        QString caption = point.locName + QStringLiteral(":  ") + point.name;
        caption.replace(QLatin1Char('&'), QLatin1String("&&"));
        connect(points_->addAction(caption), &QAction::triggered, this,
                [this, point] { scheduleOverride(point); });
    }
    doors_->setEnabled(!points_->isEmpty());
}

// The window is everybody's and keeps what its last client told it: every property is set each
// time, and the point last, because it opens the window.
void ActionsBar::scheduleOverride(const PointChoice& point) {
    const int operatorId = place_().operatorId;
    override_.set(QStringLiteral("PointType"), QVariant::fromValue(static_cast<short>(point.type)));
    override_.set(QStringLiteral("PointName"), point.name);
    override_.set(QStringLiteral("LocName"), point.locName);
    override_.set(QStringLiteral("OprName"), tr("Operator %1").arg(operatorId));
    override_.set(QStringLiteral("OprID"), operatorId);
    for (const char* option : {"SecureOpt", "OpenOpt", "TZOpt"}) {
        override_.set(QString::fromLatin1(option), true);
    }
    for (const char* option : {"ArmOpt", "ByPassOpt"}) {
        override_.set(QString::fromLatin1(option), canBeArmed(point.type));
    }
    override_.set(QStringLiteral("PointID"), point.id);
    Q_EMIT said(tr("Asked for the overrides of %1").arg(point.name));
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
