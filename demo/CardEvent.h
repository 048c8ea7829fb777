// A card event as the workstation plays it.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace kintar::demo {

struct CardEvent {
    int id = 0;
    int locGrp = 0;
    QString locName;
    QString firstName;
    QString lastName;
    QString device;
    QString eventDesc;
    QString code;
    QDateTime moment; ///< when it is played, local time

    /// "LName, FName".
    [[nodiscard]] QString name() const { return lastName + QStringLiteral(", ") + firstName; }
};

struct OperatorChoice {
    int id = 0;
    QString rights;
};

/// A door, output or input, or a group of them.
struct PointChoice {
    int id = 0;
    int type = 0; ///< 0 door or output, 1 input, 2 and 3 groups of them
    QString name;
    QString locName;
};

/// What `kintar-site feed` prints.
struct FeedContent {
    QList<OperatorChoice> operators;
    QList<PointChoice> points;
    QList<CardEvent> events;
};

/// Reads the lines of a feed. Nothing where a line is not as it should be.
std::optional<FeedContent> readFeed(const QByteArray& lines);

} // namespace kintar::demo
