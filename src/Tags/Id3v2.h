#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the ID3v2 tags (2.2, 2.3 and 2.4, id3.org) that stand at `offset`, one behind the other,
/// and gives the place behind them; `offset` itself if none is there. Nothing is read from `end`
/// on. A tag whose length lies ends where its last frame does.
std::uint64_t readId3v2Tags(MediaParse& parse, std::uint64_t offset, std::uint64_t end);

} // namespace tamsy::media
