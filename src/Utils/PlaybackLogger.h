#pragma once

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

namespace tamsy {

/// A diagnostic channel for following what engines and player do. Nothing in the program reads it.
/// It is off in release builds, where a message is dropped at once and no file is made; debug
/// builds append to `$XDG_STATE_HOME/Tamsy Music/playback.log` (`~/.local/state` without the
/// variable).
class PlaybackLogger {
  public:
    /// Writes `message` as one line behind a time stamp. Any thread; never waits for the file.
    static void log(const QString& message);

  private:
    PlaybackLogger();
    static PlaybackLogger& shared();
    static QString timestamp();
    void write(const QString& message);
    void runWriter(const std::stop_token& stop);

    QByteArray fileURL_;
    std::mutex mutex_; // guards the lines
    std::condition_variable_any changed_;
    QByteArray lines_;    // on their way to the file
    std::jthread writer_; // its end waits until they are there
};

} // namespace tamsy
