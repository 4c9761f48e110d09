#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>

namespace tamsy {

/// Where the ID3v2 tags (id3.org) that begin at `position` end, in bytes from the file's start;
/// `position` if there are none.
[[nodiscard]] std::uint64_t endOfLeadingTags(const AudioFile& file, std::uint64_t position = 0);

} // namespace tamsy
