#pragma once

namespace tamsy {

/// What both engines play: two channels of 32-bit floats, full scale from -1 to 1.
struct StereoFrame {
    float left = 0;
    float right = 0;
};

static_assert(sizeof(StereoFrame) == 2 * sizeof(float));

/// Frames per second, whatever the file holds.
inline constexpr int mediaSampleRate = 48'000;

} // namespace tamsy
