#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>

namespace tamsy {

/// Where the tags at a file's end begin, in bytes: ID3v1, APE and Lyrics3v2, in any order. The
/// file's size if there are none.
[[nodiscard]] std::uint64_t startOfTrailingTags(const AudioFile& file);

} // namespace tamsy
