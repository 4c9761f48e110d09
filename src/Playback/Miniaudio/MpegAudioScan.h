#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tamsy {

/// A position where decoding can start.
struct MpegSeekPoint {
    std::uint64_t byte = 0; // offset of a frame in the file
    std::uint64_t pcmFrame =
        0; // the first output frame, counted from the first MPEG frame's output
};

/// A summary of the frames in an MPEG audio file.
struct MpegAudioScan {
    std::vector<MpegSeekPoint> points; // rising; none is needed for the start
    std::uint64_t start = 0, end = 0;  // of all frames, in bytes from the file's start
    std::uint64_t firstFrameEnd = 0;   // bytes from the file's start
    std::uint32_t firstFramePcmFrames = 0;
    std::uint64_t pcmFrames = 0; // output of all frames
};

/// Walks a file from frame to frame, by their headers alone, a piece at a time.
///
/// The decoder takes anything for MPEG audio and looks for frames until the file's end, so a file
/// of zeros or a renamed film would hold up its caller for as long as reading it takes. Here a
/// frame is looked for only in a bounded stretch behind the tags, and from there on the file may
/// hold some damage, but no more than a damaged music file does. Tags between songs that were put
/// together, and those at the file's end, are no damage.
///
/// A frame borrows data from those before it, so decoding that begins at a frame is silent until
/// enough has gone by, up to a fifth of a second. The points say what comes out first, which makes
/// seeks exact.
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

    /// The frames scanned so far. Their start and the end of the last are known with the first.
    [[nodiscard]] const MpegAudioScan& scan() const;

    /// The output frames of the whole file, extrapolated from those scanned so far.
    [[nodiscard]] std::uint64_t expectedPcmFrames() const;

  private:
    class Walk;
    std::unique_ptr<Walk> walk_;
};

} // namespace tamsy
