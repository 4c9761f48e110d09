#pragma once

#include "Tags/PictureBudget.h"

#include <QByteArray>
#include <QImage>

namespace tamsy {

/// Decodes a picture that came with a file: JPEG (also CMYK and progressive), PNG, GIF, WebP, BMP
/// or TIFF, recognised by its first bytes. The result is upright and at most 2048 pixels on its
/// longer side, scaled while decoding. Null for anything else, for a damaged picture and for one
/// that is more than `budget`, which all pictures of a file share, has left. Reads nothing but
/// `bytes`. Any thread.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes, PictureBudget& budget);

/// The same for a picture that is its file's only one.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes);

} // namespace tamsy
