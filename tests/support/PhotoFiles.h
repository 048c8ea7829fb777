// Photo files for tests.
#pragma once

#include "support/ScratchFolder.h"

#include <QBuffer>
#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QImageWriter>

#include <string_view>

namespace kintar::testing {

/// A picture of one colour as a file.
inline QByteArray pictureFile(QSize size, const QColor& colour, const char* format) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(colour);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, format, 90);
    return bytes;
}

inline std::string_view viewOf(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// A small JPEG file that takes half a minute to decode at any size: a progressive picture whose
/// last pass over all of it comes 2,000 times.
inline QByteArray slowJpeg() {
    QImage picture(4000, 4000, QImage::Format_Grayscale8);
    picture.fill(Qt::gray);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    writer.write(picture);
    constexpr qsizetype endMarker = 2;
    const qsizetype scan = bytes.lastIndexOf("\xFF\xDA");
    const QByteArray pass = bytes.mid(scan, bytes.size() - endMarker - scan);
    return bytes.insert(bytes.size() - endMarker, pass.repeated(2000));
}

/// A JPEG file with an EXIF orientation: 6 is "turn it a quarter to the right".
inline QByteArray turnedJpeg(QSize size, const QColor& colour, char orientation) {
    QByteArray bytes = pictureFile(size, colour, "jpeg");
    QByteArray exif =
        QByteArray::fromHex("ffe1002245786966000049492a0008000000010012010300010000000000"
                            "000000000000");
    exif[28] = orientation;
    return bytes.insert(2, exif);
}

} // namespace kintar::testing
