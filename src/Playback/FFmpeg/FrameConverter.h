#pragma once

#include "Playback/Resampling/DownMix.h"
#include "Playback/Resampling/Resampler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

struct AVFrame;
struct SwrContext;

namespace tamsy {

/// Turns decoded frames of any layout, sample format and rate into stereo floats at the device's
/// rate. It follows a stream that changes its layout or rate on the way.
class FrameConverter {
  public:
    /// Converts `frame`; the result is valid until the next call and may be empty, since frames are
    /// held back. Also empty if the format can't be converted.
    [[nodiscard]] std::span<const StereoFrame> convert(const AVFrame& frame);

    /// What is still held back at the end of a stream.
    [[nodiscard]] std::span<const StereoFrame> drain();

    /// Starts anew, as after a seek, with `frame`, whose first sample is the stream's `inputFrame`.
    /// Gives the output frame that comes first: up to `seekLead` later, so that all that follows
    /// equals a run from the stream's start.
    [[nodiscard]] std::int64_t restart(const AVFrame& frame, std::int64_t inputFrame);

    /// How far ahead of its target a seek has to restart, in output frames; 0 before any frame.
    [[nodiscard]] std::int64_t seekLead() const;

  private:
    struct ContextDeleter {
        void operator()(SwrContext* context) const;
    };
    /// What turns one format into another.
    struct Conversion {
        std::unique_ptr<SwrContext, ContextDeleter> samples;
        DownMix mix;
        Resampler resampler;
    };
    [[nodiscard]] static std::optional<Conversion> conversionOf(const AVFrame& frame);
    [[nodiscard]] bool isSameFormat(const AVFrame& frame) const;
    [[nodiscard]] bool follow(const AVFrame& frame);
    [[nodiscard]] std::span<const StereoFrame> run(const AVFrame& frame);

    std::optional<Conversion> conversion_;
    int sampleRate_ = 0;
    int sampleFormat_ = -1;
    int channels_ = 0;
    std::uint64_t skippedInput_ = 0; // frames still to drop
    std::vector<float> samples_;
    std::vector<StereoFrame> joined_; // of two formats
};

} // namespace tamsy
