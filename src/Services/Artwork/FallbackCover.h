#pragma once

#include <QImage>

namespace tamsy {

/// The picture that stands for a cover where there is none: the program's picture "FallbackCover",
/// else its picture "封面". Null if it has neither. Decoded once and shared; any thread.
[[nodiscard]] QImage fallbackCover();

} // namespace tamsy
