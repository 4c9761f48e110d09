#pragma once

#include <QtGlobal>

#include <chrono>

namespace tamsy {

/// What reading and decoding the pictures of one file may cost, all of them together: a file can
/// hold hundreds that turn out to be damaged at their last byte. One thread.
class PictureBudget {
  public:
    /// Processor time; a baseline JPEG of 25 million pixels takes half of it.
    static constexpr std::chrono::milliseconds processorTime{450};

    /// Memory that one picture may take, its file's bytes counted.
    static constexpr qint64 memory = qint64{64} << 20;

    /// Bytes of all items that are tried, pictures or not.
    static constexpr qint64 mostBytes = qint64{64} << 20;

    static constexpr qint64 mostPixels = qint64{64} * 1000 * 1000;

    /// Takes the bytes of one more item; false once there were too many, or no time is left.
    [[nodiscard]] bool takeBytes(qint64 count) {
        bytes_ += count;
        return bytes_ <= mostBytes && hasTime();
    }

    /// Takes the pixels of one more picture; false once there were too many.
    [[nodiscard]] bool takePixels(qint64 count) {
        pixels_ += count;
        return pixels_ <= mostPixels;
    }

    /// Whether the calling thread has processor time left for this file.
    [[nodiscard]] bool hasTime() const;

  private:
    /// Processor time of the calling thread.
    [[nodiscard]] static std::chrono::nanoseconds now();

    std::chrono::nanoseconds start_ = now();
    qint64 bytes_ = 0;
    qint64 pixels_ = 0;
};

} // namespace tamsy
