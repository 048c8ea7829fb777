#include "demo/CardEvent.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace kintar::demo {

namespace {

QString text(const QJsonObject& object, const char* name) {
    return object.value(QLatin1String(name)).toString();
}

int number(const QJsonObject& object, const char* name) {
    return object.value(QLatin1String(name)).toInt();
}

CardEvent readEvent(const QJsonObject& object) {
    CardEvent event;
    event.id = number(object, "ID");
    event.locGrp = number(object, "LocGrp");
    event.locName = text(object, "LocName");
    event.firstName = text(object, "FName");
    event.lastName = text(object, "LName");
    event.device = text(object, "Device");
    event.eventDesc = text(object, "EventDesc");
    event.code = text(object, "Code");
    return event;
}

} // namespace

std::optional<FeedContent> readFeed(const QByteArray& lines) {
    FeedContent content;
    for (const QByteArray& line : lines.split('\n')) {
        if (line.trimmed().isEmpty()) {
            continue;
        }
        const QJsonObject object = QJsonDocument::fromJson(line).object();
        const QString kind = text(object, "kind");
        if (kind == QLatin1String("event")) {
            content.events.append(readEvent(object));
        } else if (kind == QLatin1String("operator")) {
            content.operators.append({number(object, "OprID"), text(object, "rights")});
        } else if (kind == QLatin1String("point")) {
            content.points.append({number(object, "PointID"), number(object, "PointType"),
                                   text(object, "PointName"), text(object, "LocName")});
        } else {
            return std::nullopt;
        }
    }
    return content;
}

} // namespace kintar::demo
