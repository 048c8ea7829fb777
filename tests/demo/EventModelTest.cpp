#include "demo/EventModel.h"

#include <QColor>
#include <gtest/gtest.h>

namespace kintar::demo {
namespace {

CardEvent eventOf(int id) {
    CardEvent event;
    event.id = id;
    event.lastName = QStringLiteral("<b>Last</b>");
    event.firstName = QStringLiteral("First");
    event.locName = QStringLiteral("Office");
    event.device = QStringLiteral("Gate");
    event.eventDesc = QStringLiteral("Access granted");
    event.moment = QDateTime(QDate(2026, 3, 14), QTime(17, 5, 9));
    return event;
}

QString text(const EventModel& model, int row, int column) {
    return model.data(model.index(row, column), Qt::DisplayRole).toString();
}

TEST(EventModel, ShowsTheLatestEventOnTop) {
    EventModel model;
    model.add(eventOf(1));
    model.add(eventOf(2));
    ASSERT_EQ(model.rowCount(), 2);
    EXPECT_EQ(model.eventAt(0).id, 2);
    EXPECT_EQ(model.eventAt(1).id, 1);
}

TEST(EventModel, ShowsTimeNameLocationDeviceAndEvent) {
    EventModel model;
    model.add(eventOf(1));
    EXPECT_EQ(text(model, 0, EventModel::Time), QStringLiteral("17:05:09"));
    EXPECT_EQ(text(model, 0, EventModel::Name), QStringLiteral("<b>Last</b>, First"));
    EXPECT_EQ(text(model, 0, EventModel::Location), QStringLiteral("Office"));
    EXPECT_EQ(text(model, 0, EventModel::Device), QStringLiteral("Gate"));
    EXPECT_EQ(text(model, 0, EventModel::Event), QStringLiteral("Access granted"));
    for (int column = 0; column < model.columnCount(); ++column) {
        EXPECT_FALSE(
            model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().isEmpty());
    }
}

TEST(EventModel, NeverShowsANameAsMarkup) {
    EventModel model;
    model.add(eventOf(1));
    EXPECT_EQ(model.data(model.index(0, EventModel::Name), Qt::ToolTipRole).toString(),
              QStringLiteral("&lt;b&gt;Last&lt;/b&gt;, First"));
}

TEST(EventModel, ColoursARefusal) {
    EventModel model;
    CardEvent refused = eventOf(1);
    refused.eventDesc = QStringLiteral("Access denied: card expired");
    model.add(refused);
    EXPECT_TRUE(model.data(model.index(0, EventModel::Event), Qt::ForegroundRole).isValid());
    model.add(eventOf(2));
    EXPECT_FALSE(model.data(model.index(0, EventModel::Event), Qt::ForegroundRole).isValid());
}

TEST(EventModel, ForgetsTheOldestEvents) {
    EventModel model;
    for (int id = 1; id <= EventModel::mostEvents + 5; ++id) {
        model.add(eventOf(id));
    }
    EXPECT_EQ(model.rowCount(), EventModel::mostEvents);
    EXPECT_EQ(model.eventAt(model.rowCount() - 1).id, 6);
}

} // namespace
} // namespace kintar::demo
