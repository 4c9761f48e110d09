#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads a Vorbis comment block (xiph.org) that fills the bytes of `source` from `begin` to `end`;
/// `window` stands over it. Values that aren't wanted are passed over unread.
void readVorbisComments(ItemCollector& items, const SharedSource& source, ByteWindow& window,
                        std::uint64_t begin, std::uint64_t end);

/// Adds the picture of a FLAC PICTURE block that stands in `source`.
void addFlacPicture(ItemCollector& items, const SharedSource& source, std::uint64_t begin,
                    std::uint64_t end);

} // namespace tamsy::media
