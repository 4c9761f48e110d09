#pragma once

#include "Playback/Output/AudioOutput.h"

#include <thread>

namespace tamsy {

/// Stands in where there is no sound device: takes the frames at the pace of the clock, which it
/// never falls behind for good, on a thread of its own, and lets nobody hear them.
class SilentOutput final : public AudioOutput {
  public:
    /// `renderer` must outlive the output.
    explicit SilentOutput(AudioRenderer& renderer) : renderer_(renderer) {}

    [[nodiscard]] bool start() override;
    void hold() override;
    void flush() override {}
    [[nodiscard]] bool isAlive() const override { return true; }
    [[nodiscard]] bool isSilent() const override { return true; }

  private:
    AudioRenderer& renderer_;
    std::jthread thread_; // while it is not held
};

} // namespace tamsy
