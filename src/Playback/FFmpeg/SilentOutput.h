#pragma once

#include "Playback/Output/AudioOutput.h"

#include <thread>

namespace tamsy {

/// Stands in for a missing sound device: pulls frames in real time, on a thread of its own, and
/// discards them. It catches up after a delay.
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
    std::jthread thread_; // runs unless held
};

} // namespace tamsy
