#pragma once

#include "Formats/ByteCursor.h"

#include <cstdint>
#include <optional>
#include <string_view>

namespace tamsy {

/// The header of an Ogg page (RFC 3533, section 6).
struct OggPageHeader {
    static constexpr std::string_view signature{"OggS\0", 5}; ///< with the version
    static constexpr std::size_t minSize = 27;                ///< up to the lengths of the segments
    static constexpr std::size_t maxSize = minSize + 255;
    static constexpr std::size_t maxPageSize = maxSize + std::size_t{255} * 255;
    static constexpr std::uint64_t noGranule = UINT64_MAX; ///< no packet ends on the page
    static constexpr std::uint8_t fullLace = 255; ///< the packet continues in the next segment

    bool isContinued = false; ///< starts with the rest of a packet
    bool isFirst = false;     ///< of its stream
    bool isLast = false;
    std::uint64_t granule = noGranule; ///< position at the end of the last packet that ends here
    std::uint32_t serial = 0;
    ByteCursor::Bytes laces; ///< lengths of the segments, in the bytes that were parsed
    std::size_t bodySize = 0;

    [[nodiscard]] std::size_t size() const { return minSize + laces.size(); }
    [[nodiscard]] std::size_t pageSize() const { return size() + bodySize; }

    /// The number of packets that end on the page.
    [[nodiscard]] std::int64_t endedPackets() const;
};

/// Parses the header at the start of `bytes`; nothing if there is none or it is incomplete.
[[nodiscard]] std::optional<OggPageHeader> parseOggPageHeader(ByteCursor::Bytes bytes);

/// The last page in `tail`, the end of a file. It may be incomplete.
[[nodiscard]] std::optional<OggPageHeader> findLastOggPage(ByteCursor::Bytes tail);

/// The position at the end of the last complete page in `tail` that has one: of the stream
/// `serial`, or of any stream.
[[nodiscard]] std::optional<std::uint64_t>
findLastOggGranule(ByteCursor::Bytes tail, std::optional<std::uint32_t> serial = std::nullopt);

} // namespace tamsy
