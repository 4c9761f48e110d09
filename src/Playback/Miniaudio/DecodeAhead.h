#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <miniaudio.h>

#include <memory>
#include <optional>
#include <span>

namespace tamsy {

class FileURL;

/// One open file, decoded ahead of the device by a thread of its own. Only this thread reads the
/// file, so a slow or dead file system blocks nothing else. It keeps at least four seconds of sound
/// in memory and sleeps in between. It is never joined; one that never returns from a read is
/// abandoned.
///
/// All operations belong to the interface thread except `read`, `hasEnded`, `endPosition` and
/// `setLength`, which the device's thread calls; these take no lock, allocate nothing and read no
/// file.
class DecodeAhead {
  public:
    /// Starts opening `url`.
    explicit DecodeAhead(const FileURL& url);
    ~DecodeAhead();
    DecodeAhead(const DecodeAhead&) = delete;
    DecodeAhead& operator=(const DecodeAhead&) = delete;

    /// The result of opening; nothing while it isn't finished. The file counts as open once there
    /// are enough frames to start.
    [[nodiscard]] std::optional<ma_result> opened() const;

    /// The same, waiting for at most 40 ms.
    [[nodiscard]] std::optional<ma_result> waitUntilOpened() const;

    /// Starts a seek to `seconds`, at most to the end; if that fails, back to `returnTo`. Discards
    /// the frames not yet read; a device that may still read drops them itself.
    void seek(double seconds, double returnTo, bool isDeviceStopped);

    /// The result of the latest seek; nothing while it isn't finished.
    [[nodiscard]] std::optional<ma_result> sought() const;

    /// The same, waiting for at most 40 ms.
    [[nodiscard]] std::optional<ma_result> waitUntilSought() const;

    /// True while frames are missing: the file is being opened or seeked, or there is an underrun.
    [[nodiscard]] bool isWaiting() const;

    /// Whether a device reads, or is about to. Otherwise the thread sleeps once it has decoded
    /// enough.
    void setRunning(bool isRunning);

    /// The duration in seconds; 0 while it is unknown. Any thread.
    [[nodiscard]] double length() const;

    /// Corrects the duration once playback has shown it.
    void setLength(double seconds);

    /// Reads into `frames` and returns their number. Fewer mean the end, if `hasEnded`, or an
    /// underrun.
    std::size_t read(std::span<StereoFrame> frames) noexcept;

    /// Whether all frames up to the end have been read.
    [[nodiscard]] bool hasEnded() const noexcept;

    /// The position of the end in seconds; 0 if unknown.
    [[nodiscard]] double endPosition() const noexcept;

  private:
    struct Shared;
    class Worker;

    const std::shared_ptr<Shared> shared_; // shared with the thread, which may outlive this
};

} // namespace tamsy
