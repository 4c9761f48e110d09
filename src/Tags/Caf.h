#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads a Core Audio Format file, whose info chunk may stand anywhere. Gives its length in
/// seconds, 0 if it isn't known.
[[nodiscard]] double readCaf(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
