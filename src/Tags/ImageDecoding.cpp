#include "Tags/ImageDecoding.h"

#include "Formats/PictureHeader.h"

#include <QIODevice>
#include <QImageReader>

#include <algorithm>
#include <cstring>

namespace tamsy {

namespace {

constexpr int longestSide = 2048;
constexpr int allocationLimit = PictureBudget::memory >> 20; // MiB
// A hostile progressive picture may have any number of scans; encoders write about ten.
constexpr qsizetype maxPasses = 100;

/// Gives a decoder its bytes, and none once the time is used up: it can't be stopped otherwise.
class RationedBytes : public QIODevice {
  public:
    /// Both must outlive this. A read returns at most `largestRead` bytes.
    RationedBytes(const QByteArray& bytes, const PictureBudget& budget, qint64 largestRead)
        : bytes_(bytes), budget_(budget), largestRead_(largestRead) {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    [[nodiscard]] qint64 size() const override { return bytes_.size(); }
    [[nodiscard]] bool hasRunOut() const { return hasRunOut_; }

    bool seek(qint64 position) override {
        position_ = position;
        return QIODevice::seek(position);
    }

  protected:
    qint64 readData(char* target, qint64 length) override {
        hasRunOut_ = hasRunOut_ || !budget_.hasTime();
        if (hasRunOut_)
            return -1;
        const qint64 count =
            std::clamp<qint64>(bytes_.size() - position_, 0, std::min(length, largestRead_));
        std::memcpy(target, bytes_.constData() + position_, static_cast<std::size_t>(count));
        position_ += count;
        return count;
    }

    qint64 writeData(const char* /*data*/, qint64 /*length*/) override { return -1; }

  private:
    const QByteArray& bytes_;
    const PictureBudget& budget_;
    const qint64 largestRead_;
    qint64 position_ = 0;
    bool hasRunOut_ = false;
};

/// The largest read. A read of the JPEG decoder could otherwise contain a hundred scans of a large
/// flat picture; it accepts shorter reads. The other decoders' reads are small.
qint64 largestRead(const QByteArray& format, const QByteArray& bytes) {
    constexpr qint64 jpegPiece = 256;
    return format == "jpeg" ? jpegPiece : bytes.size();
}

/// The largest size that the memory budget allows to decode to; empty if there is none.
QSize affordableSize(const QByteArray& format, const QByteArray& bytes, QSize size) {
    for (const int side : {longestSide, longestSide / 2, longestSide / 4}) {
        QSize scaled = size;
        if (size.width() > side || size.height() > side)
            scaled = size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
        if (bytes.size() + decodingMemory(format, bytes, size, scaled) <= PictureBudget::memory)
            return scaled;
    }
    return {};
}

} // namespace

QImage decodeImage(const QByteArray& bytes, PictureBudget& budget) {
    const QByteArray format = pictureFormat(bytes);
    if (format.isEmpty() || !budget.hasTime() ||
        (format == "jpeg" && bytes.count("\xFF\xDA") > maxPasses))
        return {};
    [[maybe_unused]] static const bool isLimited =
        (QImageReader::setAllocationLimit(allocationLimit), true);
    RationedBytes device(bytes, budget, largestRead(format, bytes));
    QImageReader reader(&device, format);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (!size.isValid() || !budget.takePixels(qint64{size.width()} * size.height()))
        return {};
    const QSize scaled = affordableSize(format, bytes, size);
    if (scaled.isEmpty())
        return {};
    if (scaled != size)
        reader.setScaledSize(scaled);
    const QImage image = reader.read();
    return device.hasRunOut() ? QImage() : image;
}

QImage decodeImage(const QByteArray& bytes) {
    PictureBudget budget;
    return decodeImage(bytes, budget);
}

} // namespace tamsy
