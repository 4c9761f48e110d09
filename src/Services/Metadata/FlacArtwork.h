#pragma once

#include "Formats/ByteCursor.h"
#include "Tags/PictureBudget.h"

#include <QImage>

namespace tamsy {

class FileURL;

/// The first picture that decodes among a FLAC file's PICTURE blocks (RFC 9639), whatever its kind;
/// null if there is none within `budget`. The signature must stand at the file's first byte. Any
/// thread.
[[nodiscard]] QImage flacEmbeddedArtwork(const FileURL& url, PictureBudget& budget);

/// The decoded picture of one PICTURE block's body; null if it is damaged or doesn't decode.
[[nodiscard]] QImage parseFlacPictureBlock(ByteCursor::Bytes body, PictureBudget& budget);

} // namespace tamsy
