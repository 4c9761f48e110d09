#include "Playback/FFmpeg/FlacFrameNumber.h"

#include "Formats/ByteCursor.h"

#include <bit>

namespace tamsy {
namespace {

/// A number in the way of UTF-8, of up to 36 bits.
std::optional<std::uint64_t> readCodedNumber(ByteCursor& cursor) {
    const auto first = cursor.readU8();
    if (!first)
        return std::nullopt;
    const int length = std::countl_one(*first);
    if (length == 0)
        return *first;
    if (length == 1 || length > 7)
        return std::nullopt;
    std::uint64_t number = *first & (0x7FU >> static_cast<unsigned>(length));
    for (int i = 1; i < length; ++i) {
        const auto next = cursor.readU8();
        if (!next || (*next & 0xC0U) != 0x80U)
            return std::nullopt;
        number = number << 6U | (*next & 0x3FU);
    }
    return number;
}

} // namespace

std::optional<std::int64_t> flacFrameNumber(std::span<const std::byte> frame,
                                            std::span<const std::byte> streamInfo) {
    constexpr std::uint16_t syncAndReserved = 0xFFFE, sync = 0xFFF8;
    ByteCursor cursor(frame);
    const auto start = cursor.readU16();
    if (!start || (*start & syncAndReserved) != sync || !cursor.skip(2))
        return std::nullopt;
    const auto number = readCodedNumber(cursor);
    const auto blockSize = ByteCursor(streamInfo).readU16();
    if (!number || !blockSize)
        return std::nullopt;
    // Streams of one block size count frames, others samples.
    const bool countsSamples = (*start & 1U) != 0;
    return static_cast<std::int64_t>(countsSamples ? *number : *number * *blockSize);
}

} // namespace tamsy
