#include "tools/site/FaceHead.h"

#include "tools/site/FaceColours.h"

#include <QPainter>

#include <array>

namespace kintar::site {

namespace {

struct HeadShape {
    double halfWidth;
    double top;
    double chin;
    double jaw; ///< how wide the head still is near the chin, as a share of the half width
};

constexpr std::array<HeadShape, shapeKinds> shapes{{{112, 150, 432, 0.62},
                                                    {122, 156, 420, 0.80},
                                                    {104, 140, 446, 0.66},
                                                    {116, 150, 440, 0.42},
                                                    {128, 160, 424, 0.64}}};

const HeadShape& shapeOf(const Face& face) {
    return shapes.at(static_cast<std::size_t>(face.shape));
}

QPen line(const QColor& colour, double width) {
    return {colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

void paintEye(QPainter& painter, const Face& face, double x) {
    constexpr std::array<double, eyesKinds> heights{15, 12, 18};
    const double height = heights.at(static_cast<std::size_t>(face.eyes));
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(x, eyeLine), 19, height);
    painter.setBrush(eyeColour(face));
    painter.drawEllipse(QPointF(x, eyeLine + 1), 10.5, 10.5);
    painter.setBrush(QColor(25, 20, 20));
    painter.drawEllipse(QPointF(x, eyeLine + 1), 5.5, 5.5);
    painter.setBrush(Qt::white);
    painter.drawEllipse(QPointF(x + 3.5, eyeLine - 3), 2.8, 2.8);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(line(skinColour(face).darker(230), 4));
    painter.drawArc(QRectF(x - 20, eyeLine - height - 2, 40, 2 * height + 4), 20 * 16, 140 * 16);
}

void paintBrow(QPainter& painter, const Face& face, double x, double side) {
    const QColor colour =
        face.hairStyle == 0 ? skinColour(face).darker(210) : hairColour(face).darker(125);
    painter.setPen(line(colour, face.brows == 2 ? 11 : 7));
    painter.setBrush(Qt::NoBrush);
    const double y = eyeLine - 36;
    QPainterPath brow(QPointF(x - side * 20, y + (face.brows == 1 ? 0 : 4)));
    brow.quadTo(QPointF(x + side * 2, y - (face.brows == 1 ? 4 : 11)),
                QPointF(x + side * 24, y + 5));
    painter.drawPath(brow);
}

void paintNose(QPainter& painter, const Face& face) {
    const QColor shade = skinColour(face).darker(125);
    const double y = 345;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(line(shade, 6));
    QPainterPath nose;
    switch (face.nose) {
    case 0:
        nose.moveTo(faceCentreX - 3, eyeLine + 14);
        nose.quadTo(QPointF(faceCentreX + 26, y + 4), QPointF(faceCentreX - 6, y + 5));
        break;
    case 1:
        nose.moveTo(faceCentreX - 17, y - 4);
        nose.quadTo(QPointF(faceCentreX, y + 18), QPointF(faceCentreX + 17, y - 4));
        break;
    case 2:
        painter.setPen(Qt::NoPen);
        painter.setBrush(skinColour(face).darker(112));
        painter.drawEllipse(QPointF(faceCentreX, y - 4), 20, 15);
        return;
    default:
        nose.moveTo(faceCentreX + 4, eyeLine + 18);
        nose.lineTo(faceCentreX - 14, y + 2);
        nose.lineTo(faceCentreX + 8, y + 4);
        break;
    }
    painter.drawPath(nose);
}

void paintMouth(QPainter& painter, const Face& face) {
    const double y = 385;
    const QColor lip = QColor(158, 52, 58);
    painter.setPen(line(lip, 6));
    painter.setBrush(Qt::NoBrush);
    QPainterPath mouth(QPointF(faceCentreX - 36, y));
    switch (face.mouth) {
    case 0:
        mouth.quadTo(QPointF(faceCentreX, y + 32), QPointF(faceCentreX + 36, y));
        break;
    case 1:
        // An open smile with teeth.
        mouth.quadTo(QPointF(faceCentreX, y + 46), QPointF(faceCentreX + 36, y));
        mouth.closeSubpath();
        painter.setBrush(Qt::white);
        painter.setPen(line(lip, 5));
        break;
    case 2:
        mouth.lineTo(faceCentreX + 34, y);
        break;
    case 3:
        mouth.quadTo(QPointF(faceCentreX + 10, y + 22), QPointF(faceCentreX + 38, y - 10));
        break;
    default:
        painter.setPen(Qt::NoPen);
        painter.setBrush(lip.lighter(125));
        painter.drawEllipse(QPointF(faceCentreX, y + 4), 26, 10);
        painter.setPen(line(lip, 4));
        mouth = QPainterPath(QPointF(faceCentreX - 26, y + 4));
        mouth.quadTo(QPointF(faceCentreX, y + 8), QPointF(faceCentreX + 26, y + 4));
        break;
    }
    painter.drawPath(mouth);
}

void paintMarks(QPainter& painter, const Face& face) {
    painter.setPen(Qt::NoPen);
    if (face.marks == 1) {
        painter.setBrush(skinColour(face).darker(135));
        for (const double side : {-1.0, 1.0}) {
            for (int i = 0; i < 5; ++i) {
                const QPointF at(faceCentreX + side * (46 + 13 * (i % 3)),
                                 332 + 11 * (i % 2) + 4 * i);
                painter.drawEllipse(at, 3, 3);
            }
        }
    } else if (face.marks == 2) {
        painter.setBrush(QColor(235, 90, 90, 60));
        painter.drawEllipse(QPointF(faceCentreX - 62, 348), 24, 17);
        painter.drawEllipse(QPointF(faceCentreX + 62, 348), 24, 17);
    } else if (face.marks == 3) {
        painter.setBrush(QColor(60, 35, 30));
        painter.drawEllipse(QPointF(faceCentreX + 48, 366), 4.5, 4.5);
    }
}

} // namespace

double headHalfWidth(const Face& face) {
    return shapeOf(face).halfWidth;
}

QPainterPath headOutline(const Face& face) {
    const HeadShape& shape = shapeOf(face);
    const double w = shape.halfWidth;
    const double jaw = w * shape.jaw;
    QPainterPath path(QPointF(faceCentreX, shape.top));
    path.cubicTo(faceCentreX + w * 0.75, shape.top, faceCentreX + w, 210, faceCentreX + w, 285);
    path.cubicTo(faceCentreX + w, 350, faceCentreX + jaw, shape.chin, faceCentreX, shape.chin);
    path.cubicTo(faceCentreX - jaw, shape.chin, faceCentreX - w, 350, faceCentreX - w, 285);
    path.cubicTo(faceCentreX - w, 210, faceCentreX - w * 0.75, shape.top, faceCentreX, shape.top);
    return path;
}

void paintHead(QPainter& painter, const Face& face) {
    const QColor skin = skinColour(face);
    painter.setPen(Qt::NoPen);
    for (const double side : {-1.0, 1.0}) {
        const QPointF ear(faceCentreX + side * headHalfWidth(face), 302);
        painter.setBrush(skin.darker(106));
        painter.drawEllipse(ear, 20, 31);
        painter.setBrush(skin.darker(122));
        painter.drawEllipse(ear + QPointF(side * 3, 0), 9, 17);
        if (face.earrings != 0) {
            painter.setBrush(QColor(242, 196, 60));
            painter.drawEllipse(ear + QPointF(side * 4, 36), 8, 8);
        }
    }
    painter.setBrush(skin);
    painter.drawPath(headOutline(face));
}

void paintBeard(QPainter& painter, const Face& face) {
    if (face.beard == 0) {
        return;
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(face.hairStyle == 0 ? QColor(70, 50, 40) : hairColour(face).darker(108));
    QPainterPath moustache(QPointF(faceCentreX, 362));
    moustache.cubicTo(faceCentreX + 30, 350, faceCentreX + 50, 372, faceCentreX + 62, 384);
    moustache.quadTo(QPointF(faceCentreX + 24, 386), QPointF(faceCentreX, 374));
    moustache.quadTo(QPointF(faceCentreX - 24, 386), QPointF(faceCentreX - 62, 384));
    moustache.cubicTo(faceCentreX - 50, 372, faceCentreX - 30, 350, faceCentreX, 362);
    if (face.beard == 1) {
        painter.drawPath(moustache);
        return;
    }
    if (face.beard == 2) {
        painter.drawEllipse(QPointF(faceCentreX, 425), 34, 26);
        return;
    }
    QPainterPath lower;
    lower.addRect(0, 318, faceCentreX * 2, 200);
    QPainterPath cheeks;
    cheeks.addEllipse(QPointF(faceCentreX, 326), headHalfWidth(face) * 0.78, 44);
    QPainterPath mouth;
    mouth.addEllipse(QPointF(faceCentreX, 392), 44, 24);
    QPainterPath beard = headOutline(face).intersected(lower).subtracted(cheeks).subtracted(mouth);
    if (face.beard == 4) {
        QPainterPath full;
        full.addEllipse(QPointF(faceCentreX, 430), headHalfWidth(face) * 0.72, 52);
        beard = beard.united(full.subtracted(mouth));
    }
    painter.drawPath(beard.united(moustache));
}

void paintFeatures(QPainter& painter, const Face& face) {
    for (const double side : {-1.0, 1.0}) {
        const double x = faceCentreX + side * 47;
        paintEye(painter, face, x);
        paintBrow(painter, face, x, side);
    }
    paintMarks(painter, face);
    paintNose(painter, face);
    paintMouth(painter, face);
}

void paintGlasses(QPainter& painter, const Face& face) {
    if (face.glasses == 0) {
        return;
    }
    constexpr std::array<QRgb, glassesKinds> frames{0, 0xff2b2b2b, 0xff7a4a21, 0xffa5283a,
                                                    0xff1f1f1f};
    const QColor frame = QColor::fromRgb(frames.at(static_cast<std::size_t>(face.glasses)));
    painter.setPen(line(frame, face.glasses == 1 ? 5 : 8));
    painter.setBrush(face.glasses == 4 ? QColor(30, 40, 60, 190) : QColor(255, 255, 255, 50));
    for (const double side : {-1.0, 1.0}) {
        const QRectF lens(faceCentreX + side * 49 - 38, eyeLine - 31, 76, 64);
        if (face.glasses == 2) {
            painter.drawRoundedRect(lens.adjusted(0, 5, 0, -5), 12, 12);
        } else {
            painter.drawEllipse(lens);
        }
        painter.drawLine(QPointF(faceCentreX + side * 87, eyeLine - 6),
                         QPointF(faceCentreX + side * headHalfWidth(face), eyeLine - 12));
    }
    painter.drawArc(QRectF(faceCentreX - 13, eyeLine - 12, 26, 18), 0, 180 * 16);
}

} // namespace kintar::site
