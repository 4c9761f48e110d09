#include "Playback/FFmpeg/SilentOutput.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <ratio>
#include <stop_token>

namespace tamsy {
namespace {

constexpr std::size_t periodFrames = 2048;

using Clock = std::chrono::steady_clock;
using Periods = std::chrono::duration<std::int64_t, std::ratio<periodFrames, mediaSampleRate>>;

void takeFrames(const std::stop_token& stop, AudioRenderer& renderer) {
    std::array<StereoFrame, periodFrames> frames;
    const Clock::time_point start = Clock::now();
    for (Periods taken(0); !stop.stop_requested(); ++taken) {
        std::this_thread::sleep_until(start + std::chrono::duration_cast<Clock::duration>(taken));
        renderer.render(frames);
    }
}

} // namespace

bool SilentOutput::start() {
    if (!thread_.joinable())
        thread_ =
            std::jthread([this](const std::stop_token& stop) { takeFrames(stop, renderer_); });
    return true;
}

void SilentOutput::hold() {
    thread_ = {};
}

} // namespace tamsy
