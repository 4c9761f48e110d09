#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <span>

namespace tamsy {

/// Fills an output's buffers. Called on the output's own thread.
class AudioRenderer {
  public:
    virtual ~AudioRenderer() = default;
    virtual void render(std::span<StereoFrame> frames) noexcept = 0;
};

/// An open device, held at first. One thread at a time; any call may wait for a sound server.
class AudioOutput {
  public:
    virtual ~AudioOutput() = default;

    /// Plays what the output still holds, then what it pulls from its renderer. False if it can't.
    [[nodiscard]] virtual bool start() = 0;

    /// Stops at once and keeps what hasn't been heard. Once it returns nothing is pulled.
    virtual void hold() = 0;

    /// Throws away what is kept. Only while it is held.
    virtual void flush() = 0;

    /// False once the device is gone, for instance with its sound server. Never waits.
    [[nodiscard]] virtual bool isAlive() const = 0;

    /// True when no real device could be opened and frames are only taken in real time.
    [[nodiscard]] virtual bool isSilent() const = 0;
};

} // namespace tamsy
