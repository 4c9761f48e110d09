#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tamsy {

/// A channel's speaker. The values up to `TopBackRight` are the bit numbers in the channel mask of
/// WAVEFORMATEXTENSIBLE, which FFmpeg and miniaudio use too.
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

/// The speaker with a bit number in the mask; `Unknown` if there is none.
[[nodiscard]] Speaker speakerAt(int bit);

/// Mixes any number of channels down to stereo with the weights of ITU-R BS.775: centre and
/// surrounds at -3 dB, no low-frequency effects. One factor scales all weights so that full-scale
/// input can't exceed full scale. Stereo is unchanged, and mono goes to both sides.
class DownMix {
  public:
    /// One speaker per channel, at least one.
    explicit DownMix(std::span<const Speaker> speakers);

    [[nodiscard]] std::size_t channels() const { return weights_.size(); }

    /// Mixes whole frames of interleaved `samples`. A sample that isn't finite, or exceeds four
    /// times full scale, becomes silence. The result is valid until the next call.
    [[nodiscard]] std::span<const StereoFrame> mix(std::span<const float> samples);

  private:
    std::vector<StereoFrame> weights_; // one per channel
    std::vector<StereoFrame> output_;
};

} // namespace tamsy
