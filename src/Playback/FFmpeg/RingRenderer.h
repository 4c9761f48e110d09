#pragma once

#include "Playback/Output/AudioOutput.h"
#include "Playback/Output/FrameRing.h"

#include <atomic>

namespace tamsy {

/// Copies frames from the ring buffer to the device, with the gain applied. Takes no lock and
/// allocates nothing.
class RingRenderer : public AudioRenderer {
  public:
    void render(std::span<StereoFrame> frames) noexcept override;

    /// Sets the linear gain, 0 to 1, from the next buffer on. Any thread.
    void setVolume(float volume) { volume_.store(volume, std::memory_order_relaxed); }

    [[nodiscard]] FrameRing& ring() { return ring_; }
    [[nodiscard]] const FrameRing& ring() const { return ring_; }

  private:
    FrameRing ring_;
    std::atomic<float> volume_ = 1;
    float gain_ = 0;        // at the end of the last buffer; device thread only
    bool wasSilent_ = true; // whether the last buffer was; device thread only
};

} // namespace tamsy
