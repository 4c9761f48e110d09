#pragma once

#include "Formats/ByteCursor.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// The header of an Ogg page (RFC 3533, section 6).
struct OggPageHeader {
    static constexpr std::uint32_t signature = 0x4F676753; ///< "OggS", big-endian
    static constexpr std::size_t minSize = 27;             ///< up to the lengths of the segments
    static constexpr std::size_t maxSize = minSize + 255;
    static constexpr std::uint64_t noGranule = UINT64_MAX; ///< no packet ends on the page
    static constexpr std::uint8_t fullLace = 255; ///< the packet goes on in the next segment

    bool isContinued = false; ///< begins with the rest of a packet
    bool isFirst = false;     ///< of its stream
    bool isLast = false;
    std::uint64_t granule = noGranule; ///< position at the end of the last packet that ends here
    std::uint32_t serial = 0;
    ByteCursor::Bytes laces; ///< lengths of the segments, in the bytes that were parsed
    std::size_t bodySize = 0;

    [[nodiscard]] std::size_t size() const { return minSize + laces.size(); }
};

/// Nothing if the bytes start no page or end within its header.
[[nodiscard]] std::optional<OggPageHeader> parseOggPageHeader(ByteCursor::Bytes bytes);

} // namespace tamsy
