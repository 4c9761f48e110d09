#pragma once

#include <QByteArrayView>

#include <functional>
#include <stop_token>

namespace tamsy {

class FileURL;

/// A recursive walk over the regular files below a folder.
class DirectoryWalk {
  public:
    /// Whether a file of this name, in bytes, is wanted.
    using NameFilter = std::function<bool(QByteArrayView name)>;
    using Visitor = std::function<void(const FileURL& file)>;

    /// Calls `visit` for each file that `isWanted`, depth first, the entries of a directory in
    /// natural order. Entries whose name starts with a dot are passed over, and so is everything
    /// below them. Symbolic links aren't followed, but `folder` may be one. What can't be opened or
    /// read is passed over; the rest is walked all the same.
    ///
    /// One descriptor is open at a time however deep the tree is, and the memory in use is that of
    /// the names on the way down. Directories whose path is longer than the system's calls take
    /// can't be opened. Any thread; it ends soon after a stop is requested.
    static void visitFiles(const FileURL& folder, const std::stop_token& stop,
                           const NameFilter& isWanted, const Visitor& visit);
};

} // namespace tamsy
