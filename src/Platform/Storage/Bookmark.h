#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

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
/// system records no birth time the line is empty. Other versions don't resolve.
class Bookmark {
  public:
    /// Nothing if `folder` isn't a directory that can be opened.
    [[nodiscard]] static std::optional<QByteArray> create(const FileURL& folder);

    /// The stored address if any directory can be opened there, else the address to which the
    /// folder was renamed. Nothing if neither can be opened.
    [[nodiscard]] static std::optional<FileURL> resolve(QByteArrayView bytes);
};

} // namespace tamsy
