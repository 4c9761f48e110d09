#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tamsy {

/// A position where decoding can start. Output frames are counted from the first MPEG frame's.
struct MpegSeekPoint {
    std::uint64_t byte = 0;     // offset of an MPEG frame in the file
    std::uint64_t pcmFrame = 0; // the first output frame from there
};

/// A summary of the frames in an MPEG audio file.
struct MpegAudioScan {
    std::vector<MpegSeekPoint> points; // ascending; the start has none
    std::uint64_t start = 0, end = 0;  // of the audio, offsets in the file
    std::uint64_t firstFrameEnd = 0;   // offset in the file
    std::uint32_t firstFramePcmFrames = 0;
    std::uint64_t pcmFrames = 0; // output of all frames
};

/// Scans a file's MPEG frame headers, step by step.
///
/// The decoder accepts anything as MPEG audio and searches for frames to the end of the file, so a
/// file of zeros or a renamed film would block its caller while it reads all of it. The scan
/// searches for the first frame only in a limited range after the tags, and accepts only as much
/// damage as a damaged music file has. Tags between joined songs, and at the end of the file,
/// aren't damage.
///
/// A frame uses data of previous ones (the bit reservoir), so decoding from a frame is silent at
/// first, for up to a fifth of a second. The seek points say which frame is output first, which
/// makes seeks exact.
class MpegAudioScanner {
  public:
    enum class State {
        Walking,
        Done,
        Refused, // not MPEG audio, or not all of it
    };

    /// `file` must outlive this.
    explicit MpegAudioScanner(const AudioFile& file);
    ~MpegAudioScanner();

    /// Scans the frames in one read of 64 KB.
    State advance();

    [[nodiscard]] State state() const;

    /// Whether samples of the part not yet scanned are MPEG audio too: enough to play a file whose
    /// scan would take long. Costs a few small reads.
    [[nodiscard]] bool hasMusicAhead();

    /// The frames scanned so far. `start` and the first frame's values are valid once a frame has
    /// been found, `end` always.
    [[nodiscard]] const MpegAudioScan& scan() const;

    /// The output frames of the whole file, extrapolated from those scanned so far.
    [[nodiscard]] std::uint64_t expectedPcmFrames() const;

  private:
    class Walk;
    std::unique_ptr<Walk> walk_;
};

} // namespace tamsy
