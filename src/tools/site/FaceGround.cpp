#include "tools/site/FaceGround.h"

#include "tools/site/FaceColours.h"
#include "tools/site/FacePainter.h"

#include <QPainter>
#include <QPainterPath>

#include <array>
#include <cmath>
#include <numbers>

namespace kintar::site {

namespace {

void stripes(QPainter& painter) {
    for (int x = -faceHeight; x < faceWidth; x += 96) {
        QPolygonF band;
        band << QPointF(x, faceHeight) << QPointF(x + 44, faceHeight)
             << QPointF(x + 44 + faceHeight, 0) << QPointF(x + faceHeight, 0);
        painter.drawPolygon(band);
    }
}

void dots(QPainter& painter) {
    for (int row = 0; row * 56 < faceHeight + 56; ++row) {
        for (int x = (row % 2) * 32; x < faceWidth + 32; x += 64) {
            painter.drawEllipse(QPointF(x, row * 56), 13, 13);
        }
    }
}

void squares(QPainter& painter) {
    for (int row = 0; row * 64 < faceHeight; ++row) {
        for (int x = (row % 2) * 64; x < faceWidth; x += 128) {
            painter.drawRect(x, row * 64, 64, 64);
        }
    }
}

void rays(QPainter& painter) {
    const QPointF centre(faceWidth / 2.0, 300);
    for (int i = 0; i < 12; ++i) {
        const double from = i * std::numbers::pi / 6;
        const double to = from + std::numbers::pi / 12;
        QPolygonF ray;
        ray << centre << centre + QPointF(std::cos(from), std::sin(from)) * 900
            << centre + QPointF(std::cos(to), std::sin(to)) * 900;
        painter.drawPolygon(ray);
    }
}

void hills(QPainter& painter) {
    for (int x = -60; x < faceWidth + 120; x += 150) {
        painter.drawEllipse(QPointF(x, 470), 150, 170);
    }
    painter.drawEllipse(QPointF(400, 90), 46, 46);
}

void rings(QPainter& painter) {
    const QBrush fill = painter.brush();
    painter.setPen(QPen(fill.color(), 22));
    painter.setBrush(Qt::NoBrush);
    for (int radius = 60; radius < 560; radius += 62) {
        painter.drawEllipse(QPointF(faceWidth / 2.0, 290), radius, radius);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
}

void waves(QPainter& painter) {
    const QBrush fill = painter.brush();
    painter.setPen(QPen(fill.color(), 16, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    for (int y = 30; y < faceHeight; y += 60) {
        QPainterPath wave(QPointF(-20, y));
        for (int x = -20; x < faceWidth; x += 80) {
            wave.quadTo(x + 20, y - 30, x + 40, y);
            wave.quadTo(x + 60, y + 30, x + 80, y);
        }
        painter.drawPath(wave);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
}

} // namespace

void paintGround(QPainter& painter, const Face& face) {
    const QColor ground = groundColour(face);
    painter.fillRect(0, 0, faceWidth, faceHeight, ground);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ground.lighter(112));
    // Pattern 0 is the plain wall.
    constexpr std::array<void (*)(QPainter&), patternKinds - 1> patterns{
        stripes, dots, squares, rays, hills, rings, waves};
    if (face.pattern > 0) {
        patterns.at(static_cast<std::size_t>(face.pattern) - 1)(painter);
    }
}

} // namespace kintar::site
