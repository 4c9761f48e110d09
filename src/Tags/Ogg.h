#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads an Ogg file with Vorbis, Opus (RFC 7845) or FLAC. Returns its duration in seconds, 0 if
/// unknown.
[[nodiscard]] double readOgg(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
