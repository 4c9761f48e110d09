#pragma once

#include "Playback/FFmpeg/MediaBackend.h"

#include <thread>

namespace tamsy {

/// Stands in where there is no sound device: takes the frames at the pace of the clock, which it
/// never falls behind for good, and lets nobody hear them.
class SilentOutput : public AudioOutput {
  public:
    /// Begins at once, on a thread of its own. `renderer` must outlive the output.
    explicit SilentOutput(AudioRenderer& renderer);

    [[nodiscard]] bool isAlive() const override { return true; }
    [[nodiscard]] bool isSilent() const override { return true; }

  private:
    std::jthread thread_;
};

} // namespace tamsy
