#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>

namespace tamsy {

/// The offset of the end of the ID3v2 tags (id3.org) that start at the offset `position`;
/// `position` if there are none.
[[nodiscard]] std::uint64_t endOfLeadingTags(const AudioFile& file, std::uint64_t position = 0);

} // namespace tamsy
