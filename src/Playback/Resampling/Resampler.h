#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct soxr;

namespace tamsy {

/// Converts stereo frames to `mediaSampleRate` with a linear-phase filter. Its delay is
/// compensated: the first output frame corresponds to the first input frame. It buffers frames; in
/// total it returns `outputFrames` of the input frames. One thread at a time; allocates memory.
class Resampler {
  public:
    explicit Resampler(std::uint32_t inputRate);

    /// False if the rate isn't supported.
    [[nodiscard]] bool isUsable() const { return isPassThrough() || filter_ != nullptr; }

    /// Converts the next frames. The result is valid until the next call.
    [[nodiscard]] std::span<const StereoFrame> process(std::span<const StereoFrame> input);

    /// The buffered frames, at the end of the input. Only `restart` or `drain` may follow.
    [[nodiscard]] std::span<const StereoFrame> drain();

    /// Discards all input, for a seek.
    void restart();

    /// The number of output frames for `inputFrames`.
    [[nodiscard]] std::uint64_t outputFrames(std::uint64_t inputFrames) const;

    /// A restart at a multiple of this, in input frames, gives the same output frames as conversion
    /// from the start of the file. 1 if such restart points are too far apart: a restart may then
    /// shift the sound by a fraction of a frame.
    [[nodiscard]] std::uint64_t alignment() const { return alignment_; }

    /// How many input frames before a position its output depends on.
    [[nodiscard]] std::uint64_t settlingFrames() const;

    /// Where to restart the input so that `outputFrame` is the same as in conversion from the
    /// start.
    struct Restart {
        std::uint64_t inputFrame = 0;
        std::uint64_t skippedOutput = 0; // frames to drop before `outputFrame`
    };
    [[nodiscard]] Restart restartFor(std::uint64_t outputFrame) const;

  private:
    struct FilterDeleter {
        void operator()(soxr* filter) const;
    };
    [[nodiscard]] bool isPassThrough() const { return inputRate_ == mediaSampleRate; }
    /// Filters `count` frames; a null `input` means the end of the input.
    std::span<const StereoFrame> run(const StereoFrame* input, std::size_t count);

    std::uint32_t inputRate_;
    std::uint64_t alignment_;
    std::unique_ptr<soxr, FilterDeleter> filter_; // null if the rate needs no conversion
    std::vector<StereoFrame> output_;
};

} // namespace tamsy
