// Decodes a photo file at the size of its box.
#pragma once

#include <QImage>
#include <QSize>

namespace kintar::platform {

/// The photo of an opened plain file, upright (EXIF orientation applied), as premultiplied ARGB, at
/// most as large as `box` with its own proportions. Null where the file is no photo that can be
/// shown: JPEG, PNG, BMP, TIFF, GIF and WebP are read, by their content. May take long and much
/// memory on hostile files; the caller limits both.
QImage decodePhoto(int descriptor, QSize box);

} // namespace kintar::platform
