#include "MemoryDevice.h"

#include "Playback/FFmpeg/MediaBackendModule.h"

#include <miniaudio.h>

#include <array>
#include <cmath>
#include <numbers>

namespace tamsy {
namespace {

/// 480 Hz, so that the end fits its beginning.
class Tone {
  public:
    void fill(std::span<StereoFrame> frames) noexcept {
        for (StereoFrame& frame : frames) {
            frame = wave_[next_];
            next_ = (next_ + 1) % wave_.size();
        }
    }

  private:
    static constexpr std::size_t period = 100;

    static std::array<StereoFrame, period> makeWave() {
        std::array<StereoFrame, period> wave{};
        for (std::size_t i = 0; i < period; ++i) {
            const double turn = 2 * std::numbers::pi * static_cast<double>(i) / period;
            const auto sample = static_cast<float>(0.3 * std::cos(turn));
            wave[i] = {sample, sample};
        }
        return wave;
    }

    const std::array<StereoFrame, period> wave_ = makeWave();
    std::size_t next_ = 0;
};

class FirstDevice : public MemoryDevice {
  public:
    FirstDevice() {
        ma_device_config config = ma_device_config_init(ma_device_type_playback);
        config.sampleRate = mediaSampleRate;
        config.playback.format = ma_format_f32;
        config.playback.channels = 2;
        config.pUserData = &tone_;
        config.dataCallback = [](ma_device* device, void* output, const void*, ma_uint32 count) {
            static_cast<Tone*>(device->pUserData)->fill({static_cast<StereoFrame*>(output), count});
        };
        isOpen_ = ma_device_init(nullptr, &config, &device_) == MA_SUCCESS;
    }
    ~FirstDevice() override {
        if (isOpen_)
            ma_device_uninit(&device_);
    }
    FirstDevice(const FirstDevice&) = delete;
    FirstDevice& operator=(const FirstDevice&) = delete;

    [[nodiscard]] bool start() { return isOpen_ && ma_device_start(&device_) == MA_SUCCESS; }

  private:
    Tone tone_;
    ma_device device_{};
    bool isOpen_ = false;
};

class SecondDevice : public MemoryDevice, AudioRenderer {
  public:
    void render(std::span<StereoFrame> frames) noexcept override { tone_.fill(frames); }

    [[nodiscard]] bool start() {
        MediaBackend* backend = loadMediaBackend();
        output_ = backend ? backend->openOutput(*this, true) : nullptr;
        return output_ && output_->start();
    }

  private:
    Tone tone_;
    std::unique_ptr<AudioOutput> output_; // last, so that it ends before what it plays
};

template <typename Device>
std::unique_ptr<MemoryDevice> started() {
    auto device = std::make_unique<Device>();
    return device->start() ? std::move(device) : nullptr;
}

} // namespace

std::unique_ptr<MemoryDevice> MemoryDevice::openFirst() {
    return started<FirstDevice>();
}

std::unique_ptr<MemoryDevice> MemoryDevice::openSecond() {
    return started<SecondDevice>();
}

} // namespace tamsy
