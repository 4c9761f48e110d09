#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads a native FLAC stream's metadata blocks (RFC 9639) from the signature at `offset`. Returns
/// its duration in seconds, 0 if unknown. PICTURE blocks aren't listed: the cover is read
/// separately.
[[nodiscard]] double readFlac(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
