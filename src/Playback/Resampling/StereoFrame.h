#pragma once

#include <algorithm>

namespace tamsy {

/// What both engines play: two channels of 32-bit floats, full scale from -1 to 1.
struct StereoFrame {
    float left = 0;
    float right = 0;
};

static_assert(sizeof(StereoFrame) == 2 * sizeof(float));

/// Held within full scale: the last step before a device.
[[nodiscard]] inline StereoFrame limited(StereoFrame frame) {
    return {std::clamp(frame.left, -1.0F, 1.0F), std::clamp(frame.right, -1.0F, 1.0F)};
}

/// Frames per second, whatever the file holds.
inline constexpr int mediaSampleRate = 48'000;

} // namespace tamsy
