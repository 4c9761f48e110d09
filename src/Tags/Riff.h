#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads a WAVE file, plain or with 64-bit sizes (RF64, EBU Tech 3306): its ID3 chunk and INFO
/// list. Returns its duration in seconds, 0 if unknown.
[[nodiscard]] double readRiff(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
