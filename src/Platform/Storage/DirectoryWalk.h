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
    /// natural order. Skips entries whose name starts with a dot, with all below them, and whatever
    /// can't be opened. Symbolic links aren't followed, but `folder` may be one.
    ///
    /// Only one descriptor is open at a time however deep the tree is, and only the names on the
    /// current path are in memory. Directories whose path exceeds PATH_MAX can't be opened. Any
    /// thread; returns soon after a stop is requested.
    static void visitFiles(const FileURL& folder, const std::stop_token& stop,
                           const NameFilter& isWanted, const Visitor& visit);
};

} // namespace tamsy
