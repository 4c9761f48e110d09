#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tamsy {

/// What one frame header of MPEG audio says (ISO/IEC 11172-3 and 13818-3, and the 2.5 extension).
struct MpegFrameHeader {
    static constexpr std::size_t size = 4;

    std::uint32_t kind = 0;       // version, layer, sample rate: equal in a stream's frames
    std::uint32_t frameBytes = 0; // header included; 0 in the free format, which doesn't tell
    std::uint32_t sampleRate = 0;
    std::uint32_t pcmFrames = 0;     // samples a channel that the frame decodes to
    std::uint32_t sideInfoStart = 0; // layer III: bytes from the frame's start, behind a checksum
    std::uint32_t sideInfoBytes = 0; // layer III; 0 in the others
    bool isVersion1 = false;
};

/// Reads a header from the first four bytes; nothing if they aren't one.
[[nodiscard]] std::optional<MpegFrameHeader> parseMpegFrameHeader(std::span<const std::byte> bytes);

} // namespace tamsy
