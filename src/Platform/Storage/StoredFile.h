#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tamsy {

/// A file whose content is only ever replaced as a whole: whoever looks, after a power cut too,
/// finds the old content or the new one. Paths are bytes.
class StoredFile {
  public:
    explicit StoredFile(QByteArray path) : path_(std::move(path)) {}

    /// The whole content, with a little room behind it so that a parser needn't copy. Nothing if
    /// the file is missing or can't be read.
    [[nodiscard]] std::optional<QByteArray> read() const;

    /// True unless it is certain that nothing lies at the path.
    [[nodiscard]] bool mayExist() const;

    /// Writes `content` beside the file, readable by its owner alone, syncs it, renames it over the
    /// file and syncs the directory, which is made if it is missing. False, and the old content
    /// stays, if any of that fails.
    [[nodiscard]] bool replace(QByteArrayView content) const;

    /// The same without syncing, for what can be made again: after a power cut the file may be
    /// missing or empty. Several threads may write the same file at once; the last one wins.
    [[nodiscard]] bool replaceUnsynced(QByteArrayView content) const;

    /// Gives the present content a second name, "<path>.damaged-<time>", that nothing had before;
    /// where the file system has no second names the file moves there. False if neither works.
    [[nodiscard]] bool keepAside() const;

  private:
    [[nodiscard]] QByteArray directory() const;

    QByteArray path_;
};

/// Makes the directory `path` and those above it, each for the owner alone. True if it is there.
[[nodiscard]] bool makeDirectories(const QByteArray& path);

} // namespace tamsy
