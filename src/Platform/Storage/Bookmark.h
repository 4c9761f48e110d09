#pragma once

#include <QByteArray>
#include <QList>

#include <chrono>
#include <optional>
#include <vector>

namespace tamsy {

class FileURL;

/// Bytes that resolve to a folder's address after a restart. Format version 1 has three lines, each
/// ended by a line feed:
///
///     tamsy-folder 1
///     <the address's absolute text>
///     <inode> <birth time, whole seconds> <nanoseconds>
///
/// The numbers are decimal. They find a folder that was renamed within its parent; if the file
/// system records no birth time or doesn't answer, the line is empty. Other versions don't resolve.
class Bookmark {
  public:
    /// How long the interface thread waits for a disk that may be asleep or a share that is gone.
    static constexpr std::chrono::milliseconds patience{50};

    // Both wait for file systems for at most `limit`. A folder that hasn't answered by then counts
    // as present at its stored address, so that a sleeping disk hides no folder.

    /// Nothing if `folder` isn't a directory that can be opened.
    [[nodiscard]] static std::optional<QByteArray>
    create(const FileURL& folder, std::chrono::milliseconds limit = patience);

    /// For each bookmark the stored address if any directory can be opened there, else the address
    /// to which the folder was renamed. Nothing if neither can be opened.
    [[nodiscard]] static std::vector<std::optional<FileURL>>
    resolve(const QList<QByteArray>& bookmarks, std::chrono::milliseconds limit = patience);
};

} // namespace tamsy
