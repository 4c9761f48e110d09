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

/// Converts decoded frames of any channel layout, sample format and rate to stereo floats at the
/// device's rate. Layout and rate may change within a stream.
class FrameConverter {
  public:
    /// Converts `frame`. The result is valid until the next call. It may be empty, since the
    /// resampler buffers frames, or because the format can't be converted.
    [[nodiscard]] std::span<const StereoFrame> convert(const AVFrame& frame);

    /// The buffered frames, at the end of a stream.
    [[nodiscard]] std::span<const StereoFrame> drain();

    /// Restarts after a seek with `frame`, whose first sample is number `inputFrame` of the stream.
    /// Returns the number of the first output frame, up to `seekLead` later, so that the output is
    /// the same as in conversion from the stream's start.
    [[nodiscard]] std::int64_t restart(const AVFrame& frame, std::int64_t inputFrame);

    /// How far before its target a seek must restart, in output frames; 0 before the first frame.
    [[nodiscard]] std::int64_t seekLead() const;

  private:
    struct ContextDeleter {
        void operator()(SwrContext* context) const;
    };
    /// The steps that convert one input format.
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
    std::uint64_t skippedInput_ = 0; // frames to drop
    std::vector<float> samples_;
    std::vector<StereoFrame> joined_; // when the format changes
};

} // namespace tamsy
