#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace tamsy {

/// Listens to the private sound server's output and notes when sound starts. Needs
/// `tools/with-sound-server`. One thread at a time.
class MonitorListener {
  public:
    using Clock = std::chrono::steady_clock;

    MonitorListener();
    ~MonitorListener();
    MonitorListener(const MonitorListener&) = delete;
    MonitorListener& operator=(const MonitorListener&) = delete;

    /// Whether a sample is loud enough to count.
    [[nodiscard]] static bool isSound(float sample) { return sample > 0.05F || sample < -0.05F; }

    /// Waits until it has been silent for a moment, and forgets earlier sound.
    void waitForSilence();

    /// When the first sound since the last silence arrived, if any.
    [[nodiscard]] std::optional<Clock::time_point> firstSound() const;

  private:
    void listen();

    std::atomic<bool> isEnding_ = false;
    std::atomic<Clock::rep> first_ = 0;
    std::atomic<Clock::rep> last_ = 0;
    std::atomic<bool> isListening_ = false;
    std::thread thread_;
};

} // namespace tamsy
