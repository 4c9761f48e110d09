#include "Formats/Id3v2Header.h"

namespace tamsy {

std::optional<Id3v2Header> parseId3v2Header(ByteCursor::Bytes bytes, std::uint64_t available) {
    constexpr std::uint32_t signature = 0x494433; // "ID3"
    constexpr std::uint32_t highBits = 0x80808080;
    ByteCursor cursor(bytes);
    if (cursor.readU24() != signature)
        return std::nullopt;
    const unsigned version = cursor.readU8().value_or(0xFF);
    const unsigned revision = cursor.readU8().value_or(0xFF);
    const unsigned flags = cursor.readU8().value_or(0);
    const auto size = cursor.readU32();
    if (version == 0xFF || revision == 0xFF || !size)
        return std::nullopt;
    const bool isPlain = (*size & highBits) != 0;
    const Id3v2Header header{.version = version,
                             .isUnsynchronised = (flags & 0x80U) != 0,
                             .hasExtendedHeader = version > 2 && (flags & 0x40U) != 0,
                             .hasFooter = version == 4 && (flags & 0x10U) != 0,
                             .bodySize = isPlain ? *size : fromSyncsafe(*size)};
    return isPlain && header.tagSize() > available ? std::nullopt : std::optional(header);
}

} // namespace tamsy
