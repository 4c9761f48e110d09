#include "Formats/OggSamples.h"

#include <bit>

namespace tamsy {
namespace {

/// The `count` bits at `position`, the lowest bit of each byte first.
std::uint32_t bitsAt(ByteCursor::Bytes bytes, std::size_t position, unsigned count) {
    std::uint32_t value = 0;
    for (unsigned i = 0; i < count; ++i, ++position) {
        const auto byte = std::to_integer<std::uint32_t>(bytes[position / 8]);
        value |= (byte >> position % 8 & 1U) << i;
    }
    return value;
}

/// The position, in bits, of the framing bit at the end of a setup header; 0 if there is none.
std::size_t framingBit(ByteCursor::Bytes bytes) {
    while (!bytes.empty() && bytes.back() == std::byte{0})
        bytes = bytes.first(bytes.size() - 1);
    const auto last = bytes.empty() ? 0U : std::to_integer<unsigned>(bytes.back());
    return bytes.empty()
               ? 0
               : bytes.size() * 8 - 8 + static_cast<std::size_t>(std::bit_width(last)) - 1;
}

} // namespace

std::optional<VorbisBlockSizes> VorbisBlockSizes::parse(ByteCursor::Bytes identification,
                                                        ByteCursor::Bytes setup) {
    constexpr std::size_t sizesOffset = 28;
    if (identification.size() <= sizesOffset)
        return std::nullopt;
    VorbisBlockSizes sizes;
    const auto packed = std::to_integer<unsigned>(identification[sizesOffset]);
    sizes.sizes_ = {1U << (packed & 15U), 1U << (packed >> 4U)};
    // The modes are last. Parsing the header from its start would take much more code and time.
    constexpr std::size_t modeSize =
        1 + 16 + 16 + 8; // in bits: block flag, window, transform, mapping
    constexpr std::size_t countSize = 6;
    const std::size_t end = framingBit(setup);
    std::bitset<64> fromEnd;
    std::size_t found = 0;
    for (std::size_t modes = 1; modes <= 64 && end >= modes * modeSize + countSize; ++modes) {
        const std::size_t start = end - modes * modeSize;
        if (bitsAt(setup, start + 1, 32) != 0 || bitsAt(setup, start + 33, 8) >= 64)
            break;
        fromEnd[modes - 1] = bitsAt(setup, start, 1) != 0;
        if (bitsAt(setup, start - countSize, countSize) + 1 == modes)
            found = modes;
    }
    for (std::size_t mode = 0; mode < found; ++mode)
        sizes.isLong_[mode] = fromEnd[found - 1 - mode];
    sizes.modeBits_ = found == 0 ? 0 : static_cast<unsigned>(std::bit_width(found - 1));
    return found == 0 ? std::nullopt : std::optional(sizes);
}

std::uint32_t VorbisBlockSizes::of(std::byte first) const {
    const auto bits = std::to_integer<unsigned>(first);
    if ((bits & 1U) != 0)
        return 0;
    const unsigned mode = bits >> 1U & ((1U << modeBits_) - 1);
    return sizes_[isLong_[mode] ? 1 : 0];
}

std::uint32_t opusSamples(ByteCursor::Bytes packet) {
    if (packet.empty())
        return 0;
    const auto contents = std::to_integer<unsigned>(packet[0]);
    const unsigned configuration = contents >> 3U;
    // SILK, hybrid and CELT frames.
    const std::uint32_t frame = configuration < 12
                                    ? std::array{480U, 960U, 1920U, 2880U}[configuration % 4]
                                : configuration < 16 ? 480U << configuration % 2
                                                     : 120U << configuration % 4;
    const unsigned code = contents & 3U;
    if (code < 3)
        return frame * (code == 0 ? 1 : 2);
    return packet.size() < 2 ? 0 : frame * (std::to_integer<unsigned>(packet[1]) & 63U);
}

} // namespace tamsy
