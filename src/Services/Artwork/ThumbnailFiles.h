#pragma once

#include <QByteArray>
#include <QImage>

#include <optional>

namespace tamsy {

class FileURL;

/// The covers that survive restarts: one JPEG file a track and size, found by its name alone, which
/// hangs on the track's address and on nothing else. Files and directories are for the user alone.
/// Nothing is ever deleted. Holds no state but the place; any thread.
class ThumbnailFiles {
  public:
    /// Below `base`, the user's directory for application data.
    explicit ThumbnailFiles(QByteArray base) : base_(std::move(base)) {}

    /// `$XDG_DATA_HOME`, or what stands for it (XDG Base Directory Specification).
    [[nodiscard]] static QByteArray applicationSupportDirectory();

    /// The directory for the size that is called `size`, made if it is missing and can be made.
    [[nodiscard]] QByteArray cacheDirectory(QByteArrayView size) const;

    /// Where the thumbnail of `url` lies.
    [[nodiscard]] QByteArray diskPath(const FileURL& url, QByteArrayView size) const;

    /// The same if it lies there, else empty. Makes no directory.
    [[nodiscard]] QByteArray storedPath(const FileURL& url, QByteArrayView size) const;

    /// The kept picture. Null if there is none or it is broken.
    [[nodiscard]] QImage read(const FileURL& url, QByteArrayView size) const;

    /// Keeps `image` in place of what was there. Whoever reads meanwhile finds the old file or the
    /// new one; if it can't be written, the old one stays.
    void write(const QImage& image, const FileURL& url, QByteArrayView size) const;

  private:
    [[nodiscard]] QByteArray directory(QByteArrayView size) const;

    QByteArray base_;
};

} // namespace tamsy
