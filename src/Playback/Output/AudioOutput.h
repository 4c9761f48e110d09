#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <span>

namespace tamsy {

/// Fills an output's buffers. Called on the output's own thread.
class AudioRenderer {
  public:
    virtual ~AudioRenderer() = default;

    /// Fills all of `frames`, with silence where there is nothing to play.
    virtual void render(std::span<StereoFrame> frames) noexcept = 0;
};

/// An open output device, initially held. One thread at a time; calls may wait for a sound server.
class AudioOutput {
  public:
    virtual ~AudioOutput() = default;

    /// Waits until the sound server of a held output responds; false if it is gone.
    [[nodiscard]] virtual bool waitForServer() { return true; }

    /// Plays the frames that are still buffered, then those that it pulls from its renderer. False
    /// on failure.
    [[nodiscard]] virtual bool start() = 0;

    /// Stops at once; no frames are pulled after it returns. Those that haven't been heard stay
    /// buffered, if the device can keep them.
    virtual void hold() = 0;

    /// Drops the buffered frames. Only while held.
    virtual void flush() = 0;

    /// False once the device is gone, for example with its sound server. Never waits.
    [[nodiscard]] virtual bool isAlive() const = 0;

    /// True for the stand-in for a missing device, which pulls frames in real time and discards
    /// them.
    [[nodiscard]] virtual bool isSilent() const = 0;
};

} // namespace tamsy
