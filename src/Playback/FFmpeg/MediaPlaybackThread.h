#pragma once

#include "Playback/FFmpeg/PlaybackLoop.h"

#include <QObject>
#include <QTimer>

#include <future>
#include <memory>
#include <thread>

namespace tamsy {

/// The thread that decodes for one media player after another and owns the device, which stays open
/// from file to file. It is started by the first file; one that hangs in a file which doesn't
/// answer is left behind when the next file comes, and another takes its place. All operations, and
/// the signal, belong to the interface thread and none of them waits.
class MediaPlaybackThread : public QObject {
    Q_OBJECT
  public:
    MediaPlaybackThread();

    /// Ends the thread. One that is stuck in a dead device or disk is left behind after a moment:
    /// the program must be able to end.
    ~MediaPlaybackThread() override;

    /// Holds the file at `path`, given in bytes, in place of the present one; paused. Gives the
    /// number by which the reports and the operations below name it. They do nothing for an item
    /// that isn't the current one.
    [[nodiscard]] std::uint64_t setItem(const QByteArray& path);
    void dropItem(std::uint64_t item);
    void setRunning(std::uint64_t item, bool running);
    void seek(std::uint64_t item, std::uint64_t number, double seconds);

    /// Linear, 0 to 1, for this and every later item.
    void setVolume(float volume);

    /// Whether the sound has stopped for want of frames: the file is slower than its playing.
    [[nodiscard]] bool hasRunDry() const;

    /// The ring's number of the frame that is played next.
    [[nodiscard]] std::uint64_t consumedFrames() const;

  Q_SIGNALS:
    void reported(const tamsy::PlaybackReport& report);

  private:
    struct Shared;
    void start();
    void deliver();
    void replaceStuckThread();

    std::shared_ptr<Shared> shared_;
    std::future<void> finished_;
    std::thread thread_;
    QTimer stuckTimer_; // runs from a new item on
    int stuckThreads_ = 0;
    float volume_ = 1;
};

} // namespace tamsy
