#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads an MPEG-4 or QuickTime file (ISO 14496-12, QuickTime File Format), wherever its movie atom
/// is. Returns its duration in seconds, 0 if unknown.
[[nodiscard]] double readMp4(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
