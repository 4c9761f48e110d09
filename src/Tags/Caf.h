#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads a Core Audio Format file, whose info chunk may be anywhere. Returns its duration in
/// seconds, 0 if unknown.
[[nodiscard]] double readCaf(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
