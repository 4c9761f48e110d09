#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

namespace tamsy {

/// A log of what the engines and the player do, for diagnosis; the program itself never reads it.
/// Release builds drop every message and make no file; debug builds append to
/// `$XDG_STATE_HOME/Tamsy Music/playback.log` (`~/.local/state` if the variable is unset).
class PlaybackLogger {
  public:
    /// Appends a line: a time stamp and `message`. Any thread; never waits for the file.
    static void log(const QString& message);

  private:
    PlaybackLogger();
    static PlaybackLogger& shared();
    static QString timestamp();
    void write(const QString& message);
    void runWriter(const std::stop_token& stop);

    QByteArray fileURL_;
    std::mutex mutex_; // guards lines_
    std::condition_variable_any changed_;
    QByteArray lines_;    // not written yet
    std::jthread writer_; // writes them all before it ends
};

} // namespace tamsy
