#pragma once

#include "Formats/FrameHeader.h"
#include "Tags/MediaParse.h"

namespace tamsy::media {

/// The offset of the first frame of an MPEG or ADTS stream, at `offset` or within 64 KiB after it.
/// A frame counts if another one of its kind, or the end, directly follows.
[[nodiscard]] std::optional<std::uint64_t> findFirstFrame(MediaParse& parse, std::uint64_t offset);

/// The stream's duration in seconds: from the Xing, Info or VBRI header in the first frame if it
/// matches the file's size, else from all frame headers. Beyond 64 MiB or 250,000 frames it is
/// extrapolated from those. `first` is the offset of the first frame.
[[nodiscard]] double frameStreamDuration(MediaParse& parse, std::uint64_t first);

} // namespace tamsy::media
