#pragma once

#include "Playback/FFmpeg/PlaybackLoop.h"

#include <QObject>
#include <QTimer>

#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace tamsy {

/// The thread that decodes for one media player after another and owns the device, which stays open
/// between files. The first file starts it. If it hangs in a file system that doesn't respond, it
/// is abandoned when the next file comes, and replaced. All operations and the signal belong to the
/// interface thread; only the destructor blocks.
class MediaPlaybackThread : public QObject {
    Q_OBJECT
  public:
    MediaPlaybackThread();

    /// Ends the thread. One that is stuck in a dead file system is abandoned after half a second.
    ~MediaPlaybackThread() override;

    /// Replaces the current file with the one at `path` (bytes), paused. Returns the item number
    /// that reports and the following operations use; they do nothing for an item that isn't
    /// current.
    [[nodiscard]] std::uint64_t setItem(const QByteArray& path);
    void dropItem(std::uint64_t item);

    /// Opens the file at `path` (bytes) ahead, once the current one is decoded; none if it is
    /// empty.
    void prepare(const QByteArray& path);
    void setRunning(std::uint64_t item, bool running);
    void seek(std::uint64_t item, std::uint64_t number, double seconds);

    /// Sets the linear gain, 0 to 1, for this and all later items.
    void setVolume(float volume);

    /// Whether there is an underrun: the file is read more slowly than it plays.
    [[nodiscard]] bool hasRunDry() const;

    /// The ring buffer's number of about the frame that is heard now.
    [[nodiscard]] std::uint64_t heardFrames() const;

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
    QTimer stuckTimer_;                               // started by a new item
    std::vector<std::weak_ptr<Shared>> stuckThreads_; // expired once they have ended
    float volume_ = 1;
};

} // namespace tamsy
