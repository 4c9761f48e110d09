#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tamsy {

/// A file that is only replaced as a whole: a reader finds the old content or the new one, even
/// after a power cut. Paths are bytes.
class StoredFile {
  public:
    explicit StoredFile(QByteArray path) : path_(std::move(path)) {}

    /// The whole content, with spare capacity so that the JSON parser needn't copy it. Nothing if
    /// the file is missing or can't be read.
    [[nodiscard]] std::optional<QByteArray> read() const;

    /// The same; sets `error` to 0 or the system's error number.
    [[nodiscard]] std::optional<QByteArray> read(int& error) const;

    /// False only if certainly nothing exists at the path.
    [[nodiscard]] bool mayExist() const;

    /// Writes `content` to a temporary file that only its owner can read, syncs it, renames it over
    /// this file and syncs the directory, which is created if it is missing. False if any of that
    /// fails; the old content stays.
    [[nodiscard]] bool replace(QByteArrayView content) const;

    /// The same without syncing, for caches: after a power cut the file may be missing or empty.
    /// Several threads may write the same file at once; the last one wins.
    [[nodiscard]] bool replaceUnsynced(QByteArrayView content) const;

    /// Links the current content to an unused name, "<path>.damaged-<time>", or renames it if the
    /// file system has no links. False if neither works.
    [[nodiscard]] bool keepAside() const;

    /// Links the current content to "<path>.previous", or copies it there if the file system has no
    /// links. Replaces an older one.
    [[nodiscard]] bool keepPrevious() const;

    /// Stores `content` as "<path>.previous".
    [[nodiscard]] bool replacePrevious(QByteArrayView content) const;

  private:
    [[nodiscard]] QByteArray directory() const;

    QByteArray path_;
};

/// Creates the directory `path` and its parents, each accessible to its owner only. True if it
/// exists.
[[nodiscard]] bool makeDirectories(const QByteArray& path);

} // namespace tamsy
