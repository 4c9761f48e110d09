#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the Vorbis comment block (xiph.org) in `source` from `begin` to `end`, through `window`.
/// Skips unwanted values unread.
void readVorbisComments(ItemCollector& items, const SharedSource& source, ByteWindow& window,
                        std::uint64_t begin, std::uint64_t end);

/// Adds the picture of a FLAC PICTURE block in `source`.
void addFlacPicture(ItemCollector& items, const SharedSource& source, std::uint64_t begin,
                    std::uint64_t end);

} // namespace tamsy::media
