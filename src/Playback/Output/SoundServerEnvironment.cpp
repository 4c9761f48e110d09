#include "Playback/Output/SoundServerEnvironment.h"

#include <cstdlib>
#include <string>

namespace tamsy {

void describeStreamsToSoundServers() {
    // In a Flatpak the icon has the package's name.
    const char* package = std::getenv("FLATPAK_ID");
    const std::string icon = package != nullptr ? package : "tamsy-music";
    const std::string forPulse =
        "application.name='Tamsy Music' application.icon_name='" + icon + "' media.role='music'";
    const std::string forPipeWire =
        R"({ application.name = "Tamsy Music" application.icon-name = ")" + icon +
        R"(" media.role = "Music" })";
    constexpr int keepUsers = 0;
    ::setenv("PULSE_PROP", forPulse.c_str(), keepUsers);
    ::setenv("PULSE_LATENCY_MSEC", std::to_string(serverBufferLength).c_str(), keepUsers);
    ::setenv("PIPEWIRE_PROPS", forPipeWire.c_str(), keepUsers);
}

} // namespace tamsy
