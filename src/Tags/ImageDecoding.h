#pragma once

#include "Tags/PictureBudget.h"

#include <QByteArray>
#include <QImage>

namespace tamsy {

/// Decodes an embedded picture: JPEG (including CMYK and progressive), PNG, GIF, WebP, BMP or TIFF,
/// recognised by its first bytes. The result is upright and at most 2048 pixels on its longer side,
/// scaled while decoding. Null for other formats, a damaged picture, or one that exceeds what is
/// left of `budget`, which all pictures of a file share. Never reads other files. Any thread.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes, PictureBudget& budget);

/// The same with a budget of its own.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes);

} // namespace tamsy
