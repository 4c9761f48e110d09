#pragma once

#include "Playback/AudioFile.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tamsy {

/// A place where decoding may begin.
struct MpegSeekPoint {
    std::uint64_t byte = 0;     // of a frame's start, from the file's start
    std::uint64_t pcmFrame = 0; // what comes out first, counted from the first frame's output
};

/// The frames of an MPEG audio file, in outline.
struct MpegAudioScan {
    std::vector<MpegSeekPoint> points; // rising; none is needed for the start
    std::uint64_t firstFrameEnd = 0;   // bytes from the file's start
    std::uint32_t firstFramePcmFrames = 0;
    std::uint64_t pcmFrames = 0; // what all frames together come to
};

/// Walks the file from frame to frame, by their headers alone; nothing if it isn't MPEG audio
/// through and through.
///
/// The decoder takes anything for MPEG audio and looks for frames until the file's end, so a file
/// of zeros or a renamed film would hold up its caller for as long as reading it takes. Here a
/// frame is looked for only in a bounded stretch behind the tags, and from there on the file may
/// hold some damage, but no more than a damaged music file does.
///
/// A frame borrows data from those before it, so decoding that begins at a frame is silent until
/// enough has gone by, up to a fifth of a second. The points say what comes out first, which makes
/// seeks exact.
[[nodiscard]] std::optional<MpegAudioScan> scanMpegAudio(const AudioFile& file);

} // namespace tamsy
