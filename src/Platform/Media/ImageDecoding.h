#pragma once

#include <QByteArray>
#include <QImage>

namespace tamsy {

/// Decodes a picture that came with a file: JPEG (also CMYK and progressive), PNG, GIF, WebP, BMP
/// or TIFF, recognised by its first bytes. The result is upright and at most 2048 pixels on its
/// longer side, scaled while decoding. Null for anything else, for a damaged picture and for one
/// of more than 64 million pixels. Reads nothing but `bytes`. Any thread.
[[nodiscard]] QImage decodeImage(const QByteArray& bytes);

} // namespace tamsy
