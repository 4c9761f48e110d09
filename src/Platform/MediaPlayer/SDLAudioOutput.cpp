#include "Platform/MediaPlayer/SDLAudioOutput.h"

#include <SDL2/SDL_audio.h>
#include <SDL2/SDL_hints.h>

#include <cstddef>
#include <cstring>

namespace tamsy {
namespace {

constexpr Uint16 periodFrames = 1024; // 21 ms: no sound server had to hurry for it

void fill(void* renderer, Uint8* bytes, int size) {
    const std::size_t count = static_cast<std::size_t>(size) / sizeof(StereoFrame);
    auto* frames = reinterpret_cast<StereoFrame*>(bytes);
    static_cast<AudioRenderer*>(renderer)->render(std::span(frames, count));
}

bool isSilentDriver() {
    const char* driver = SDL_GetCurrentAudioDriver();
    return driver && std::strcmp(driver, "dummy") == 0;
}

} // namespace

std::uint32_t SDLAudioOutput::openDevice(const char* driver, AudioRenderer& renderer) {
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Tamsy Music");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Tamsy Music");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_ROLE, "music");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    if (SDL_AudioInit(driver) != 0)
        return 0;
    SDL_AudioSpec wanted{};
    wanted.freq = mediaSampleRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 2;
    wanted.samples = periodFrames;
    wanted.callback = &fill;
    wanted.userdata = &renderer;
    const SDL_AudioDeviceID device = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    if (device == 0)
        SDL_AudioQuit();
    else
        SDL_PauseAudioDevice(device, 0);
    return device;
}

std::unique_ptr<SDLAudioOutput> SDLAudioOutput::open(AudioRenderer& renderer) {
    std::uint32_t device = openDevice(nullptr, renderer);
    if (device == 0)
        device = openDevice("dummy", renderer);
    if (device == 0)
        return nullptr;
    return std::unique_ptr<SDLAudioOutput>(new SDLAudioOutput(device, isSilentDriver()));
}

SDLAudioOutput::~SDLAudioOutput() {
    SDL_CloseAudioDevice(device_);
    SDL_AudioQuit();
}

bool SDLAudioOutput::isAlive() const {
    return SDL_GetAudioDeviceStatus(device_) != SDL_AUDIO_STOPPED;
}

} // namespace tamsy
