#include "Platform/Desktop/SystemLog.h"

#include <syslog.h>

namespace tamsy {

void SystemLog::write(const QByteArray& line) {
    // The name is kept by pointer, and a second call of openlog changes nothing.
    static const bool isOpen = [] {
        ::openlog("tamsy-music", LOG_PID, LOG_USER);
        return true;
    }();
    if (isOpen)
        ::syslog(LOG_INFO, "%s", line.constData());
}

} // namespace tamsy
