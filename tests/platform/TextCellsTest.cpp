#include "platform/qt/TextCells.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QStandardItemModel>
#include <QTreeView>

#include <gtest/gtest.h>

namespace kintar::platform {
namespace {

struct Cell {
    const char* what;
    QString text;
    QStyle::State state = QStyle::State_Enabled | QStyle::State_Active;
    Qt::LayoutDirection direction = Qt::LeftToRight;
    int width = 160;
};

QImage painted(const QStyledItemDelegate& cells, const Cell& cell) {
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), cell.text);
    QTreeView view;
    view.setModel(&model);
    QImage image(cell.width, 24, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QStyleOptionViewItem option;
    option.initFrom(&view);
    option.widget = &view;
    option.state = cell.state;
    option.direction = cell.direction;
    option.rect = image.rect();
    option.textElideMode = Qt::ElideRight;
    option.showDecorationSelected = true;
    cells.paint(&painter, option, model.index(0, 0));
    return image;
}

TEST(TextCells, AreNotToBeToldFromTheStylesOwn) {
    const QString name = QStringLiteral("O'Brien & Söhne, Ana");
    const QString rightToLeft = QString::fromUtf8("כהן, נועה");
    const QString tooLong = name.repeated(4);
    const QStyle::State plain = QStyle::State_Enabled | QStyle::State_Active;
    const QStyle::State selected = plain | QStyle::State_Selected;
    const std::vector<Cell> cells = {
        {"a name", name},
        {"nothing", QString()},
        {"a selected name", name, selected},
        {"a selected name with the focus", name, selected | QStyle::State_HasFocus},
        {"a selected name of a window behind", name,
         QStyle::State_Enabled | QStyle::State_Selected},
        {"a name that is off", name, QStyle::State_None},
        {"a name under the pointer", name, plain | QStyle::State_MouseOver},
        {"a name too long", tooLong},
        {"a name too long, selected", tooLong, selected},
        {"no room", name, plain, Qt::LeftToRight, 8},
        {"a right-to-left name", rightToLeft},
        {"a right-to-left name too long", rightToLeft.repeated(6)},
        {"a name in a right-to-left window", name, plain, Qt::RightToLeft},
        {"a right-to-left name in a right-to-left window", rightToLeft, plain, Qt::RightToLeft},
        {"a name too long in a right-to-left window", tooLong, plain, Qt::RightToLeft}};
    const QStyledItemDelegate styled;
    const TextCells own;
    for (const Cell& cell : cells) {
        EXPECT_EQ(painted(own, cell), painted(styled, cell)) << cell.what;
    }
}

TEST(TextCells, LeaveThePainterAsTheyFoundIt) {
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), QStringLiteral("Ana"));
    QImage image(80, 24, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setPen(Qt::red);
    QStyleOptionViewItem option;
    option.rect = image.rect();
    TextCells().paint(&painter, option, model.index(0, 0));
    EXPECT_EQ(painter.pen().color(), QColor(Qt::red));
    EXPECT_FALSE(painter.hasClipping());
}

} // namespace
} // namespace kintar::platform
