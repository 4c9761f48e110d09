#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads an Ogg file whose sound is Vorbis, Opus (RFC 7845) or FLAC. Gives its length in seconds,
/// 0 if it isn't known.
[[nodiscard]] double readOgg(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
