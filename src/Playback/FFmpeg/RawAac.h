#pragma once

#include "Playback/FFmpeg/FileInput.h"

#include <cstddef>
#include <cstdint>
#include <vector>

struct AVStream;

namespace tamsy {

namespace media {
struct FrameHeader;
}

/// Walks a raw AAC file (ADTS, ISO 13818-7) from frame to frame, by their headers alone, and enters
/// them in the stream's index, so that each later seek is exact: ten times as fast as reading the
/// packets. A piece at a time, beside the demuxer, which isn't disturbed.
class RawAacWalk {
  public:
    enum class State {
        Walking,
        Done,
        Refused, // not whole frames of one kind to the file's end
    };

    /// Begins at the first packet that the index of `stream` knows. Both must outlive this.
    RawAacWalk(const FileInput& file, AVStream& stream);

    /// Walks as far as one read of the file goes, 64 KB.
    State advance();

    [[nodiscard]] State state() const { return state_; }

    /// Whether samples of the part not yet walked are frames of the same kind: good enough to play
    /// a file whose walk would take long. They also tell how long a frame is there. Five small
    /// reads.
    [[nodiscard]] bool hasFramesAhead();

    /// The file's length in the stream's time base; an estimate until the walk is done, which goes
    /// by the samples.
    [[nodiscard]] std::int64_t duration() const;

  private:
    void enter(const media::FrameHeader& header);
    [[nodiscard]] bool endsHere() const;
    [[nodiscard]] bool sampleAt(std::int64_t offset);

    const FileInput& file_;
    AVStream& stream_;
    State state_ = State::Walking;
    std::vector<std::byte> buffer_;
    std::int64_t size_ = 0;      // of the file, in bytes
    std::int64_t offset_ = 0;    // walked up to here, in bytes
    std::int64_t startTime_ = 0; // in the stream's time base
    std::int64_t samples_ = 0;   // walked
    std::int64_t frames_ = 0;    // walked
    std::uint32_t kind_ = 0;
    std::uint32_t sampleRate_ = 1;
    std::int64_t sampledBytes_ = 0;   // of the frames that the estimate is made from
    std::int64_t sampledSamples_ = 0; // in them
};

} // namespace tamsy
