#include "Formats/FrameHeader.h"

#include <array>

namespace tamsy::media {

namespace {

using BitrateRow = std::array<std::uint16_t, 15>; // kilobits a second by index; 0 is no fixed rate

constexpr BitrateRow layer1 = {0,   32,  64,  96,  128, 160, 192, 224,
                               256, 288, 320, 352, 384, 416, 448};
constexpr BitrateRow layer2 = {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384};
constexpr BitrateRow layer3 = {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320};
constexpr BitrateRow lowRateLayer1 = {0,   32,  48,  56,  64,  80,  96, 112,
                                      128, 144, 160, 176, 192, 224, 256};
constexpr BitrateRow lowRateLayers = {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};

constexpr std::array<std::uint32_t, 3> mpegSampleRates = {44'100, 48'000, 32'000};
constexpr std::array<std::uint32_t, 13> aacSampleRates = {96'000, 88'200, 64'000, 48'000, 44'100,
                                                          32'000, 24'000, 22'050, 16'000, 12'000,
                                                          11'025, 8'000,  7'350};

constexpr unsigned version1 = 3;
constexpr unsigned version25 = 0;

const BitrateRow& bitrates(unsigned version, unsigned layer) {
    if (version != version1)
        return layer == 1 ? lowRateLayer1 : lowRateLayers;
    return layer == 1 ? layer1 : layer == 2 ? layer2 : layer3;
}

std::optional<FrameHeader> parseMpegHeader(std::uint32_t bits) {
    const unsigned version = bits >> 19U & 3U;
    const unsigned layer = 4 - (bits >> 17U & 3U);
    const unsigned bitrateIndex = bits >> 12U & 15U;
    const unsigned rateIndex = bits >> 10U & 3U;
    if (version == 1 || bitrateIndex == 0 || bitrateIndex == 15 || rateIndex == 3)
        return std::nullopt;
    const bool isLowRate = version != version1;
    const bool isMono = (bits >> 6U & 3U) == 3;
    const std::uint32_t bitrate = bitrates(version, layer)[bitrateIndex] * 1000U;
    const std::uint32_t padding = bits >> 9U & 1U;
    FrameHeader header;
    header.sampleRate = mpegSampleRates[rateIndex] / (version == version25 ? 4 : isLowRate ? 2 : 1);
    header.samples = layer == 1 ? 384 : layer == 3 && isLowRate ? 576 : 1152;
    header.length = layer == 1 ? (12 * bitrate / header.sampleRate + padding) * 4
                               : header.samples / 8 * bitrate / header.sampleRate + padding;
    header.kind = bits & 0xFFFE0C00U;
    header.sideInformation = isLowRate ? (isMono ? 9 : 17) : (isMono ? 17 : 32);
    return header;
}

std::optional<FrameHeader> parseAdtsHeader(std::uint32_t bits, std::uint32_t rest) {
    const unsigned rateIndex = bits >> 10U & 15U;
    FrameHeader header;
    header.length = (bits & 3U) << 11U | rest >> 13U;
    if (rateIndex >= aacSampleRates.size() || header.length < frameHeaderSize)
        return std::nullopt;
    header.sampleRate = aacSampleRates[rateIndex];
    header.samples = 1024 * ((rest & 3U) + 1);
    header.kind = bits & 0xFFFEFC00U;
    return header;
}

} // namespace

std::optional<FrameHeader> parseFrameHeader(Bytes bytes) {
    ByteCursor cursor(bytes);
    const auto bits = cursor.readU32();
    const auto rest = cursor.readU24();
    if (!rest || (*bits & 0xFFE00000U) != 0xFFE00000U)
        return std::nullopt;
    if ((*bits & 0x00060000U) != 0)
        return parseMpegHeader(*bits);
    return (*bits & 0x00100000U) != 0 ? parseAdtsHeader(*bits, *rest) : std::nullopt;
}

} // namespace tamsy::media
