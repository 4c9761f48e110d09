#pragma once

#include <QByteArray>

namespace tamsy {

/// The system's log: the journal, or whatever takes syslog(3).
class SystemLog {
  public:
    /// Writes `line`, one line of text, under the program's name. Always on; any thread. Without a
    /// log on this machine the line is dropped.
    static void write(const QByteArray& line);
};

} // namespace tamsy
