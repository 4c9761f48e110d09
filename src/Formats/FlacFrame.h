#pragma once

#include "Formats/ByteCursor.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// The header of a FLAC frame (RFC 9639, section 9.1).
struct FlacFrameHeader {
    static constexpr std::size_t maxSize = 16;

    bool countsSamples = false; ///< otherwise `number` counts frames
    std::uint64_t number = 0;
    std::uint32_t blockSize = 0;  ///< samples in the frame
    std::uint32_t sampleRate = 0; ///< 0 if only STREAMINFO has it
    unsigned channels = 0;

    /// The number of the first sample. `streamBlockSize` is STREAMINFO's first field.
    [[nodiscard]] std::uint64_t firstSample(std::uint32_t streamBlockSize) const {
        return countsSamples ? number : number * streamBlockSize;
    }
};

/// Parses the header at the start of `bytes`; nothing if there is none or its checksum is wrong.
[[nodiscard]] std::optional<FlacFrameHeader> parseFlacFrameHeader(ByteCursor::Bytes bytes);

/// Whether `frame` is exactly one complete frame, by its checksum.
[[nodiscard]] bool isWholeFlacFrame(ByteCursor::Bytes frame);

/// The number of a frame's first sample; nothing if the frame's header is damaged.
/// @param streamInfo the body of the STREAMINFO block; empty if a file starts without one.
[[nodiscard]] std::optional<std::int64_t> firstFlacSample(ByteCursor::Bytes frame,
                                                          ByteCursor::Bytes streamInfo);

} // namespace tamsy
