#pragma once

#include "Formats/FlacFrame.h"
#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// The true end of a FLAC file (RFC 9639).
struct FlacEnd {
    std::uint64_t samples = 0; ///< per channel, in the whole file
    FlacFrameHeader lastFrame;
};

/// Finds the last complete frame in the last bytes of a file, at most 1 MB. The header's length is
/// wrong if a transfer was cut off, or if an encoder couldn't go back to write it. Nothing if no
/// frame is found.
/// @param blockSize samples per channel in all frames but the last, if it is constant.
/// @param maxFrameBytes the size of the stream's largest frame; 0 if unknown.
[[nodiscard]] std::optional<FlacEnd> findFlacEnd(const AudioFile& file, std::uint32_t blockSize,
                                                 std::uint32_t maxFrameBytes);

} // namespace tamsy
