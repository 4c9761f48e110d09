#include "Platform/Storage/Bookmark.h"

#include "Platform/Storage/DirectoryStream.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Utils/FileURL.h"

#include <QList>

#include <fcntl.h>
#include <sys/stat.h>

namespace tamsy {
namespace {

constexpr QByteArrayView heading = "tamsy-folder 1";

/// Limits the search for a renamed folder, which must not delay the start.
constexpr int maxSearchedEntries = 10'000;

/// Identifies a directory within its file system for ever: an inode number alone may be reused.
/// Empty if the file system records no birth time.
QByteArray identity(int directory) {
    struct statx status {};
    constexpr unsigned wanted = STATX_INO | STATX_BTIME;
    if (::statx(directory, "", AT_EMPTY_PATH, wanted, &status) != 0 ||
        (status.stx_mask & wanted) != wanted)
        return {};
    return QByteArray::number(quint64{status.stx_ino}) + ' ' +
           QByteArray::number(qint64{status.stx_btime.tv_sec}) + ' ' +
           QByteArray::number(quint32{status.stx_btime.tv_nsec});
}

FileDescriptor openDirectory(const FileURL& folder) {
    return FileDescriptor(::open(folder.path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

std::optional<FileURL> findRenamed(const FileURL& parent, const QByteArray& wanted) {
    const quint64 inode = wanted.split(' ').first().toULongLong();
    DirectoryStream stream(openDirectory(parent));
    for (int count = 0; count < maxSearchedEntries; ++count) {
        const dirent* entry = stream.next();
        if (entry == nullptr)
            break;
        if (entry->d_ino != inode)
            continue;
        const FileURL found = parent.appending(entry->d_name);
        const FileDescriptor directory = openDirectory(found);
        if (directory.isOpen() && identity(directory.number()) == wanted)
            return found;
    }
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> Bookmark::create(const FileURL& folder) {
    const FileDescriptor directory = openDirectory(folder);
    if (!directory.isOpen())
        return std::nullopt;
    return heading.toByteArray() + '\n' + folder.absoluteString() + '\n' +
           identity(directory.number()) + '\n';
}

std::optional<FileURL> Bookmark::resolve(QByteArrayView bytes) {
    const QList<QByteArray> lines = bytes.toByteArray().split('\n');
    if (lines.size() != 4 || lines[0] != heading || !lines[3].isEmpty())
        return std::nullopt;
    auto folder = FileURL::fromAbsoluteString(lines[1]);
    if (!folder)
        return std::nullopt;
    if (openDirectory(*folder).isOpen())
        return folder;
    return lines[2].isEmpty() ? std::nullopt : findRenamed(folder->parent(), lines[2]);
}

} // namespace tamsy
