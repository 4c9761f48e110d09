#pragma once

#include <chrono>
#include <cstddef>

namespace tamsy {

/// Marks, while it lives, that music is being read to play it. Takes no lock.
class MusicRead {
  public:
    MusicRead();
    ~MusicRead();
    MusicRead(const MusicRead&) = delete;
    MusicRead& operator=(const MusicRead&) = delete;
    MusicRead(MusicRead&&) = delete;
    MusicRead& operator=(MusicRead&&) = delete;

  private:
    std::ptrdiff_t start_ = 0; // index in the table of reads under way
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

    /// A file that doesn't respond to the music delays nobody else for longer.
    static constexpr std::chrono::milliseconds maxWait{2000};

    /// If the calling thread yields, waits until music has stopped reading for a moment. Returns
    /// how many of `wanted` bytes the thread should then read at once.
    [[nodiscard]] static std::size_t waitForMusic(std::size_t wanted);
};

} // namespace tamsy
