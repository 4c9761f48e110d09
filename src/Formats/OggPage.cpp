#include "Formats/OggPage.h"

namespace tamsy {

std::optional<OggPageHeader> parseOggPageHeader(ByteCursor::Bytes bytes) {
    ByteCursor cursor(bytes);
    constexpr std::uint8_t version = 0;
    if (cursor.readU32() != OggPageHeader::signature || cursor.readU8() != version)
        return std::nullopt;
    OggPageHeader header;
    const unsigned flags = cursor.readU8().value_or(0);
    header.isContinued = (flags & 1U) != 0;
    header.isFirst = (flags & 2U) != 0;
    header.isLast = (flags & 4U) != 0;
    header.granule = cursor.readU64LE().value_or(OggPageHeader::noGranule);
    header.serial = cursor.readU32LE().value_or(0);
    constexpr std::uint64_t numberAndChecksum = 8;
    const auto segments = cursor.skip(numberAndChecksum) ? cursor.readU8() : std::nullopt;
    const auto laces = segments ? cursor.readBytes(*segments) : std::nullopt;
    if (!laces)
        return std::nullopt;
    header.laces = *laces;
    for (const std::byte lace : *laces)
        header.bodySize += std::to_integer<std::size_t>(lace);
    return header;
}

} // namespace tamsy
