#pragma once

#include "Playback/FFmpeg/MediaBackend.h"

namespace tamsy {

/// The libraries behind the media player, loaded by the first call: they add some 20 MB and 55 ms,
/// which a start of the program, and a listener whose files don't need them, shouldn't pay. The
/// module stands in `lib/tamsy-music` of the prefix that the executable is installed under. Nothing
/// if it or a library that it needs isn't there. Any thread.
[[nodiscard]] MediaBackend* loadMediaBackend();

} // namespace tamsy
