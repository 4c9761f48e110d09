#include "Playback/Output/SoundServerNoise.h"

#include <dlfcn.h>

#include <initializer_list>

namespace tamsy {
namespace {

using AlsaHandler = void (*)(const char* file, int line, const char* function, int error,
                             const char* format, ...);
using JackHandler = void (*)(const char* message);

void ignoreAlsa(const char* /*file*/, int /*line*/, const char* /*function*/, int /*error*/,
                const char* /*format*/, ...) {}
void ignoreJack(const char* /*message*/) {}

template <typename Setter>
Setter find(void* library, const char* name) {
    return reinterpret_cast<Setter>(dlsym(library, name));
}

} // namespace

void silenceSoundLibraries() {
    // The libraries stay loaded, since the handlers are set in them.
    if (void* alsa = dlopen("libasound.so.2", RTLD_NOW | RTLD_LOCAL)) {
        if (const auto set = find<int (*)(AlsaHandler)>(alsa, "snd_lib_error_set_handler"))
            set(ignoreAlsa);
    }
    if (void* jack = dlopen("libjack.so.0", RTLD_NOW | RTLD_LOCAL)) {
        for (const char* name : {"jack_set_error_function", "jack_set_info_function"}) {
            if (const auto set = find<void (*)(JackHandler)>(jack, name))
                set(ignoreJack);
        }
    }
}

} // namespace tamsy
