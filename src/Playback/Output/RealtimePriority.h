#pragma once

#include <sys/types.h>

namespace tamsy {

/// Real-time priority for the threads that feed a device. It is granted by RealtimeKit on the
/// system bus (`org.freedesktop.RealtimeKit1`), or in a Flatpak by the portal
/// (`org.freedesktop.portal.Realtime`). If such a thread runs too long without blocking, all of
/// them return to normal priority.
class RealtimePriority {
  public:
    /// Requests it in the background; a failure is only logged. `thread` is the ID (`gettid`) of a
    /// thread of this process. Any thread.
    static void request(pid_t thread);
};

} // namespace tamsy
