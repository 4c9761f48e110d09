#pragma once

#include <atomic>
#include <chrono>
#include <optional>
#include <thread>

namespace tamsy {

/// Listens to what the private sound server puts out and tells when it began to sound. Needs
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

    /// Waits until nothing has sounded for a moment, and forgets what did.
    void waitForSilence();

    /// When the first sound since the last silence arrived, if one has.
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
