#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <miniaudio.h>

#include <memory>
#include <optional>
#include <span>

namespace tamsy {

class FileURL;

/// One open file, decoded ahead of the device by a thread of its own: the only one that reads the
/// file, and so the only one that a slow or dead file system can hold up. It keeps four seconds of
/// sound and more in memory, sleeps in between, and is joined by nobody; one that never comes back
/// from a read is left behind.
///
/// All operations belong to the interface thread but for `read`, `hasEnded`, `endPosition` and
/// `setLength`, which the device's thread calls; these take no lock, no memory and read no file.
class DecodeAhead {
  public:
    /// Begins to open `url`.
    explicit DecodeAhead(const FileURL& url);
    ~DecodeAhead();
    DecodeAhead(const DecodeAhead&) = delete;
    DecodeAhead& operator=(const DecodeAhead&) = delete;

    /// How opening ended; nothing while it goes on. The file counts as open once there is enough
    /// sound to start with.
    [[nodiscard]] std::optional<ma_result> opened() const;

    /// The same, after at most 40 ms of waiting.
    [[nodiscard]] std::optional<ma_result> waitUntilOpened() const;

    /// Begins to move to `seconds`, at most to the end; if that fails, back to `returnTo`. What
    /// hasn't been read yet is dropped. Call only while no device runs.
    void seek(double seconds, double returnTo);

    /// How the latest seek ended; nothing while it goes on.
    [[nodiscard]] std::optional<ma_result> sought() const;

    /// The same, after at most 40 ms of waiting.
    [[nodiscard]] std::optional<ma_result> waitUntilSought() const;

    /// True while the file owes frames: it is being opened or moved, or the device has run dry.
    [[nodiscard]] bool isWaiting() const;

    /// Whether a device reads, or is about to: without one the file's thread sleeps once it has
    /// decoded enough.
    void setRunning(bool isRunning);

    /// In seconds; 0 while it is unknown. Any thread.
    [[nodiscard]] double length() const;

    /// Corrects the length by what playing has shown.
    void setLength(double seconds);

    /// Fills the front of `frames` and gives their number. Fewer are the end, if `hasEnded` says
    /// so, or have yet to come.
    std::size_t read(std::span<StereoFrame> frames) noexcept;

    /// Whether everything up to the end has been read.
    [[nodiscard]] bool hasEnded() const noexcept;

    /// How far into the file the end came, in seconds; 0 when it can't be told.
    [[nodiscard]] double endPosition() const noexcept;

  private:
    struct Shared;
    class Worker;

    const std::shared_ptr<Shared> shared_; // with the thread, which may outlive this
};

} // namespace tamsy
