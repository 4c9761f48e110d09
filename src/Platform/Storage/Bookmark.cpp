#include "Platform/Storage/Bookmark.h"

#include "Platform/Storage/DirectoryStream.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Threads/Answers.h"
#include "Utils/FileURL.h"

#include <functional>

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

std::optional<FileURL> findRenamed(const FileURL& parent, const QByteArray& wanted) {
    const quint64 inode = wanted.split(' ').first().toULongLong();
    DirectoryStream stream(openDirectory(parent.path()));
    for (int count = 0; count < maxSearchedEntries; ++count) {
        const dirent* entry = stream.next();
        if (entry == nullptr)
            break;
        if (entry->d_ino != inode)
            continue;
        const FileURL found = parent.appending(entry->d_name);
        const FileDescriptor directory = openDirectory(found.path());
        if (directory.isOpen() && identity(directory.number()) == wanted)
            return found;
    }
    return std::nullopt;
}

QByteArray bytesFor(const FileURL& folder, const QByteArray& identity) {
    return heading.toByteArray() + '\n' + folder.absoluteString() + '\n' + identity + '\n';
}

struct StoredFolder {
    FileURL url;
    QByteArray identity; // may be empty
};

std::optional<StoredFolder> parse(const QByteArray& bytes) {
    const QList<QByteArray> lines = bytes.split('\n');
    if (lines.size() != 4 || lines[0] != heading || !lines[3].isEmpty())
        return std::nullopt;
    auto url = FileURL::fromAbsoluteString(lines[1]);
    return url ? std::optional(StoredFolder{*std::move(url), lines[2]}) : std::nullopt;
}

using Resolved = std::optional<FileURL>;

Resolved find(const StoredFolder& folder) {
    if (openDirectory(folder.url.path()).isOpen())
        return folder.url;
    return folder.identity.isEmpty() ? std::nullopt
                                     : findRenamed(folder.url.parent(), folder.identity);
}

} // namespace

std::optional<QByteArray> Bookmark::create(const FileURL& folder, std::chrono::milliseconds limit) {
    using Created = std::optional<QByteArray>;
    const std::function<Created()> ask = [folder]() -> Created {
        const FileDescriptor directory = openDirectory(folder.path());
        return directory.isOpen() ? Created(bytesFor(folder, identity(directory.number())))
                                  : std::nullopt;
    };
    return answersWithin<Created>(limit, {ask}).front().value_or(bytesFor(folder, {}));
}

std::vector<std::optional<FileURL>> Bookmark::resolve(const QList<QByteArray>& bookmarks,
                                                      std::chrono::milliseconds limit) {
    std::vector<std::function<Resolved()>> questions;
    std::vector<Resolved> unanswered;
    for (const QByteArray& bytes : bookmarks) {
        const auto folder = parse(bytes);
        unanswered.push_back(folder ? Resolved(folder->url) : std::nullopt);
        questions.emplace_back([folder] { return folder ? find(*folder) : std::nullopt; });
    }
    const auto answers = answersWithin(limit, std::move(questions));
    std::vector<Resolved> resolved;
    for (std::size_t i = 0; i < answers.size(); ++i)
        resolved.push_back(answers[i].value_or(unanswered[i]));
    return resolved;
}

} // namespace tamsy
