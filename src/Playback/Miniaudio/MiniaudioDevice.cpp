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
    // With no list of backends and no context it goes through all of them until a device opens, and
    // ends with one that runs in real time without any sound card.
    const ma_result result = ma_device_init_ex(nullptr, 0, nullptr, &config, &device);
    // What the device asks for is what it gets. Else a whole buffer would be kept in between, which
    // the position would count and which the next stop would throw away.
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

/// A running device's end waits for its thread to wake by itself, which it never does once the
/// sound server has gone; stopping wakes it.
MiniaudioDevice::~MiniaudioDevice() {
    static_cast<void>(ma_device_stop(&device_));
    ma_device_uninit(&device_);
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
