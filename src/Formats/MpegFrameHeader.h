#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tamsy {

/// A frame header of MPEG audio (ISO/IEC 11172-3 and 13818-3, and the 2.5 extension).
struct MpegFrameHeader {
    static constexpr std::size_t size = 4;

    std::uint32_t kind = 0;       // version, layer, sample rate: equal in all frames of a stream
    std::uint32_t frameBytes = 0; // header included; 0 in free format, where it is unknown
    std::uint32_t sampleRate = 0;
    std::uint32_t pcmFrames = 0;     // samples per channel in the frame
    std::uint32_t sideInfoStart = 0; // layer III: offset in the frame, after a checksum
    std::uint32_t sideInfoBytes = 0; // layer III; 0 in the others
    bool isVersion1 = false;
};

/// Parses a header from the first four bytes; nothing if they aren't one.
[[nodiscard]] std::optional<MpegFrameHeader> parseMpegFrameHeader(std::span<const std::byte> bytes);

} // namespace tamsy
