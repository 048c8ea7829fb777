// The feed as a table, the latest event on top.
#pragma once

#include "demo/CardEvent.h"

#include <QAbstractTableModel>

namespace kintar::demo {

class EventModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Time, Name, Location, Device, Event };
    static constexpr int columnCountOfFeed = 5;
    /// Older events leave the table.
    static constexpr int mostEvents = 500;

    using QAbstractTableModel::QAbstractTableModel;

    void add(const CardEvent& event);
    [[nodiscard]] const CardEvent& eventAt(int row) const { return events_.at(row); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                      int role) const override;

private:
    QList<CardEvent> events_;
};

} // namespace kintar::demo
