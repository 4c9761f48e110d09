#pragma once

#include "Playback/FFmpeg/MediaBackend.h"

#include <cstdint>
#include <memory>

namespace tamsy {

/// The default output through SDL's audio. The subsystem lives only as long as a device is open, so
/// that a first opening looks afresh for what the machine has by then.
class SDLAudioOutput : public AudioOutput {
  public:
    /// Opens the default device; nothing if there is none.
    [[nodiscard]] static std::unique_ptr<SDLAudioOutput> open(AudioRenderer& renderer);
    SDLAudioOutput(const SDLAudioOutput&) = delete;
    SDLAudioOutput& operator=(const SDLAudioOutput&) = delete;
    ~SDLAudioOutput() override;

    [[nodiscard]] bool isAlive() const override;
    [[nodiscard]] bool isSilent() const override { return false; }

  private:
    explicit SDLAudioOutput(std::uint32_t device) : device_(device) {}

    std::uint32_t device_; // SDL's number of the device, never 0
};

} // namespace tamsy
