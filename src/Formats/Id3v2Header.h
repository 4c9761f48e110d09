#pragma once

#include "Formats/ByteCursor.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace tamsy {

/// Converts a sync-safe number, which has seven bits per byte.
[[nodiscard]] constexpr std::uint32_t fromSyncsafe(std::uint32_t raw) {
    return (raw & 0x7FU) | (raw & 0x7F00U) >> 1U | (raw & 0x7F0000U) >> 2U |
           (raw & 0x7F000000U) >> 3U;
}

/// The header of an ID3v2 tag (id3.org, versions 2.2 to 2.4).
struct Id3v2Header {
    static constexpr std::size_t size = 10;
    static constexpr int maxTags = 8; ///< consecutive ones, by programs that ignore each other's

    unsigned version = 0; ///< 4 for 2.4
    bool isUnsynchronised = false;
    bool hasExtendedHeader = false;
    bool hasFooter = false;
    std::uint32_t bodySize = 0; ///< bytes between header and footer

    /// The size of the whole tag in bytes.
    [[nodiscard]] std::uint64_t tagSize() const {
        return size + std::uint64_t{bodySize} + (hasFooter ? size : 0);
    }
};

/// Parses the header at the start of `bytes`; nothing if there is none. Some programs wrote a plain
/// size instead of a sync-safe one; that is accepted if the tag then ends within `available` bytes.
[[nodiscard]] std::optional<Id3v2Header> parseId3v2Header(ByteCursor::Bytes bytes,
                                                          std::uint64_t available);

} // namespace tamsy
