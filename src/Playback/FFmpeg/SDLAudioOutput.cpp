#include "Playback/FFmpeg/SDLAudioOutput.h"

#include <SDL2/SDL_audio.h>
#include <SDL2/SDL_hints.h>

#include <cstddef>
#include <mutex>

#include <dlfcn.h>

namespace tamsy {
namespace {

constexpr Uint16 periodFrames = 1024; // 21 ms: no sound server had to hurry for it

std::mutex subsystemMutex; // guards the count below, and SDL's opening and closing
int openDevices = 0;

/// Starts SDL's audio with what suits the machine; nothing to do while a device is open.
bool enterSubsystem() {
    if (openDevices > 0)
        return true;
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Tamsy Music");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Tamsy Music");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_ROLE, "music");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    return SDL_AudioInit(nullptr) == 0;
}

void leaveSubsystem() {
    if (--openDevices == 0)
        SDL_AudioQuit();
}

void fill(void* renderer, Uint8* bytes, int size) {
    const std::size_t count = static_cast<std::size_t>(size) / sizeof(StereoFrame);
    auto* frames = reinterpret_cast<StereoFrame*>(bytes);
    static_cast<AudioRenderer*>(renderer)->render(std::span(frames, count));
}

void ignoreMessage(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                   const char* /*format*/, ...) {}

/// ALSA writes dozens of lines to standard error while it finds that there is no card.
void silenceALSA() {
    using SetHandler = int (*)(decltype(&ignoreMessage));
    void* alsa = ::dlopen("libasound.so.2", RTLD_LAZY | RTLD_NOLOAD);
    if (!alsa)
        return;
    if (const auto set = reinterpret_cast<SetHandler>(::dlsym(alsa, "snd_lib_error_set_handler")))
        set(&ignoreMessage);
    ::dlclose(alsa); // stays loaded for SDL
}

/// Opens the default device and lets it run; 0 if there is none.
SDL_AudioDeviceID openDevice(AudioRenderer& renderer) {
    if (!enterSubsystem())
        return 0;
    ++openDevices;
    SDL_AudioSpec wanted{};
    wanted.freq = mediaSampleRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 2;
    wanted.samples = periodFrames;
    wanted.callback = &fill;
    wanted.userdata = &renderer;
    const SDL_AudioDeviceID device = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    if (device == 0)
        leaveSubsystem();
    else
        SDL_PauseAudioDevice(device, 0);
    return device;
}

} // namespace

std::unique_ptr<SDLAudioOutput> SDLAudioOutput::open(AudioRenderer& renderer) {
    const std::scoped_lock lock(subsystemMutex);
    silenceALSA();
    const std::uint32_t device = openDevice(renderer);
    return std::unique_ptr<SDLAudioOutput>(device == 0 ? nullptr : new SDLAudioOutput(device));
}

SDLAudioOutput::~SDLAudioOutput() {
    const std::scoped_lock lock(subsystemMutex);
    SDL_CloseAudioDevice(device_);
    leaveSubsystem();
}

bool SDLAudioOutput::isAlive() const {
    return SDL_GetAudioDeviceStatus(device_) != SDL_AUDIO_STOPPED;
}

} // namespace tamsy
