#include "Platform/Media/ImageDecoding.h"

#include <QBuffer>
#include <QImageReader>

#include <string_view>
#include <utility>

namespace tamsy {

namespace {

constexpr int longestSide = 2048;
constexpr qint64 mostPixels = qint64{64} * 1000 * 1000;
constexpr int allocationLimit = 256; // MiB, enough for the pixels above
// A progressive picture may repeat its passes over all its pixels as often as it likes; encoders
// write about ten.
constexpr qsizetype mostPasses = 100;

/// The decoder for the bytes; empty for what is no cover's format. Naming it keeps out formats
/// that are recognised by loose signs, or that may refer to other files.
QByteArray formatOf(const QByteArray& bytes) {
    using namespace std::string_view_literals; // which have their NULs within
    constexpr std::pair<std::string_view, const char*> signatures[] = {
        {"\xFF\xD8\xFF"sv, "jpeg"}, {"\x89PNG\r\n"sv, "png"}, {"GIF8"sv, "gif"}, {"BM"sv, "bmp"},
        {"II*\0"sv, "tiff"},        {"MM\0*"sv, "tiff"},
    };
    for (const auto& [signature, format] : signatures) {
        if (bytes.startsWith(signature))
            return format;
    }
    const bool isWebP = bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP";
    return isWebP ? "webp" : QByteArray();
}

bool isTooLarge(QSize size) {
    return !size.isValid() || qint64{size.width()} * size.height() > mostPixels;
}

} // namespace

QImage decodeImage(const QByteArray& bytes) {
    const QByteArray format = formatOf(bytes);
    if (format.isEmpty() || (format == "jpeg" && bytes.count("\xFF\xDA") > mostPasses))
        return {};
    static const bool isLimited = [] {
        QImageReader::setAllocationLimit(allocationLimit);
        return true;
    }();
    QBuffer buffer;
    buffer.setData(bytes);
    if (!isLimited || !buffer.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&buffer, format);
    reader.setDecideFormatFromContent(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (isTooLarge(size))
        return {};
    if (size.width() > longestSide || size.height() > longestSide)
        reader.setScaledSize(
            size.scaled(longestSide, longestSide, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

} // namespace tamsy
