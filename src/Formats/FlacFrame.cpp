#include "Formats/FlacFrame.h"

#include <algorithm>
#include <array>
#include <bit>

namespace tamsy {
namespace {

/// Reads a number of up to 36 bits that is coded like a character in UTF-8.
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

std::optional<std::uint32_t> readBlockSize(ByteCursor& cursor, unsigned code) {
    const auto plusOne = [](auto value) {
        return value ? std::optional(std::uint32_t{*value} + 1) : std::nullopt;
    };
    switch (code) {
    case 0:
        return std::nullopt;
    case 1:
        return 192;
    case 6:
        return plusOne(cursor.readU8());
    case 7:
        return plusOne(cursor.readU16());
    default:
        return code < 6 ? 576U << (code - 2) : 256U << (code - 8);
    }
}

std::optional<std::uint32_t> readSampleRate(ByteCursor& cursor, unsigned code) {
    constexpr std::array<std::uint32_t, 12> rates = {
        0, 88'200, 176'400, 192'000, 8'000, 16'000, 22'050, 24'000, 32'000, 44'100, 48'000, 96'000};
    const auto times = [](auto value, std::uint32_t factor) {
        return value ? std::optional(*value * factor) : std::nullopt;
    };
    switch (code) {
    case 12:
        return times(cursor.readU8(), 1000);
    case 13:
        return times(cursor.readU16(), 1);
    case 14:
        return times(cursor.readU16(), 10);
    default:
        return code < rates.size() ? std::optional(rates[code]) : std::nullopt;
    }
}

/// CRC-8 with the polynomial x⁸ + x² + x + 1.
std::uint8_t checksumOf(ByteCursor::Bytes bytes) {
    unsigned sum = 0;
    for (const std::byte byte : bytes) {
        sum ^= std::to_integer<unsigned>(byte);
        for (int bit = 0; bit < 8; ++bit)
            sum = (sum << 1U ^ ((sum & 0x80U) != 0 ? 0x07U : 0U)) & 0xFFU;
    }
    return static_cast<std::uint8_t>(sum);
}

/// CRC-16 with the polynomial x¹⁶ + x¹⁵ + x² + 1, a byte at a time.
constexpr std::array<std::uint16_t, 256> frameChecksums = [] {
    std::array<std::uint16_t, 256> table{};
    for (unsigned index = 0; index < table.size(); ++index) {
        unsigned sum = index << 8U;
        for (int bit = 0; bit < 8; ++bit)
            sum = sum << 1U ^ ((sum & 0x8000U) != 0 ? 0x8005U : 0U);
        table[index] = static_cast<std::uint16_t>(sum);
    }
    return table;
}();

} // namespace

std::optional<FlacFrameHeader> parseFlacFrameHeader(ByteCursor::Bytes bytes) {
    constexpr std::uint16_t syncAndReserved = 0xFFFE, sync = 0xFFF8;
    ByteCursor cursor(bytes);
    const auto start = cursor.readU16();
    const auto sizes = cursor.readU8();
    const auto channels = cursor.readU8();
    constexpr unsigned channelModes = 11;
    if (!channels || (*start & syncAndReserved) != sync || *channels >> 4U >= channelModes ||
        (*channels & 1U) != 0)
        return std::nullopt;
    const auto number = readCodedNumber(cursor);
    const auto blockSize = number ? readBlockSize(cursor, *sizes >> 4U) : std::nullopt;
    const auto sampleRate = blockSize ? readSampleRate(cursor, *sizes & 15U) : std::nullopt;
    if (!sampleRate)
        return std::nullopt;
    const auto checksum = checksumOf(bytes.first(cursor.position()));
    if (cursor.readU8() != checksum)
        return std::nullopt;
    const unsigned mode = *channels >> 4U; // from 8 on: stereo, in three forms
    return FlacFrameHeader{.countsSamples = (*start & 1U) != 0,
                           .number = *number,
                           .blockSize = *blockSize,
                           .sampleRate = *sampleRate,
                           .channels = mode < 8 ? mode + 1 : 2};
}

bool isWholeFlacFrame(ByteCursor::Bytes frame) {
    std::uint16_t sum = 0;
    for (const std::byte byte : frame)
        sum = static_cast<std::uint16_t>(
            (sum << 8U) ^ frameChecksums[(sum >> 8U) ^ std::to_integer<std::uint8_t>(byte)]);
    return !frame.empty() && sum == 0;
}

std::optional<std::int64_t> firstFlacSample(ByteCursor::Bytes frame, ByteCursor::Bytes streamInfo) {
    const auto header =
        parseFlacFrameHeader(frame.first(std::min(frame.size(), FlacFrameHeader::maxSize)));
    if (!header)
        return std::nullopt;
    const std::uint32_t blockSize =
        ByteCursor(streamInfo).readU16().value_or(static_cast<std::uint16_t>(header->blockSize));
    return static_cast<std::int64_t>(header->firstSample(blockSize));
}

} // namespace tamsy
