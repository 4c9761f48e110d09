#pragma once

#include "Formats/FlacFrame.h"

#include <algorithm>
#include <cstdint>
#include <optional>

namespace tamsy {

/// The true end of a FLAC file (RFC 9639). The header's length is wrong if a transfer was cut off,
/// or if an encoder couldn't go back to write it.
struct FlacEnd {
    std::uint64_t samples = 0; ///< per channel, in the whole file
    FlacFrameHeader lastFrame;
};

/// How many bytes at the end of a file are enough to find its last complete frame.
/// @param maxFrameBytes the size of the stream's largest frame; 0 if unknown.
[[nodiscard]] constexpr std::uint32_t flacTailBytes(std::uint32_t maxFrameBytes) {
    constexpr std::uint32_t usual = 65'536, limit = 1'048'576;
    return std::clamp(2 * std::min(maxFrameBytes, limit), usual, limit);
}

/// Finds the last complete frame in `tail`, the end of a file without its trailing tags; nothing if
/// there is none.
/// @param blockSize samples per channel in all frames but the last, if it is constant.
[[nodiscard]] std::optional<FlacEnd> findFlacEnd(ByteCursor::Bytes tail, std::uint32_t blockSize);

} // namespace tamsy
