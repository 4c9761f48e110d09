#include "Playback/FFmpeg/MediaBackendModule.h"

#include "Utils/PlaybackLogger.h"

#include <QByteArray>

#include <dlfcn.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <climits>

namespace tamsy {
namespace {

constexpr const char* moduleName = "/lib/tamsy-music/libtamsy-media.so";

/// An installed program is one folder below the prefix; those in a build tree are up to three below
/// its top.
constexpr std::array prefixes = {"/..", "", "/../..", "/../../.."};

QByteArray executableDirectory() {
    std::array<char, PATH_MAX> path{};
    const ssize_t size = ::readlink("/proc/self/exe", path.data(), path.size());
    const QByteArray executable(path.data(), std::max<qsizetype>(0, size));
    return executable.first(std::max<qsizetype>(0, executable.lastIndexOf('/')));
}

void* openModule() {
    const QByteArray directory = executableDirectory();
    for (const char* prefix : prefixes) {
        const QByteArray path = directory + prefix + moduleName;
        // Never unloaded: its libraries have threads and handlers that outlive any use.
        if (void* module = ::dlopen(path.constData(), RTLD_LAZY | RTLD_LOCAL | RTLD_NODELETE))
            return module;
    }
    PlaybackLogger::log(QLatin1String("[AV] no media module: ") +
                        QString::fromLocal8Bit(::dlerror()));
    return nullptr;
}

MediaBackend* load() {
    void* module = openModule();
    if (!module)
        return nullptr;
    const auto entry = reinterpret_cast<MediaBackendEntry>(::dlsym(module, mediaBackendEntryName));
    return entry ? entry() : nullptr;
}

} // namespace

MediaBackend* loadMediaBackend() {
    static MediaBackend* const backend = load();
    return backend;
}

} // namespace tamsy
