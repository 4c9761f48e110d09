#include "Platform/Desktop/SystemLog.h"

#include <syslog.h>

namespace tamsy {

void SystemLog::write(const QByteArray& line) {
    // openlog keeps the pointer to the name, and repeating the call changes nothing.
    static const bool isOpen = [] {
        ::openlog("tamsy-music", LOG_PID, LOG_USER);
        return true;
    }();
    if (isOpen)
        ::syslog(LOG_INFO, "%s", line.constData());
}

} // namespace tamsy
