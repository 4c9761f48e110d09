#pragma once

#include "Playback/Output/AudioOutput.h"

#include <miniaudio.h>

#include <atomic>
#include <memory>

namespace tamsy {

/// The default output device through miniaudio: stereo float at 48,000 Hz.
class MiniaudioDevice final : public AudioOutput {
  public:
    /// Opens the device. If there is none: a silent one in real time if `maySilent`, otherwise
    /// null. `renderer` and `result` must outlive it; `result` gets the library's result of opening
    /// and of each start.
    [[nodiscard]] static std::unique_ptr<MiniaudioDevice>
    open(AudioRenderer& renderer, bool maySilent, std::atomic<ma_result>& result);
    ~MiniaudioDevice() override;
    MiniaudioDevice(const MiniaudioDevice&) = delete;
    MiniaudioDevice& operator=(const MiniaudioDevice&) = delete;

    [[nodiscard]] bool waitForServer() override;
    [[nodiscard]] bool start() override;
    void hold() override;
    void flush() override;
    [[nodiscard]] bool isAlive() const override;
    [[nodiscard]] bool isSilent() const override;

  private:
    explicit MiniaudioDevice(std::atomic<ma_result>& result) : result_(result) {}

    std::atomic<ma_result>& result_;
    ma_device device_{}; // initialised by `open`
    bool isRunning_ = false;
};

} // namespace tamsy
