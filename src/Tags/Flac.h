#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads a native FLAC stream's metadata blocks (RFC 9639) from the signature at `offset`. Gives
/// its length in seconds, 0 if it isn't known. Its PICTURE blocks aren't listed: whoever wants a
/// cover walks them.
[[nodiscard]] double readFlac(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
