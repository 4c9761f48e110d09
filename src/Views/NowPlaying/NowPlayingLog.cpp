#include "Views/NowPlaying/NowPlayingLog.h"

#include <cstdio>

namespace tamsy {

void NowPlayingLog::write(const QString& message) {
    std::printf("[NowPlaying] %s\n", message.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace tamsy
