#include "Formats/OggPage.h"

#include <algorithm>

namespace tamsy {
namespace {

std::string_view asText(ByteCursor::Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// The last page that `isWanted` accepts, which also gets the number of bytes from its start on.
template <typename Predicate>
std::optional<OggPageHeader> findLast(ByteCursor::Bytes tail, Predicate isWanted) {
    std::size_t size = tail.size();
    while (size > 0) {
        const std::size_t offset = asText(tail.first(size)).rfind(OggPageHeader::signature);
        if (offset == std::string_view::npos)
            break;
        const auto page = parseOggPageHeader(tail.subspan(offset));
        if (page && isWanted(*page, tail.size() - offset))
            return page;
        size = offset + OggPageHeader::signature.size() - 1;
    }
    return std::nullopt;
}

} // namespace

std::int64_t OggPageHeader::endedPackets() const {
    return std::ranges::count_if(laces, [](std::byte lace) { return lace != std::byte{fullLace}; });
}

std::optional<OggPageHeader> parseOggPageHeader(ByteCursor::Bytes bytes) {
    ByteCursor cursor(bytes);
    const auto signature = cursor.readBytes(OggPageHeader::signature.size());
    if (!signature || asText(*signature) != OggPageHeader::signature)
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

std::optional<OggPageHeader> findLastOggPage(ByteCursor::Bytes tail) {
    return findLast(tail, [](const OggPageHeader&, std::size_t) { return true; });
}

std::optional<std::uint64_t> findLastOggGranule(ByteCursor::Bytes tail,
                                                std::optional<std::uint32_t> serial) {
    const auto page = findLast(tail, [serial](const OggPageHeader& candidate, std::size_t size) {
        return candidate.granule != OggPageHeader::noGranule && candidate.pageSize() <= size &&
               candidate.serial == serial.value_or(candidate.serial);
    });
    return page ? std::optional(page->granule) : std::nullopt;
}

} // namespace tamsy
