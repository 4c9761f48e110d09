#pragma once

#include <algorithm>

namespace tamsy {

/// The sample format of both engines: two channels of 32-bit floats, full scale from -1 to 1.
struct StereoFrame {
    float left = 0;
    float right = 0;
};

static_assert(sizeof(StereoFrame) == 2 * sizeof(float));

/// Clamps to full scale: the last step before a device.
[[nodiscard]] inline StereoFrame limited(StereoFrame frame) {
    return {std::clamp(frame.left, -1.0F, 1.0F), std::clamp(frame.right, -1.0F, 1.0F)};
}

/// Frames per second of all output, whatever the file's rate.
inline constexpr int mediaSampleRate = 48'000;

} // namespace tamsy
