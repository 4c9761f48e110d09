#pragma once

#include "Playback/FFmpeg/MediaBackend.h"

namespace tamsy {

/// The media player's libraries, loaded by the first call: they cost 20 MB and 55 ms, which the
/// program's start shouldn't. The module is in `lib/tamsy-music` below the executable's prefix.
/// Null if it or one of its libraries is missing. Any thread.
[[nodiscard]] MediaBackend* loadMediaBackend();

} // namespace tamsy
