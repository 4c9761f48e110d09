#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>

namespace tamsy {

/// Marks a read of music that plays, or is about to, while it lives. Takes no lock.
class MusicRead {
  public:
    /// `device` is the file's device number (`st_dev`).
    explicit MusicRead(dev_t device);
    ~MusicRead();
    MusicRead(const MusicRead&) = delete;
    MusicRead& operator=(const MusicRead&) = delete;
    MusicRead(MusicRead&&) = delete;
    MusicRead& operator=(MusicRead&&) = delete;

  private:
    dev_t device_;
};

/// Makes the calling thread's reads, while it lives, yield to music: those of covers and lyrics.
class YieldingReads {
  public:
    YieldingReads();
    ~YieldingReads();
    YieldingReads(const YieldingReads&) = delete;
    YieldingReads& operator=(const YieldingReads&) = delete;
    YieldingReads(YieldingReads&&) = delete;
    YieldingReads& operator=(YieldingReads&&) = delete;

    /// Music waits for at most one read of this size.
    static constexpr std::size_t maxReadSize = std::size_t{128} * 1024;

    /// Bounds the wait in case music never stops reading.
    static constexpr std::chrono::milliseconds maxWait{2000};

    /// If the calling thread yields, waits until music has stopped reading from `device` for a
    /// moment. Returns how many of `wanted` bytes the thread should then read at once.
    [[nodiscard]] static std::size_t waitForMusic(dev_t device, std::size_t wanted);
};

} // namespace tamsy
