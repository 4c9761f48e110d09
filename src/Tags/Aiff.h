#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads an AIFF or AIFF-C file: its ID3, NAME, AUTH and ANNO chunks. Returns its duration in
/// seconds, 0 if unknown.
[[nodiscard]] double readAiff(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
