#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads an AIFF or AIFF-C file: its ID3 chunk, its NAME, AUTH and ANNO chunks. Gives its length in
/// seconds, 0 if it isn't known.
[[nodiscard]] double readAiff(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
