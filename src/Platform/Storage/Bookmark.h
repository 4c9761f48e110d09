#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tamsy {

class FileURL;

/// Bytes that give back a folder's address after a restart. Their form, version 1, is three lines,
/// each ended by a line feed:
///
///     tamsy-folder 1
///     <the address's absolute text>
///     <inode> <birth time, whole seconds> <nanoseconds>
///
/// The numbers are decimal; where the file system keeps no birth time the last line is empty. They
/// find a folder that was renamed where it lies: a number of an inode alone could have been given
/// to another folder since. Another version doesn't resolve here, and its bytes stay with their
/// owner.
class Bookmark {
  public:
    /// Nothing if `folder` is no directory that can be opened.
    [[nodiscard]] static std::optional<QByteArray> create(const FileURL& folder);

    /// The folder's address: the stored one if a directory can be opened there, whichever it is;
    /// else its new name beside the old one. Nothing if neither can be opened.
    [[nodiscard]] static std::optional<FileURL> resolve(QByteArrayView bytes);
};

} // namespace tamsy
