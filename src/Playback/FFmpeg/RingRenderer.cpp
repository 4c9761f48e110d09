#include "Playback/FFmpeg/RingRenderer.h"

#include <algorithm>

namespace tamsy {

void RingRenderer::render(std::span<StereoFrame> frames) noexcept {
    const std::size_t count = ring_.read(frames);
    // A jump of the gain would click, so it ramps to its new value within this buffer, except after
    // silence.
    const float volume = volume_.load(std::memory_order_relaxed);
    if (wasSilent_)
        gain_ = volume;
    wasSilent_ = count == 0;
    const float step = (volume - gain_) / static_cast<float>(std::max<std::size_t>(1, count));
    for (StereoFrame& frame : frames.first(count)) {
        gain_ += step;
        frame = limited({frame.left * gain_, frame.right * gain_});
    }
    gain_ = volume;
    std::ranges::fill(frames.subspan(count), StereoFrame());
}

} // namespace tamsy
