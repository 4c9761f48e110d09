#pragma once

#include <QtGlobal>

#include <chrono>

namespace tamsy {

/// Limits what reading and decoding all pictures of one file may cost: a file can have hundreds
/// that turn out to be damaged at their last byte. One thread.
class PictureBudget {
  public:
    /// Processor time. A baseline JPEG of 25 million pixels takes half of it.
    static constexpr std::chrono::milliseconds processorTime{450};

    /// Memory for one picture, including its encoded bytes.
    static constexpr qint64 memory = qint64{64} << 20;

    /// Total bytes of the items tried, pictures or not.
    static constexpr qint64 maxBytes = qint64{64} << 20;

    static constexpr qint64 maxPixels = qint64{64} * 1000 * 1000;

    /// Accounts for the bytes of one more item. False if the limit is exceeded or no time is left.
    [[nodiscard]] bool takeBytes(qint64 count) {
        bytes_ += count;
        return bytes_ <= maxBytes && hasTime();
    }

    /// Accounts for the pixels of one more picture. False if the limit is exceeded.
    [[nodiscard]] bool takePixels(qint64 count) {
        pixels_ += count;
        return pixels_ <= maxPixels;
    }

    /// Whether processor time is left for this file.
    [[nodiscard]] bool hasTime() const;

  private:
    /// The calling thread's processor time.
    [[nodiscard]] static std::chrono::nanoseconds now();

    std::chrono::nanoseconds start_ = now();
    qint64 bytes_ = 0;
    qint64 pixels_ = 0;
};

} // namespace tamsy
