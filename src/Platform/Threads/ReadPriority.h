#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstddef>

namespace tamsy {

/// One read of the music that plays, or is about to, while it lives. Takes no lock.
class MusicRead {
  public:
    /// `device` is the number of the file's device, as stat gives it.
    explicit MusicRead(dev_t device);
    ~MusicRead();
    MusicRead(const MusicRead&) = delete;
    MusicRead& operator=(const MusicRead&) = delete;
    MusicRead(MusicRead&&) = delete;
    MusicRead& operator=(MusicRead&&) = delete;

  private:
    dev_t device_;
};

/// Marks the calling thread's reads, while it lives, as ones that can wait: of covers, of lyrics.
class PatientReads {
  public:
    PatientReads();
    ~PatientReads();
    PatientReads(const PatientReads&) = delete;
    PatientReads& operator=(const PatientReads&) = delete;
    PatientReads(PatientReads&&) = delete;
    PatientReads& operator=(PatientReads&&) = delete;

    /// Music has to wait for one such piece at most.
    static constexpr std::size_t largestPiece = std::size_t{128} * 1024;

    /// A reader that never ends holds nobody up for good.
    static constexpr std::chrono::milliseconds longestWait{2000};

    /// The most bytes that the calling thread should read at once, after it has waited, if it is
    /// marked, until music has stopped reading from `device` for a moment.
    [[nodiscard]] static std::size_t pieceAfterMusic(dev_t device, std::size_t wanted);
};

} // namespace tamsy
