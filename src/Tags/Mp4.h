#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads an MPEG-4 or QuickTime file (ISO 14496-12, QuickTime File Format), whether its movie atom
/// stands first or last. Gives its length in seconds, 0 if it isn't known.
[[nodiscard]] double readMp4(MediaParse& parse, std::uint64_t offset);

} // namespace tamsy::media
