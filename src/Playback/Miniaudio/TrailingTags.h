#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>

namespace tamsy {

/// The offset of the tags at the end of a file: ID3v1, APE and Lyrics3v2, in any order. The file's
/// size if there are none.
[[nodiscard]] std::uint64_t startOfTrailingTags(const AudioFile& file);

} // namespace tamsy
