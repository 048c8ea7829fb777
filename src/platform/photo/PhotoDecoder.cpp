#include "platform/photo/PhotoDecoder.h"

#include <QByteArrayList>
#include <QFile>
#include <QImageReader>

namespace kintar::platform {

namespace {

bool isPhotoFormat(const QByteArray& format) {
    static const QByteArrayList known{"jpeg", "jpg", "png", "bmp", "tif", "tiff", "gif", "webp"};
    return known.contains(format.toLower());
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
    QImageReader reader;
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    reader.setDevice(&file);
    if (!reader.canRead() || !isPhotoFormat(reader.format())) {
        return {};
    }
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
