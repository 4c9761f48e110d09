#pragma once

#include <sys/types.h>

namespace tamsy {

/// Real-time priority for the threads that feed a device, as desktops grant it: by RealtimeKit on
/// the system bus (`org.freedesktop.RealtimeKit1`), in a sandbox by its portal
/// (`org.freedesktop.portal.Realtime`). A thread that runs too long without a pause goes back to
/// normal priority.
class RealtimePriority {
  public:
    /// Asks for it and returns at once; a refusal costs a line in the log. `thread` is the system's
    /// number of a thread of this process. Any thread.
    static void request(pid_t thread);
};

} // namespace tamsy
