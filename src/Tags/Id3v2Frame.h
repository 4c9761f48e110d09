#pragma once

#include "Tags/ItemCollector.h"

#include <string>
#include <string_view>

namespace tamsy::media {

/// A frame of an ID3v2 tag: the offset of its body and how that is encoded.
struct Id3Frame {
    std::string name;
    std::uint64_t offset = 0;
    std::uint64_t size = 0;
    bool isVersion22 = false;
    bool isUnsynchronised = false;
    bool isCompressed = false;
    bool isEncrypted = false;
    bool isGrouped = false;
    bool hasLength = false;
};

/// Whether `name` consists of the letters and digits of a frame name.
[[nodiscard]] bool isFrameName(std::string_view name);

/// The four-letter name for a three-letter name of version 2.2; other names are unchanged.
[[nodiscard]] std::string fourLetterName(std::string_view name);

/// Adds the frame's item to `items` if it is wanted. `window` is a window over `source`.
void readFrame(ItemCollector& items, const Id3Frame& frame, const SharedSource& source,
               ByteWindow& window);

} // namespace tamsy::media
