#include "Playback/Resampling/DownMix.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tamsy {
namespace {

constexpr float minus3dB = std::numbers::sqrt2_v<float> / 2;

/// Lossy formats exceed full scale slightly; values beyond this come from damage.
constexpr float loudestSample = 4;

/// Replaces damaged values, NaN included, by silence before they reach a filter or a listener.
float withoutDamage(float sample) {
    return std::abs(sample) <= loudestSample ? sample : 0;
}

StereoFrame weightsOf(Speaker speaker) {
    switch (speaker) {
    case Speaker::FrontLeft:
    case Speaker::FrontLeftOfCenter:
        return {1, 0};
    case Speaker::FrontRight:
    case Speaker::FrontRightOfCenter:
        return {0, 1};
    case Speaker::BackLeft:
    case Speaker::SideLeft:
    case Speaker::TopFrontLeft:
    case Speaker::TopBackLeft:
        return {minus3dB, 0};
    case Speaker::BackRight:
    case Speaker::SideRight:
    case Speaker::TopFrontRight:
    case Speaker::TopBackRight:
        return {0, minus3dB};
    case Speaker::BackCenter:
    case Speaker::TopCenter:
    case Speaker::TopFrontCenter:
    case Speaker::TopBackCenter:
        return {0.5F, 0.5F}; // a surround at -3 dB, split between both sides
    case Speaker::LowFrequency:
        return {0, 0};
    case Speaker::FrontCenter:
    case Speaker::Unknown:
        break;
    }
    return {minus3dB, minus3dB};
}

} // namespace

Speaker speakerAt(int bit) {
    const bool isKnown = bit >= 0 && bit < static_cast<int>(Speaker::Unknown);
    return isKnown ? static_cast<Speaker>(bit) : Speaker::Unknown;
}

DownMix::DownMix(std::span<const Speaker> speakers) {
    if (speakers.size() == 1) {
        weights_ = {{1, 1}};
        return;
    }
    if (speakers.size() == 2) {
        weights_ = {{1, 0}, {0, 1}};
        return;
    }
    StereoFrame sum;
    for (const Speaker speaker : speakers) {
        const StereoFrame weights = weightsOf(speaker);
        weights_.push_back(weights);
        sum = {sum.left + weights.left, sum.right + weights.right};
    }
    const float scale = 1 / std::max({1.0F, sum.left, sum.right});
    for (StereoFrame& weights : weights_)
        weights = {weights.left * scale, weights.right * scale};
}

std::span<const StereoFrame> DownMix::mix(std::span<const float> samples) {
    output_.resize(samples.size() / channels());
    const float* sample = samples.data();
    for (StereoFrame& frame : output_) {
        frame = {};
        for (const StereoFrame& weights : weights_) {
            const float value = withoutDamage(*sample++);
            frame.left += value * weights.left;
            frame.right += value * weights.right;
        }
    }
    return output_;
}

} // namespace tamsy
