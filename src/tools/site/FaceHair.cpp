#include "tools/site/FaceHair.h"

#include "tools/site/FaceColours.h"
#include "tools/site/FaceHead.h"

#include <QPainter>

#include <array>
#include <cmath>
#include <numbers>

namespace kintar::site {

namespace {

enum Style {
    bald,
    shortCut,
    sideParting,
    longStraight,
    bob,
    curls,
    bun,
    mohawk,
    scarf,
    turban,
    cap,
    pigtails
};

constexpr double cx = faceCentreX;

/// The upper half of the head, a little larger than the head itself.
QPainterPath dome(const Face& face) {
    const double w = headHalfWidth(face) + 8;
    QPainterPath path(QPointF(cx - w, 300));
    path.cubicTo(cx - w - 4, 180, cx - w * 0.7, 128, cx, 126);
    path.cubicTo(cx + w * 0.7, 128, cx + w + 4, 180, cx + w, 300);
    path.closeSubpath();
    return path;
}

/// The part of that dome above a hairline that sags or rises by `bow` in the middle.
QPainterPath crown(const Face& face, double hairline, double bow) {
    const double w = headHalfWidth(face) + 8;
    QPainterPath above(QPointF(cx - w - 20, hairline + 30));
    above.quadTo(QPointF(cx, hairline + bow), QPointF(cx + w + 20, hairline + 30));
    above.lineTo(cx + w + 20, 60);
    above.lineTo(cx - w - 20, 60);
    above.closeSubpath();
    return dome(face).intersected(above);
}

void ringOfCurls(QPainter& painter, const Face& face, double radius, double from, double to) {
    const double w = headHalfWidth(face) - 4;
    constexpr int count = 13;
    for (int i = 0; i <= count; ++i) {
        const double angle = (from + (to - from) * i / count) * std::numbers::pi / 180;
        painter.drawEllipse(QPointF(cx + std::cos(angle) * w, 262 - std::sin(angle) * 112), radius,
                            radius);
    }
}

void paintCap(QPainter& painter, const Face& face) {
    const QColor colour = clothesColour(face.hairAccent);
    painter.setBrush(colour);
    painter.drawPath(crown(face, 205, -14));
    painter.setBrush(colour.darker(130));
    QPainterPath peak(QPointF(cx - 112, 226));
    peak.quadTo(QPointF(cx, 168), QPointF(cx + 112, 226));
    peak.quadTo(QPointF(cx, 196), QPointF(cx - 112, 226));
    painter.drawPath(peak);
    painter.setBrush(colour.lighter(150));
    painter.drawEllipse(QPointF(cx, 128), 9, 9);
}

void paintTurban(QPainter& painter, const Face& face) {
    const QColor colour = clothesColour(face.hairAccent);
    const double w = headHalfWidth(face) + 22;
    painter.setBrush(colour);
    QPainterPath cloth(QPointF(cx - w, 236));
    cloth.cubicTo(cx - w - 12, 110, cx - 70, 78, cx, 80);
    cloth.cubicTo(cx + 70, 78, cx + w + 12, 110, cx + w, 236);
    cloth.quadTo(QPointF(cx, 160), QPointF(cx - w, 236));
    painter.drawPath(cloth);
    painter.setPen(QPen(colour.darker(135), 5, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    for (int fold = 0; fold < 3; ++fold) {
        QPainterPath crease(QPointF(cx - w + 4, 220 - 36 * fold));
        crease.quadTo(QPointF(cx + 10, 150 - 24 * fold), QPointF(cx + w - 12, 150 - 16 * fold));
        painter.drawPath(crease);
    }
    painter.setPen(Qt::NoPen);
}

void paintScarf(QPainter& painter, const Face& face) {
    const QColor colour = clothesColour(face.hairAccent);
    QPainterPath opening;
    opening.addEllipse(QPointF(cx, 302), headHalfWidth(face) - 9, 126);
    QPainterPath cloth;
    cloth.addEllipse(QPointF(cx, 290), headHalfWidth(face) + 26, 172);
    painter.setBrush(colour);
    painter.drawPath(cloth.subtracted(opening));
    painter.setPen(QPen(colour.darker(130), 4));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(QPointF(cx, 302), headHalfWidth(face) - 7, 128);
    painter.setPen(Qt::NoPen);
}

void paintMohawk(QPainter& painter, const Face& face) {
    painter.setBrush(clothesColour(face.hairAccent).lighter(120));
    QPainterPath crest(QPointF(cx - 30, 196));
    for (int i = 0; i < 5; ++i) {
        const double x = cx - 44 + 22 * i;
        crest.lineTo(x - 4, 92 - 10 * (i == 2 ? 2 : i % 2));
        crest.lineTo(x + 12, 140);
    }
    crest.lineTo(cx + 30, 196);
    crest.closeSubpath();
    painter.drawPath(crest);
}

void paintSideParting(QPainter& painter, const Face& face) {
    painter.drawPath(crown(face, 200, 0));
    const double w = headHalfWidth(face);
    QPainterPath sweep(QPointF(cx - 46, 150));
    sweep.cubicTo(cx + 10, 222, cx + w - 30, 226, cx + w + 8, 262);
    sweep.lineTo(cx + w + 8, 190);
    sweep.lineTo(cx, 130);
    painter.drawPath(sweep.intersected(dome(face)));
}

} // namespace

void paintHairBehind(QPainter& painter, const Face& face) {
    const double w = headHalfWidth(face);
    painter.setPen(Qt::NoPen);
    painter.setBrush(hairColour(face).darker(112));
    switch (face.hairStyle) {
    case longStraight:
        painter.drawRoundedRect(QRectF(cx - w - 26, 150, 2 * w + 52, 410), 90, 90);
        break;
    case bob:
        painter.drawRoundedRect(QRectF(cx - w - 30, 146, 2 * w + 60, 276), 96, 96);
        break;
    case curls:
        painter.drawEllipse(QPointF(cx, 268), w + 34, 158);
        break;
    case bun:
        painter.drawEllipse(QPointF(cx, 108), 54, 50);
        break;
    case pigtails:
        painter.drawEllipse(QPointF(cx - w - 40, 350), 38, 92);
        painter.drawEllipse(QPointF(cx + w + 40, 350), 38, 92);
        break;
    case scarf:
        painter.setBrush(clothesColour(face.hairAccent).darker(115));
        painter.drawRoundedRect(QRectF(cx - w - 22, 200, 2 * w + 44, 330), 80, 80);
        break;
    default:
        break;
    }
}

void paintHairInFront(QPainter& painter, const Face& face) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(hairColour(face));
    switch (face.hairStyle) {
    case shortCut:
        painter.drawPath(crown(face, 205, -8));
        break;
    case sideParting:
        paintSideParting(painter, face);
        break;
    case longStraight:
        painter.drawPath(crown(face, 218, -70));
        break;
    case bob:
        painter.drawPath(crown(face, 212, 26));
        break;
    case curls:
        painter.drawPath(crown(face, 186, -6));
        ringOfCurls(painter, face, 33, -12, 192);
        break;
    case bun:
        painter.drawPath(crown(face, 206, -52));
        break;
    case pigtails:
        painter.drawPath(crown(face, 214, -60));
        painter.setBrush(clothesColour(face.hairAccent).lighter(130));
        painter.drawEllipse(QPointF(cx - headHalfWidth(face) - 26, 274), 13, 13);
        painter.drawEllipse(QPointF(cx + headHalfWidth(face) + 26, 274), 13, 13);
        break;
    case mohawk:
        paintMohawk(painter, face);
        break;
    case scarf:
        paintScarf(painter, face);
        break;
    case turban:
        paintTurban(painter, face);
        break;
    case cap:
        paintCap(painter, face);
        break;
    default:
        break;
    }
}

} // namespace kintar::site
