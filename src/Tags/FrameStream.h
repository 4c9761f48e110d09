#pragma once

#include "Formats/FrameHeader.h"
#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Where a stream of MPEG or ADTS frames begins: at `offset` or within the 64 KiB behind it. A
/// frame counts when a second one of its kind, or the end, stands right behind it.
[[nodiscard]] std::optional<std::uint64_t> findFirstFrame(MediaParse& parse, std::uint64_t offset);

/// The stream's length in seconds: by the encoder's note in the first frame (Xing, Info, VBRI) if
/// the file bears it out, else by walking the headers of all frames. Beyond 64 MiB or 250,000
/// frames it is an estimate from those. `first` is the place of the first frame.
[[nodiscard]] double frameStreamDuration(MediaParse& parse, std::uint64_t first);

} // namespace tamsy::media
