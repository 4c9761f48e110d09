#pragma once

#include "Playback/AudioFile.h"

#include <cstdint>

namespace tamsy {

/// True if the file begins as Ogg (RFC 3533).
[[nodiscard]] bool isOgg(const AudioFile& file);

/// The granule position of the last page (RFC 3533), which for sound counts frames at the file's
/// own rate; 0 if none is found near the end.
[[nodiscard]] std::uint64_t lastGranulePosition(const AudioFile& file);

} // namespace tamsy
