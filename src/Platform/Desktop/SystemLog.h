#pragma once

#include <QByteArray>

namespace tamsy {

/// The system log: the journal, or whatever receives syslog(3).
class SystemLog {
  public:
    /// Writes one line of text under the program's name, in all builds. Dropped if there is no log.
    /// Any thread.
    static void write(const QByteArray& line);
};

} // namespace tamsy
