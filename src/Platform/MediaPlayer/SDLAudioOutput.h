#pragma once

#include "Platform/MediaPlayer/MediaBackend.h"

#include <cstdint>
#include <memory>

namespace tamsy {

/// The default output through SDL's audio. The subsystem lives only as long as a device is open, so
/// that a first opening looks afresh for what the machine has by then.
class SDLAudioOutput : public AudioOutput {
  public:
    /// Opens the default device; without any, SDL's own silent one. Nothing if both fail.
    [[nodiscard]] static std::unique_ptr<SDLAudioOutput> open(AudioRenderer& renderer);
    SDLAudioOutput(const SDLAudioOutput&) = delete;
    SDLAudioOutput& operator=(const SDLAudioOutput&) = delete;
    ~SDLAudioOutput() override;

    [[nodiscard]] bool isAlive() const override;
    [[nodiscard]] bool isSilent() const override { return isSilent_; }

  private:
    SDLAudioOutput(std::uint32_t device, bool isSilent) : device_(device), isSilent_(isSilent) {}

    std::uint32_t device_; // SDL's number of the device, never 0
    bool isSilent_;
};

} // namespace tamsy
