#pragma once

#include "Playback/FFmpeg/MediaBackend.h"

namespace tamsy {

/// The media player's libraries. The first call loads them, since they would add 20 MB and 55 ms to
/// the program's start. The module is in `lib/tamsy-music` below the executable's prefix. Null if
/// it or one of its libraries is missing. Any thread.
[[nodiscard]] MediaBackend* loadMediaBackend();

} // namespace tamsy
