#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the consecutive ID3v2 tags (2.2, 2.3 and 2.4, id3.org) at `offset`, up to `end`. Returns
/// the offset after them, or `offset` if there are none. A tag whose length is wrong ends after its
/// last frame.
std::uint64_t readId3v2Tags(MediaParse& parse, std::uint64_t offset, std::uint64_t end);

} // namespace tamsy::media
