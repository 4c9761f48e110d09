#pragma once

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include "Utils/FileURL.h"

#include <algorithm>
#include <csignal>

namespace tamsy::test {

/// A folder behind a slow file system, mounted anew so that nothing is cached.
class SlowMount {
  public:
    /// `program` is the file system's, the delay in milliseconds a request, the rate in megabytes
    /// a second.
    SlowMount(const QString& program, const QString& folder, const QString& delay,
              const QString& rate) {
        program_.setProcessChannelMode(QProcess::ForwardedChannels);
        program_.start(program, {folder, point_.path(), delay, rate});
        const bool isDecided = QTest::qWaitFor([this] {
            return program_.state() == QProcess::NotRunning || !QDir(point_.path()).isEmpty();
        });
        isMounted_ = isDecided && program_.state() != QProcess::NotRunning;
    }
    ~SlowMount() {
        hang(false);
        QProcess::execute(u"fusermount3"_qs, {u"-uz"_qs, point_.path()});
        program_.kill(); // it would wait for files that are open still
        program_.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(SlowMount)

    [[nodiscard]] bool isMounted() const { return isMounted_; }
    [[nodiscard]] FileURL folder() const {
        return FileURL::fromPath(QFile::encodeName(point_.path()));
    }
    [[nodiscard]] FileURL file(const char* name) const { return folder().appending(name); }

    /// Nothing is answered while it hangs.
    void hang(bool on) { ::kill(static_cast<pid_t>(program_.processId()), on ? SIGUSR1 : SIGUSR2); }

  private:
    QTemporaryDir point_;
    QProcess program_;
    bool isMounted_ = false;
};

/// The longest time for which the event loop stood still, in milliseconds.
class LongestBlock {
  public:
    LongestBlock() {
        QObject::connect(&timer_, &QTimer::timeout,
                         [this] { longest_ = std::max(longest_, sinceLast_.restart()); });
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.start(5);
        sinceLast_.start();
    }
    [[nodiscard]] qint64 milliseconds() const { return std::max(longest_, sinceLast_.elapsed()); }

  private:
    QTimer timer_;
    QElapsedTimer sinceLast_;
    qint64 longest_ = 0;
};

} // namespace tamsy::test
