#include "Formats/FrameHeader.h"

#include "Formats/MpegFrameHeader.h"

#include <array>

namespace tamsy::media {

namespace {

constexpr std::array<std::uint32_t, 13> aacSampleRates = {96'000, 88'200, 64'000, 48'000, 44'100,
                                                          32'000, 24'000, 22'050, 16'000, 12'000,
                                                          11'025, 8'000,  7'350};

std::optional<FrameHeader> fromMpeg(const std::optional<MpegFrameHeader>& mpeg) {
    if (!mpeg || mpeg->frameBytes == 0)
        return std::nullopt;
    return FrameHeader{.length = mpeg->frameBytes,
                       .samples = mpeg->pcmFrames,
                       .sampleRate = mpeg->sampleRate,
                       .kind = mpeg->kind,
                       .infoStart = mpeg->sideInfoStart + mpeg->sideInfoBytes};
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
        return fromMpeg(parseMpegFrameHeader(bytes));
    return (*bits & 0x00100000U) != 0 ? parseAdtsHeader(*bits, *rest) : std::nullopt;
}

} // namespace tamsy::media
