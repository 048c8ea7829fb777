#include "platform/photo/PhotoDecoder.h"

#include <QByteArray>
#include <QFile>
#include <QImageReader>

#include <array>

namespace kintar::platform {

namespace {

/// The format that a file begins as; empty: none that a photo may have. Readers of other formats
/// never see the file.
QByteArray formatOf(QIODevice& file) {
    const QByteArray start = file.peek(12);
    struct Format {
        QByteArrayView start;
        const char* name;
    };
    constexpr std::array known{
        Format{"\xFF\xD8\xFF", "jpeg"},
        Format{"\x89PNG\r\n\x1A\n", "png"},
        Format{"BM", "bmp"},
        Format{"GIF8", "gif"},
        Format{{"II*\0", 4}, "tiff"},
        Format{{"MM\0*", 4}, "tiff"},
    };
    for (const Format& format : known) {
        if (start.startsWith(format.start)) {
            return format.name;
        }
    }
    return start.startsWith("RIFF") && start.endsWith("WEBP") ? "webp" : QByteArray();
}

/// The size to decode at, before the photo is turned upright; never larger than the file's own.
QSize decodedSize(const QImageReader& reader, QSize box) {
    const QSize own = reader.size();
    if (!own.isValid() || own.isEmpty()) {
        return {};
    }
    const bool turned = reader.transformation().testFlag(QImageIOHandler::TransformationRotate90);
    const QSize fit = own.scaled(turned ? box.transposed() : box, Qt::KeepAspectRatio);
    if (fit.width() >= own.width()) {
        return {};
    }
    return fit.expandedTo(QSize(1, 1));
}

} // namespace

QImage decodePhoto(int descriptor, QSize box) {
    QFile file;
    if (box.isEmpty() ||
        !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::DontCloseHandle)) {
        return {};
    }
    const QByteArray format = formatOf(file);
    if (format.isEmpty()) {
        return {};
    }
    QImageReader reader(&file, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = decodedSize(reader, box);
    if (size.isValid()) {
        reader.setScaledSize(size);
    }
    QImage photo = reader.read();
    if (photo.isNull()) {
        return {};
    }
    if (photo.width() > box.width() || photo.height() > box.height()) {
        // A format that does not tell its size beforehand.
        photo = photo.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return std::move(photo).convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

} // namespace kintar::platform
