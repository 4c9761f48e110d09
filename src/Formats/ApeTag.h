#pragma once

#include "Formats/ByteCursor.h"

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <optional>

// The APE tag, versions 1 and 2, as it stands at the end of MP3 and AAC files: items, then a footer
// of 32 bytes, both little-endian.
namespace tamsy {

struct ApeFooter {
    static constexpr std::size_t size = 32;

    std::uint64_t itemBytes = 0; ///< of the items, which stand ahead of the footer
    std::uint32_t items = 0;
    bool isUtf8 = false; ///< version 2; the texts of version 1 name no encoding
};

/// The footer in its 32 bytes; nothing if they are none.
[[nodiscard]] std::optional<ApeFooter> readApeFooter(ByteCursor::Bytes bytes);

struct ApeItem {
    /// Two lengths, and a key of at most 255 bytes with its NUL.
    static constexpr std::size_t largestHeader = 8 + 256;

    QByteArray key;
    std::uint64_t headerSize = 0; ///< bytes until the value
    std::uint64_t valueSize = 0;
    bool isText = false; ///< NULs set several texts apart
};

/// The head of the item at the start of `bytes`, which may reach beyond it; nothing if it is none.
[[nodiscard]] std::optional<ApeItem> readApeItem(ByteCursor::Bytes bytes);

} // namespace tamsy
