#pragma once

#include "Playback/Output/AudioOutput.h"
#include "Playback/Output/FrameRing.h"

#include <atomic>

namespace tamsy {

/// Plays the ring into the device's buffers, with the gain applied. Nothing
/// here takes a lock or memory.
class RingRenderer : public AudioRenderer {
  public:
    void render(std::span<StereoFrame> frames) noexcept override;

    /// The linear gain, 0 to 1, in effect from the next buffer on. Any thread.
    void setVolume(float volume) { volume_.store(volume, std::memory_order_relaxed); }

    [[nodiscard]] FrameRing& ring() { return ring_; }
    [[nodiscard]] const FrameRing& ring() const { return ring_; }

  private:
    FrameRing ring_;
    std::atomic<float> volume_ = 1;
    float gain_ = 0;        // where the last buffer ended; the device's thread
    bool wasSilent_ = true; // the last buffer; the device's thread
};

} // namespace tamsy
