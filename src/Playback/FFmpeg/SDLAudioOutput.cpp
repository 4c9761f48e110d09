#include "Playback/FFmpeg/SDLAudioOutput.h"

#include <SDL2/SDL_audio.h>
#include <SDL2/SDL_hints.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <mutex>
#include <string_view>
#include <utility>

#include <dlfcn.h>

namespace tamsy {
namespace {

using Clock = std::chrono::steady_clock;

/// SDL doesn't notice the end of a PipeWire server: the device stays open and pulls no more frames.
constexpr std::chrono::seconds silenceLimit{2};

/// Frames per callback. SDL buffers two or three times as many, 85 to 128 ms.
constexpr Uint16 periodFrames = 2048;

std::mutex subsystemMutex; // guards the count below, and SDL's opening and closing
int openDevices = 0;

/// Starts SDL's audio with the first driver that works, unless a device is open already. The
/// PulseAudio driver isn't tried, since no server was found.
bool enterSubsystem() {
    if (openDevices > 0)
        return true;
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Tamsy Music");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Tamsy Music");
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    constexpr std::array<std::string_view, 4> real = {"pipewire", "alsa", "jack", "sndio"};
    return std::ranges::any_of(
        real, [](std::string_view driver) { return SDL_AudioInit(driver.data()) == 0; });
}

void leaveSubsystem() {
    if (--openDevices == 0)
        SDL_AudioQuit();
}

void ignoreMessage(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                   const char* /*format*/, ...) {}

/// Stops ALSA from writing dozens of lines to standard error if there is no sound card.
void silenceALSA() {
    using SetHandler = int (*)(decltype(&ignoreMessage));
    void* alsa = ::dlopen("libasound.so.2", RTLD_LAZY | RTLD_NOLOAD);
    if (!alsa)
        return;
    if (const auto set = reinterpret_cast<SetHandler>(::dlsym(alsa, "snd_lib_error_set_handler")))
        set(&ignoreMessage);
    ::dlclose(alsa); // stays loaded for SDL
}

} // namespace

std::unique_ptr<SDLAudioOutput> SDLAudioOutput::open(AudioRenderer& renderer) {
    std::unique_ptr<SDLAudioOutput> output(new SDLAudioOutput(renderer));
    return output->openDevice() ? std::move(output) : nullptr;
}

void SDLAudioOutput::fill(void* output, std::uint8_t* bytes, int size) {
    auto* self = static_cast<SDLAudioOutput*>(output);
    self->pulledAt_ = Clock::now().time_since_epoch();
    const std::size_t count = static_cast<std::size_t>(size) / sizeof(StereoFrame);
    self->renderer_.render(std::span(reinterpret_cast<StereoFrame*>(bytes), count));
}

SDLAudioOutput::~SDLAudioOutput() {
    closeDevice();
}

bool SDLAudioOutput::openDevice() {
    const std::scoped_lock lock(subsystemMutex);
    silenceALSA();
    if (!enterSubsystem())
        return false;
    ++openDevices;
    SDL_AudioSpec wanted{};
    wanted.freq = mediaSampleRate;
    wanted.format = AUDIO_F32SYS;
    wanted.channels = 2;
    wanted.samples = periodFrames;
    wanted.callback = &fill;
    wanted.userdata = this;
    device_ = SDL_OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    if (device_ == 0)
        leaveSubsystem();
    return device_ != 0;
}

void SDLAudioOutput::closeDevice() {
    const std::scoped_lock lock(subsystemMutex);
    if (device_ == 0)
        return;
    SDL_CloseAudioDevice(std::exchange(device_, 0));
    leaveSubsystem();
}

bool SDLAudioOutput::start() {
    if (device_ == 0 && !openDevice())
        return false;
    pulledAt_ = Clock::now().time_since_epoch();
    SDL_PauseAudioDevice(device_, 0);
    return true;
}

void SDLAudioOutput::hold() {
    closeDevice();
}

bool SDLAudioOutput::isAlive() const {
    return device_ == 0 || (SDL_GetAudioDeviceStatus(device_) != SDL_AUDIO_STOPPED &&
                            Clock::now().time_since_epoch() - pulledAt_.load() < silenceLimit);
}

} // namespace tamsy
