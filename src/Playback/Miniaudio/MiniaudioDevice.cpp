#include "Playback/Miniaudio/MiniaudioDevice.h"

#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/Miniaudio/MiniaudioPulse.h"
#include "Playback/Output/SoundServerNoise.h"

#include <mutex>

namespace tamsy {
namespace {

void ma_data_callback(ma_device* device, void* output, const void* /*input*/,
                      ma_uint32 frameCount) {
    auto* renderer = static_cast<AudioRenderer*>(device->pUserData);
    if (renderer != nullptr)
        renderer->render({static_cast<StereoFrame*>(output), frameCount});
}

ma_result openDevice(AudioRenderer& renderer, ma_device& device) {
    static std::once_flag silenced;
    std::call_once(silenced, silenceSoundLibraries);
    ma_device_config config = ma_device_config_init(ma_device_type_playback);
    config.sampleRate = AudioDecoder::sampleRate;
    config.playback.format = AudioDecoder::format;
    config.playback.channels = AudioDecoder::channels;
    config.dataCallback = ma_data_callback;
    config.pUserData = &renderer;
    // Without a list of backends it tries all of them until a device opens; the last one is silent
    // and runs in real time without a sound card.
    const ma_result result = ma_device_init_ex(nullptr, 0, nullptr, &config, &device);
    // Otherwise miniaudio puts a buffer of its own in between, whose frames would count as played
    // and be dropped at the next stop.
    if (result == MA_SUCCESS)
        device.noFixedSizedCallback = MA_TRUE;
    return result;
}

} // namespace

std::unique_ptr<MiniaudioDevice> MiniaudioDevice::open(AudioRenderer& renderer, bool maySilent,
                                                       std::atomic<ma_result>& result) {
    std::unique_ptr<MiniaudioDevice> device(new MiniaudioDevice(result));
    result = openDevice(renderer, device->device_);
    if (result != MA_SUCCESS || (!maySilent && device->isSilent()))
        return nullptr;
    return device;
}

/// Closing a running device waits for its thread, which never wakes up once the sound server is
/// gone; stopping wakes it.
MiniaudioDevice::~MiniaudioDevice() {
    static_cast<void>(ma_device_stop(&device_));
    ma_device_uninit(&device_);
}

bool MiniaudioDevice::waitForServer() {
    return waitForPulseServer(device_);
}

bool MiniaudioDevice::start() {
    result_ = ma_device_start(&device_);
    isRunning_ = result_ == MA_SUCCESS;
    return isRunning_;
}

void MiniaudioDevice::hold() {
    static_cast<void>(ma_device_stop(&device_));
    isRunning_ = false;
}

void MiniaudioDevice::flush() {
    flushPulseStream(device_);
}

bool MiniaudioDevice::isAlive() const {
    if (isRunning_ && ma_device_get_state(&device_) != ma_device_state_started)
        return false;
    return !hasLostPulseServer(device_);
}

bool MiniaudioDevice::isSilent() const {
    return device_.pContext != nullptr && device_.pContext->backend == ma_backend_null;
}

} // namespace tamsy
