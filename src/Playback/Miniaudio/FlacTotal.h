#pragma once

#include "Formats/FlacFrame.h"
#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// Where a FLAC file (RFC 9639) really ends.
struct FlacEnd {
    std::uint64_t samples = 0; ///< a channel, in all
    FlacFrameHeader lastFrame;
};

/// Looks for the last whole frame of a file, in the last bytes of it: what the header tells is
/// wrong where a transfer was cut off, or where an encoder couldn't go back to write it. Nothing
/// if no frame ends there.
/// @param blockSize samples in the frames, where all but the last have as many.
/// @param maxFrameBytes of the stream's largest frame; 0 if it isn't known.
[[nodiscard]] std::optional<FlacEnd> findFlacEnd(const AudioFile& file, std::uint32_t blockSize,
                                                 std::uint32_t maxFrameBytes);

} // namespace tamsy
