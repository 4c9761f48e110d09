#include "Formats/MpegFrameHeader.h"

#include "Formats/ByteCursor.h"

#include <array>

namespace tamsy {
namespace {

// In kbit/s; 0 means free format.
using Bitrates = std::array<std::uint16_t, 15>;
constexpr Bitrates version1Layer1 = {0,   32,  64,  96,  128, 160, 192, 224,
                                     256, 288, 320, 352, 384, 416, 448};
constexpr Bitrates version1Layer2 = {0,   32,  48,  56,  64,  80,  96, 112,
                                     128, 160, 192, 224, 256, 320, 384};
constexpr Bitrates version1Layer3 = {0,   32,  40,  48,  56,  64,  80, 96,
                                     112, 128, 160, 192, 224, 256, 320};
constexpr Bitrates version2Layer1 = {0,   32,  48,  56,  64,  80,  96, 112,
                                     128, 144, 160, 176, 192, 224, 256};
constexpr Bitrates version2Layer23 = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
constexpr std::array<std::uint32_t, 3> version1SampleRates = {44'100, 48'000, 32'000};

const Bitrates& bitratesOf(bool version1, unsigned layer) {
    if (!version1)
        return layer == 1 ? version2Layer1 : version2Layer23;
    if (layer == 1)
        return version1Layer1;
    return layer == 2 ? version1Layer2 : version1Layer3;
}

std::uint32_t pcmFramesOf(bool version1, unsigned layer) {
    if (layer == 1)
        return 384;
    return layer == 3 && !version1 ? 576 : 1152;
}

std::uint32_t sideInfoBytesOf(bool version1, bool mono) {
    if (version1)
        return mono ? 17 : 32;
    return mono ? 9 : 17;
}

} // namespace

std::optional<MpegFrameHeader> parseMpegFrameHeader(std::span<const std::byte> bytes) {
    const auto word = ByteCursor(bytes).readU32();
    if (!word || *word >> 21U != 0x7FFU)
        return std::nullopt;
    const unsigned version = (*word >> 19U) & 3U; // 3 is version 1, 2 is 2, 0 is 2.5
    const unsigned layer = 4 - ((*word >> 17U) & 3U);
    const unsigned bitrate = (*word >> 12U) & 15U;
    const unsigned rate = (*word >> 10U) & 3U;
    if (version == 1 || layer == 4 || bitrate == 15 || rate == 3)
        return std::nullopt;
    MpegFrameHeader header;
    header.kind = *word & 0xFFFE0C00U;
    header.isVersion1 = version == 3;
    header.pcmFrames = pcmFramesOf(header.isVersion1, layer);
    const std::uint32_t halvings = header.isVersion1 ? 0 : version == 2 ? 1 : 2;
    header.sampleRate = version1SampleRates[rate] >> halvings;
    const std::uint32_t bitsPerSecond = bitratesOf(header.isVersion1, layer)[bitrate] * 1000U;
    if (bitsPerSecond != 0) {
        const std::uint32_t slotBytes = layer == 1 ? 4 : 1;
        const std::uint32_t slots =
            header.pcmFrames / 8 / slotBytes * bitsPerSecond / header.sampleRate;
        const std::uint32_t padding = (*word >> 9U) & 1U;
        header.frameBytes = (slots + padding) * slotBytes;
    }
    if (layer == 3) {
        const bool hasChecksum = (*word & 0x10000U) == 0;
        header.sideInfoStart =
            static_cast<std::uint32_t>(MpegFrameHeader::size) + (hasChecksum ? 2U : 0U);
        header.sideInfoBytes = sideInfoBytesOf(header.isVersion1, ((*word >> 6U) & 3U) == 3);
    }
    return header;
}

} // namespace tamsy
