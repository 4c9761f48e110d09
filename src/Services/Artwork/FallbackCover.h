#pragma once

#include <QImage>

namespace tamsy {

/// The picture shown for a track without a cover: the resource "FallbackCover", else "封面"; null
/// if there is neither. Decoded once and shared. Any thread.
[[nodiscard]] QImage fallbackCover();

} // namespace tamsy
