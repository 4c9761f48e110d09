#pragma once

#include "Formats/ByteCursor.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <optional>

// The APE tag, versions 1 and 2, at the end of MP3 and AAC files: items, then a footer of 32 bytes,
// all little-endian.
namespace tamsy {

struct ApeFooter {
    static constexpr std::size_t size = 32;

    std::uint64_t itemBytes = 0; ///< size of the items, which precede the footer
    std::uint32_t items = 0;
    bool isUtf8 = false; ///< version 2; in version 1 the encoding is unknown
};

/// Parses a footer of 32 bytes; nothing if it isn't one.
[[nodiscard]] std::optional<ApeFooter> parseApeFooter(ByteCursor::Bytes bytes);

struct ApeItem {
    /// Size and flags, and a key of at most 255 bytes with its NUL.
    static constexpr std::size_t largestHeader = 8 + 256;

    QByteArray key;
    std::uint64_t headerSize = 0; ///< bytes before the value
    std::uint64_t valueSize = 0;
    bool isText = false; ///< NULs separate several texts
};

/// Parses the item header at the start of `bytes`, which may be longer; nothing if there is none.
[[nodiscard]] std::optional<ApeItem> parseApeItem(ByteCursor::Bytes bytes);

} // namespace tamsy
