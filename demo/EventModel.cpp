#include "demo/EventModel.h"

#include <QColor>

namespace kintar::demo {

namespace {

bool isRefusal(const CardEvent& event) {
    return !event.eventDesc.startsWith(QLatin1String("Access granted"));
}

QString textOf(const CardEvent& event, int column) {
    switch (column) {
    case EventModel::Time:
        return event.moment.time().toString(QStringLiteral("HH:mm:ss"));
    case EventModel::Name:
        return event.name();
    case EventModel::Location:
        return event.locName;
    case EventModel::Device:
        return event.device;
    default:
        return event.eventDesc;
    }
}

} // namespace

void EventModel::add(const CardEvent& event) {
    beginInsertRows({}, 0, 0);
    events_.prepend(event);
    endInsertRows();
    if (events_.size() > mostEvents) {
        const int last = static_cast<int>(events_.size()) - 1;
        beginRemoveRows({}, last, last);
        events_.removeLast();
        endRemoveRows();
    }
}

int EventModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(events_.size());
}

int EventModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCountOfFeed;
}

QVariant EventModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= events_.size()) {
        return {};
    }
    const CardEvent& event = events_.at(index.row());
    if (role == Qt::DisplayRole) {
        return textOf(event, index.column());
    }
    if (role == Qt::ToolTipRole) {
        // Escaped, since a tool tip that looks like markup would be shown as such.
        return textOf(event, index.column()).toHtmlEscaped();
    }
    if (role == Qt::ForegroundRole && index.column() == Event && isRefusal(event)) {
        return QColor(0xb0, 0x1e, 0x1e);
    }
    return {};
}

QVariant EventModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    switch (section) {
    case Time:
        return QStringLiteral("Time");
    case Name:
        return QStringLiteral("Name");
    case Location:
        return QStringLiteral("Location");
    case Device:
        return QStringLiteral("Device");
    default:
        return QStringLiteral("Event");
    }
}

} // namespace kintar::demo
