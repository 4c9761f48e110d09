#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tamsy {

/// Where a channel is meant to sound. The values up to `TopBackRight` are the bit numbers of the
/// channel mask of WAVEFORMATEXTENSIBLE, which FFmpeg and miniaudio follow too.
enum class Speaker : std::uint8_t {
    FrontLeft,
    FrontRight,
    FrontCenter,
    LowFrequency,
    BackLeft,
    BackRight,
    FrontLeftOfCenter,
    FrontRightOfCenter,
    BackCenter,
    SideLeft,
    SideRight,
    TopCenter,
    TopFrontLeft,
    TopFrontCenter,
    TopFrontRight,
    TopBackLeft,
    TopBackCenter,
    TopBackRight,
    Unknown,
};

/// The speaker of a bit number in the mask; `Unknown` beyond it.
[[nodiscard]] Speaker speakerAt(int bit);

/// Mixes any number of channels down to stereo, with the weights of ITU-R BS.775: centre and
/// surrounds at -3 dB, no low-frequency effects. All weights are scaled by one factor so that
/// full-scale input can't exceed full scale. Two channels, and a mono channel on both sides, pass
/// through unchanged.
class DownMix {
  public:
    /// One speaker per channel, at least one.
    explicit DownMix(std::span<const Speaker> speakers);

    [[nodiscard]] std::size_t channels() const { return weights_.size(); }

    /// Mixes whole frames of interleaved `samples`; one that isn't finite, or lies beyond four
    /// times full scale, counts as silence. Valid until the next call.
    [[nodiscard]] std::span<const StereoFrame> mix(std::span<const float> samples);

  private:
    std::vector<StereoFrame> weights_; // one per channel
    std::vector<StereoFrame> output_;
};

} // namespace tamsy
