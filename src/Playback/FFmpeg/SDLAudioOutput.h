#pragma once

#include "Playback/Output/AudioOutput.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>

namespace tamsy {

/// The default device through SDL, for machines without a PulseAudio server. SDL can't keep
/// buffered frames, so `hold` closes the device, which also lets the sound card sleep.
class SDLAudioOutput final : public AudioOutput {
  public:
    /// Opens the default device; null if there is none.
    [[nodiscard]] static std::unique_ptr<SDLAudioOutput> open(AudioRenderer& renderer);
    ~SDLAudioOutput() override;
    SDLAudioOutput(const SDLAudioOutput&) = delete;
    SDLAudioOutput& operator=(const SDLAudioOutput&) = delete;

    [[nodiscard]] bool start() override;
    void hold() override;
    void flush() override {}
    [[nodiscard]] bool isAlive() const override;
    [[nodiscard]] bool isSilent() const override { return false; }

  private:
    explicit SDLAudioOutput(AudioRenderer& renderer) : renderer_(renderer) {}
    [[nodiscard]] bool openDevice();
    void closeDevice();
    static void fill(void* output, std::uint8_t* bytes, int size);

    AudioRenderer& renderer_;
    std::uint32_t device_ = 0; // SDL's number of the device; 0 if it is closed
    // When frames were pulled last; set by the device's thread, and by a start.
    std::atomic<std::chrono::steady_clock::duration> pulledAt_{};
};

} // namespace tamsy
