#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <memory>
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
    std::uint64_t start = 0, end = 0;  // of all frames, in bytes from the file's start
    std::uint64_t firstFrameEnd = 0;   // bytes from the file's start
    std::uint32_t firstFramePcmFrames = 0;
    std::uint64_t pcmFrames = 0; // what all frames together come to
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
        Refused, // no MPEG audio, or not through and through
    };

    /// `file` must outlive this.
    explicit MpegAudioScanner(const AudioFile& file);
    ~MpegAudioScanner();

    /// Walks as far as one read of the file goes, 64 KB.
    State advance();

    [[nodiscard]] State state() const;

    /// Whether samples of the part not yet walked are MPEG audio, too: good enough to play a file
    /// whose walk would take long. Costs a few small reads.
    [[nodiscard]] bool hasMusicAhead();

    /// The frames walked so far. Their start and the end of the last are known with the first.
    [[nodiscard]] const MpegAudioScan& scan() const;

    /// What all frames come to, judged by those walked so far.
    [[nodiscard]] std::uint64_t expectedPcmFrames() const;

  private:
    class Walk;
    std::unique_ptr<Walk> walk_;
};

} // namespace tamsy
