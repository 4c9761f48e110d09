#pragma once

#include "Platform/MediaPlayer/MediaBackend.h"

#include <memory>
#include <span>
#include <vector>

struct AVFrame;
struct SwrContext;

namespace tamsy {

/// Turns decoded frames of any layout, sample format and rate into stereo floats at the device's
/// rate. It follows a stream that changes its layout or rate on the way.
class StereoResampler {
  public:
    /// Converts `frame`; the result is valid until the next call and may lag behind by a few
    /// frames. Empty if the format can't be converted.
    [[nodiscard]] std::span<const StereoFrame> convert(const AVFrame& frame);

    /// What is still held back at the end of a stream.
    [[nodiscard]] std::span<const StereoFrame> drain();

    /// Forgets what went before, as after a seek.
    void reset() { context_.reset(); }

  private:
    struct ContextDeleter {
        void operator()(SwrContext* context) const;
    };
    [[nodiscard]] bool follow(const AVFrame& frame);
    [[nodiscard]] std::span<const StereoFrame> run(const AVFrame* frame);

    std::unique_ptr<SwrContext, ContextDeleter> context_;
    int sampleRate_ = 0;
    int sampleFormat_ = -1;
    int channels_ = 0;
    std::vector<StereoFrame> output_;
};

} // namespace tamsy
