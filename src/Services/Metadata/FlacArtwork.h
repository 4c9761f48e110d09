#pragma once

#include "Formats/ByteCursor.h"
#include "Tags/PictureBudget.h"

#include <QImage>

namespace tamsy {

class FileURL;

/// The first picture that can be decoded among a FLAC file's PICTURE blocks (RFC 9639), of any
/// type; null if there is none within `budget`. The stream must start at the file's first byte. Any
/// thread.
[[nodiscard]] QImage flacEmbeddedArtwork(const FileURL& url, PictureBudget& budget);

/// The picture in a PICTURE block's body; null if it is damaged or can't be decoded.
[[nodiscard]] QImage parseFlacPictureBlock(ByteCursor::Bytes body, PictureBudget& budget);

} // namespace tamsy
