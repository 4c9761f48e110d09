#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

namespace tamsy {

class FileURL;

/// The cover cache on disk: one JPEG file per track and size, whose name depends on the track's
/// address alone. Only the user can read its files and directories. Nothing is ever deleted. Any
/// thread.
class ThumbnailFiles {
  public:
    /// The cache below `base`, the user's directory for application data.
    explicit ThumbnailFiles(QByteArray base) : base_(std::move(base)) {}

    /// `$XDG_DATA_HOME` or its default (XDG Base Directory Specification).
    [[nodiscard]] static QByteArray applicationSupportDirectory();

    /// The directory of the size named `size`, created if it is missing.
    [[nodiscard]] QByteArray cacheDirectory(QByteArrayView size) const;

    /// The path of `url`'s thumbnail. Creates the directory if it is missing.
    [[nodiscard]] QByteArray diskPath(const FileURL& url, QByteArrayView size) const;

    /// The path of `url`'s thumbnail if it exists, else empty. Creates nothing.
    [[nodiscard]] QByteArray storedPath(const FileURL& url, QByteArrayView size) const;

    /// The cached picture; null if there is none or it is damaged.
    [[nodiscard]] QImage read(const FileURL& url, QByteArrayView size) const;

    /// Replaces the cached picture. Concurrent reads see the old file or the new one. If it can't
    /// be written, the old one stays.
    void write(const QImage& image, const FileURL& url, QByteArrayView size) const;

  private:
    [[nodiscard]] QByteArray directory(QByteArrayView size) const;

    QByteArray base_;
};

} // namespace tamsy
