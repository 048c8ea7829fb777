#include "tools/site/FacePainter.h"

#include "tools/site/FaceColours.h"
#include "tools/site/FaceGround.h"
#include "tools/site/FaceHair.h"
#include "tools/site/FaceHead.h"
#include "tools/site/SegmentDigits.h"

#include <QPainter>
#include <QPainterPath>

namespace kintar::site {

namespace {

enum Clothes { roundNeck, collar, suit, striped, hoodie, overall };

QPainterPath shoulders() {
    QPainterPath path(QPointF(-10, faceHeight + 10));
    path.lineTo(-10, 590);
    path.cubicTo(20, 510, 130, 500, 180, 470);
    path.lineTo(300, 470);
    path.cubicTo(350, 500, 460, 510, 490, 590);
    path.lineTo(490, faceHeight + 10);
    path.closeSubpath();
    return path;
}

void paintNeck(QPainter& painter, const Face& face) {
    painter.setBrush(skinColour(face).darker(112));
    painter.drawRoundedRect(QRectF(faceCentreX - 46, 390, 92, 122), 36, 36);
}

void paintStripes(QPainter& painter, const QColor& colour) {
    painter.save();
    painter.setClipPath(shoulders());
    painter.setBrush(colour.lighter(165));
    for (int y = 490; y < faceHeight; y += 44) {
        painter.drawRect(0, y, faceWidth, 18);
    }
    painter.restore();
}

void paintCollar(QPainter& painter, const QColor& colour) {
    painter.setBrush(colour);
    for (const double side : {-1.0, 1.0}) {
        QPolygonF half;
        half << QPointF(faceCentreX + side * 56, 466) << QPointF(faceCentreX + side * 84, 496)
             << QPointF(faceCentreX + side * 34, 548) << QPointF(faceCentreX, 508);
        painter.drawPolygon(half);
    }
}

void paintSuit(QPainter& painter, const Face& face, const QColor& colour) {
    painter.setBrush(Qt::white);
    QPolygonF shirt;
    shirt << QPointF(faceCentreX - 58, 472) << QPointF(faceCentreX + 58, 472)
          << QPointF(faceCentreX, faceHeight + 40);
    painter.drawPolygon(shirt);
    painter.setBrush(clothesColour((face.clothesColour + 5) % clothesColourKinds));
    QPolygonF tie;
    tie << QPointF(faceCentreX - 13, 508) << QPointF(faceCentreX + 13, 508)
        << QPointF(faceCentreX + 20, faceHeight) << QPointF(faceCentreX - 20, faceHeight);
    painter.drawPolygon(tie);
    paintCollar(painter, QColor(245, 245, 248));
    painter.setPen(QPen(colour.darker(140), 5));
    painter.drawLine(QPointF(faceCentreX - 62, 476), QPointF(faceCentreX - 6, faceHeight));
    painter.drawLine(QPointF(faceCentreX + 62, 476), QPointF(faceCentreX + 6, faceHeight));
    painter.setPen(Qt::NoPen);
}

void paintNeckline(QPainter& painter, const Face& face, const QColor& colour) {
    painter.setBrush(colour.darker(125));
    painter.drawEllipse(QPointF(faceCentreX, 474), 74, 36);
    painter.setBrush(skinColour(face).darker(112));
    painter.drawEllipse(QPointF(faceCentreX, 468), 60, 28);
}

void paintClothes(QPainter& painter, const Face& face) {
    const QColor colour = clothesColour(face.clothesColour);
    painter.setPen(Qt::NoPen);
    painter.setBrush(face.clothes == overall ? colour.lighter(160) : colour);
    painter.drawPath(shoulders());
    switch (face.clothes) {
    case collar:
        paintCollar(painter, colour.lighter(140));
        break;
    case suit:
        paintSuit(painter, face, colour);
        break;
    case striped:
        paintStripes(painter, colour);
        paintNeckline(painter, face, colour);
        break;
    case hoodie:
        painter.setBrush(colour.darker(118));
        painter.drawEllipse(QPointF(faceCentreX, 486), 118, 52);
        paintNeckline(painter, face, colour);
        break;
    case overall:
        paintNeckline(painter, face, colour.lighter(150));
        painter.setBrush(colour);
        painter.drawRect(QRectF(120, 560, 240, 100));
        painter.drawRect(QRectF(124, 492, 34, 80));
        painter.drawRect(QRectF(322, 492, 34, 80));
        break;
    default:
        paintNeckline(painter, face, colour);
        break;
    }
}

void paintBadge(QPainter& painter, int id) {
    // Above the lowest part, which a display may cover with the name.
    const QRectF badge(322, 470, 150, 72);
    painter.setPen(QPen(QColor(60, 66, 78), 3));
    painter.setBrush(QColor(252, 252, 250));
    painter.drawRoundedRect(badge, 8, 8);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(52, 110, 160));
    painter.drawRoundedRect(badge.adjusted(8, 8, -8, -54), 3, 3);
    const qreal height = id < 100000 ? 32 : 18;
    const QPointF centre(badge.center().x(), badge.center().y() + 10);
    drawNumber(painter, QRectF(badge.left(), centre.y() - height / 2, badge.width(), height), id,
               QColor(30, 34, 44));
}

} // namespace

QImage paintFace(const Face& face, int id) {
    QImage image(faceWidth, faceHeight, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintGround(painter, face);
    paintHairBehind(painter, face);
    painter.setPen(Qt::NoPen);
    paintNeck(painter, face);
    paintClothes(painter, face);
    painter.setPen(Qt::NoPen);
    paintNeck(painter, face);
    paintHead(painter, face);
    paintBeard(painter, face);
    paintFeatures(painter, face);
    paintHairInFront(painter, face);
    paintGlasses(painter, face);
    painter.setPen(Qt::NoPen);
    paintBadge(painter, id);
    return image;
}

} // namespace kintar::site
