#include "search/BoardIcons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace kintar::search {
namespace {

/// Colours that stand out from light and dark backgrounds alike.
const QColor inColour(0x2e, 0x9e, 0x44);
const QColor outColour(0x8a, 0x8f, 0x98);

void paintIn(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(inColour);
    painter.drawEllipse(QRectF(1, 1, 14, 14));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    QPainterPath tick(QPointF(4.5, 8.2));
    tick.lineTo(7, 10.8);
    tick.lineTo(11.5, 5.5);
    painter.drawPath(tick);
}

void paintOut(QPainter& painter, const QColor& colour) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, 1.8));
    painter.drawEllipse(QRectF(2, 2, 12, 12));
    painter.drawLine(QPointF(5.2, 8), QPointF(10.8, 8));
}

class BoardIconEngine final : public QIconEngine {
public:
    explicit BoardIconEngine(board::Icon icon) : icon_(icon) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        const int side = std::min(rect.width(), rect.height());
        painter->translate(rect.x() + (rect.width() - side) / 2.0,
                           rect.y() + (rect.height() - side) / 2.0);
        painter->scale(side / 16.0, side / 16.0);
        if (icon_ == board::Icon::In) {
            paintIn(*painter);
        } else {
            // A selected row is drawn in a strong colour, on which grey is lost.
            paintOut(*painter, mode == QIcon::Selected
                                   ? QGuiApplication::palette().color(QPalette::HighlightedText)
                                   : outColour);
        }
        painter->restore();
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        return picture;
    }
    [[nodiscard]] QIconEngine* clone() const override { return new BoardIconEngine(icon_); }

private:
    board::Icon icon_;
};

} // namespace

QIcon boardIcon(board::Icon icon) {
    return icon == board::Icon::None ? QIcon() : QIcon(new BoardIconEngine(icon));
}

} // namespace kintar::search
