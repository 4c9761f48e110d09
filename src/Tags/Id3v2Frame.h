#pragma once

#include "Tags/ItemCollector.h"

#include <string>
#include <string_view>

namespace tamsy::media {

/// One frame of an ID3v2 tag: where its body stands, and what has been done to it.
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

/// Whether `name` has only the letters and digits of a frame's name.
[[nodiscard]] bool isFrameName(std::string_view name);

/// The four-letter name of a frame that version 2.2 calls by three letters; other names unchanged.
[[nodiscard]] std::string fourLetterName(std::string_view name);

/// Hands the frame's item to `items` if it is wanted. `window` stands over `source`.
void readFrame(ItemCollector& items, const Id3Frame& frame, const SharedSource& source,
               ByteWindow& window);

} // namespace tamsy::media
