#include "Formats/PictureHeader.h"

#include "Formats/ByteCursor.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace tamsy {
namespace {

constexpr qint64 bytesPerPixel = 4;

qint64 pixelsOf(QSize size) {
    return qint64{size.width()} * size.height();
}

/// What a JPEG's frame header says about the memory that its coefficients need.
struct JpegFrame {
    bool isProgressive = false;
    int components = 0;
    double samplesPerPixel = 0;
};

std::optional<JpegFrame> readFrame(ByteCursor segment, std::uint8_t marker) {
    constexpr std::uint64_t precisionAndSize = 5;
    if (!segment.skip(precisionAndSize))
        return std::nullopt;
    const int components = segment.readU8().value_or(0);
    int samples = 0;
    int largestUnit = 1;
    for (int component = 0; component < components; ++component) {
        const std::uint32_t numberFactorsAndTable = segment.readU24().value_or(0);
        const int unit = static_cast<int>((numberFactorsAndTable >> 12U & 0x0FU) *
                                          (numberFactorsAndTable >> 8U & 0x0FU));
        samples += unit;
        largestUnit = std::max(largestUnit, unit);
    }
    return JpegFrame{.isProgressive = marker == 0xC2,
                     .components = components,
                     .samplesPerPixel = static_cast<double>(samples) / largestUnit};
}

bool isFrameMarker(std::uint8_t marker) {
    const bool isOtherTable = marker == 0xC4 || marker == 0xC8 || marker == 0xCC;
    return (marker & 0xF0U) == 0xC0 && !isOtherTable;
}

/// The marker after any number of fill bytes.
std::optional<std::uint8_t> nextMarker(ByteCursor& cursor) {
    constexpr std::uint8_t fill = 0xFF;
    if (cursor.readU8() != fill)
        return std::nullopt;
    auto marker = cursor.readU8();
    while (marker == fill)
        marker = cursor.readU8();
    return marker;
}

/// Bytes per pixel that the decoder keeps until the last scan; 0 if there is only one.
double coefficientBytes(const QByteArray& bytes) {
    constexpr double bytesPerCoefficient = 2;
    constexpr std::uint8_t startOfScan = 0xDA;
    ByteCursor cursor(
        std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size()))));
    std::optional<JpegFrame> frame;
    if (!cursor.skip(2))
        return 0;
    while (const auto marker = nextMarker(cursor)) {
        const std::uint16_t length = cursor.readU16().value_or(0);
        const auto segment = length < 2 ? std::nullopt : cursor.readBytes(length - 2U);
        if (!segment)
            break;
        if (isFrameMarker(*marker))
            frame = readFrame(ByteCursor(*segment), *marker);
        if (*marker != startOfScan || !frame)
            continue;
        const bool isSplit = ByteCursor(*segment).readU8() != frame->components;
        return frame->isProgressive || isSplit ? frame->samplesPerPixel * bytesPerCoefficient : 0;
    }
    return 0;
}

qint64 jpegMemory(const QByteArray& bytes, QSize size, QSize scaled) {
    // The decoder scales in eighths; the result is scaled down from the next larger step.
    const double eighths = std::ceil(8.0 * scaled.width() / std::max(1, size.width()));
    const double decoded = static_cast<double>(pixelsOf(size)) * eighths * eighths / 64;
    return static_cast<qint64>(static_cast<double>(pixelsOf(size)) * coefficientBytes(bytes) +
                               decoded * bytesPerPixel);
}

bool isScaledByRow(const QByteArray& png) {
    constexpr qsizetype depth = 24;
    constexpr qsizetype colorType = 25;
    constexpr qsizetype interlacing = 28;
    if (png.size() <= interlacing || png[depth] != 8 || png[interlacing] != 0)
        return false;
    return png[colorType] == 2 || png[colorType] == 6;
}

} // namespace

QByteArray pictureFormat(const QByteArray& bytes) {
    using namespace std::string_view_literals; // they may contain NULs
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

qint64 decodingMemory(const QByteArray& format, const QByteArray& bytes, QSize size, QSize scaled) {
    const qint64 result = pixelsOf(scaled) * bytesPerPixel;
    if (format == "jpeg")
        return jpegMemory(bytes, size, scaled) + (scaled == size ? 0 : result);
    if (format == "png" && isScaledByRow(bytes))
        return result;
    // Lossless WebP and wide TIFF samples are in memory twice.
    const qint64 copies = format == "webp" || format == "tiff" ? 2 : 1;
    return pixelsOf(size) * bytesPerPixel * copies + (scaled == size ? 0 : result);
}

} // namespace tamsy
