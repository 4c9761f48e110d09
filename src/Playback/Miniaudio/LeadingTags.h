#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>

namespace tamsy {

/// Where the ID3v2 tags (id3.org) at a file's start end, in bytes; 0 if there are none.
[[nodiscard]] std::uint64_t endOfLeadingTags(const AudioFile& file);

} // namespace tamsy
