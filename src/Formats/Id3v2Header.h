#pragma once

#include "Formats/ByteCursor.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tamsy {

/// Takes the seven bits of each byte of a sync-safe number together.
[[nodiscard]] constexpr std::uint32_t fromSyncsafe(std::uint32_t raw) {
    return (raw & 0x7FU) | (raw & 0x7F00U) >> 1U | (raw & 0x7F0000U) >> 2U |
           (raw & 0x7F000000U) >> 3U;
}

/// The header of an ID3v2 tag (id3.org, versions 2.2 to 2.4).
struct Id3v2Header {
    static constexpr std::size_t size = 10;
    static constexpr int maxTags = 8; ///< in a row, by taggers that know nothing of each other

    unsigned version = 0; ///< the 4 of 2.4
    bool isUnsynchronised = false;
    bool hasExtendedHeader = false;
    bool hasFooter = false;
    std::uint32_t bodySize = 0; ///< bytes between header and footer

    /// Bytes of the whole tag.
    [[nodiscard]] std::uint64_t tagSize() const {
        return size + std::uint64_t{bodySize} + (hasFooter ? size : 0);
    }
};

/// Nothing if the bytes start no tag. Some programs wrote a plain size instead of a sync-safe one,
/// which counts if the tag then ends within `available` bytes.
[[nodiscard]] std::optional<Id3v2Header> parseId3v2Header(ByteCursor::Bytes bytes,
                                                          std::uint64_t available);

} // namespace tamsy
