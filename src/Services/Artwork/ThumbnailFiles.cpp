#include "Services/Artwork/ThumbnailFiles.h"

#include "Platform/Storage/RegularFile.h"
#include "Platform/Storage/StoredFile.h"
#include "Utils/BaseDirectory.h"
#include "Utils/FNV1a.h"
#include "Utils/FileURL.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

#include <span>

#include <unistd.h>

namespace tamsy {
namespace {

/// Compression factor 0.85.
constexpr int jpegQuality = 85;

/// No thumbnail of ours is larger. Thumbnails are read on the interface thread, which a huge file
/// would hold up.
constexpr qsizetype maxFileSize = 4 << 20; // bytes
constexpr int maxSide = 2048;              // pixels

/// Whether the bytes run from a start-of-image to an end-of-image marker (ISO/IEC 10918-1). A
/// decoder fills a truncated file up with grey and reports nothing.
bool isWholeJpeg(QByteArrayView bytes) {
    return bytes.startsWith("\xff\xd8") && bytes.endsWith("\xff\xd9");
}

QByteArray readWhole(const QByteArray& path) {
    const RegularFile file(path);
    if (!file.isOpen() || file.status().st_size > maxFileSize)
        return {};
    QByteArray bytes(file.status().st_size, Qt::Uninitialized);
    const ssize_t count = file.read(0, std::as_writable_bytes(std::span(bytes)));
    return count == bytes.size() ? bytes : QByteArray();
}

QByteArray jpegBytes(const QImage& image) {
    // JPEG has no transparency: a cover gets a white background.
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter(&opaque).drawImage(0, 0, image);
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(jpegQuality);
    return writer.write(opaque) ? buffer.data() : QByteArray();
}

QByteArray fileName(const FileURL& url) {
    return '/' + fnv1a64(url.absoluteString()) + ".jpg";
}

} // namespace

QByteArray ThumbnailFiles::applicationSupportDirectory() {
    return baseDirectory(BaseDirectory::Data);
}

QByteArray ThumbnailFiles::directory(QByteArrayView size) const {
    return base_ + "/Tamsy Music/Thumbnails/" + size.toByteArray();
}

QByteArray ThumbnailFiles::cacheDirectory(QByteArrayView size) const {
    QByteArray path = directory(size);
    // If this fails, so do the reads and writes that follow.
    static_cast<void>(makeDirectories(path));
    return path;
}

QByteArray ThumbnailFiles::diskPath(const FileURL& url, QByteArrayView size) const {
    return cacheDirectory(size) + fileName(url);
}

QByteArray ThumbnailFiles::storedPath(const FileURL& url, QByteArrayView size) const {
    QByteArray path = directory(size) + fileName(url);
    return ::access(path.constData(), F_OK) == 0 ? path : QByteArray();
}

QImage ThumbnailFiles::read(const FileURL& url, QByteArrayView size) const {
    QByteArray bytes = readWhole(diskPath(url, size));
    if (!isWholeJpeg(bytes))
        return {};
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "jpeg");
    const QSize pixels = reader.size();
    return pixels.width() > maxSide || pixels.height() > maxSide ? QImage() : reader.read();
}

void ThumbnailFiles::write(const QImage& image, const FileURL& url, QByteArrayView size) const {
    const QByteArray bytes = jpegBytes(image);
    if (bytes.isEmpty())
        return;
    // If this fails, the cover is read from the track again next time.
    static_cast<void>(StoredFile(diskPath(url, size)).replaceUnsynced(bytes));
}

} // namespace tamsy
