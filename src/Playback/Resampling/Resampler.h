#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

struct soxr;

namespace tamsy {

/// Converts stereo frames of one sample rate to `mediaSampleRate`: a linear-phase filter without
/// delay, so that the first frame out stands where the first frame in does. It holds frames back;
/// in all it gives `outputFrames` of what it was given. One thread at a time; it allocates.
class Resampler {
  public:
    explicit Resampler(std::uint32_t inputRate);

    /// False if no filter can be made for the rate.
    [[nodiscard]] bool isUsable() const { return isPassThrough() || filter_ != nullptr; }

    /// The next frames. Valid until the next call.
    [[nodiscard]] std::span<const StereoFrame> process(std::span<const StereoFrame> input);

    /// What is held back, at the end of the input. Only `restart` may follow, or `drain` again.
    [[nodiscard]] std::span<const StereoFrame> drain();

    /// Forgets all input, as for a seek.
    void restart();

    /// The number of frames that `inputFrames` come to.
    [[nodiscard]] std::uint64_t outputFrames(std::uint64_t inputFrames) const;

    /// A restart at an input frame that is a multiple of this gives the same output frames as a
    /// run from the start of the file. 1 where such frames are too far apart: then a restart may
    /// shift the sound by a part of a frame.
    [[nodiscard]] std::uint64_t alignment() const { return alignment_; }

    /// Input frames before a position after which its output no longer depends on what came before.
    [[nodiscard]] std::uint64_t settlingFrames() const;

    /// Where to restart the input so that `outputFrame` sounds as in a run from the start.
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
    /// Filters `count` frames; a null `input` marks the end.
    std::span<const StereoFrame> run(const StereoFrame* input, std::size_t count);

    std::uint32_t inputRate_;
    std::uint64_t alignment_;
    std::unique_ptr<soxr, FilterDeleter> filter_; // none for a rate that passes through
    std::vector<StereoFrame> output_;
};

} // namespace tamsy
