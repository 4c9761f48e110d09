#include "Platform/Storage/StoredFile.h"

#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Storage/LargeMemory.h"
#include "Platform/Storage/RegularFile.h"

#include <QDateTime>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>

namespace tamsy {
namespace {

/// The JSON parser reads this far past the last byte.
constexpr qsizetype padding = 64;

constexpr auto previousSuffix = ".previous";

/// Repeats short writes until everything is written.
bool writeAll(int descriptor, QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t written =
            ::write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

/// EINVAL means that the file system can't sync a directory, and needn't.
bool sync(int descriptor) {
    return ::fsync(descriptor) == 0 || errno == EINVAL;
}

bool syncDirectory(const QByteArray& path) {
    const FileDescriptor directory = openDirectory(path);
    return directory.isOpen() && sync(directory.number());
}

bool writeNewFile(const QByteArray& path, QByteArrayView content) {
    // Removes what a killed run may have left.
    ::unlink(path.constData());
    FileDescriptor file(
        ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    return file.isOpen() && writeAll(file.number(), content) && sync(file.number()) &&
           ::close(file.release()) == 0;
}

} // namespace

std::optional<QByteArray> StoredFile::read() const {
    int error = 0;
    return read(error);
}

std::optional<QByteArray> StoredFile::read(int& error) const {
    const RegularFile file(path_);
    error = file.error();
    if (!file.isOpen())
        return std::nullopt;
    QByteArray content;
    content.reserve(file.status().st_size + padding);
    preferLargePages(content.constData(), static_cast<std::size_t>(content.capacity()));
    content.resize(file.status().st_size);
    std::span<std::byte> rest = std::as_writable_bytes(std::span(content));
    while (!rest.empty()) {
        const ssize_t count =
            file.read(static_cast<std::uint64_t>(content.size()) - rest.size(), rest);
        if (count < 0) {
            error = errno;
            return std::nullopt;
        }
        if (count == 0)
            break;
        rest = rest.subspan(static_cast<std::size_t>(count));
    }
    content.chop(static_cast<qsizetype>(rest.size()));
    return content;
}

bool StoredFile::mayExist() const {
    struct stat status {};
    return ::lstat(path_.constData(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

QByteArray StoredFile::directory() const {
    return path_.first(path_.lastIndexOf('/'));
}

bool StoredFile::replace(QByteArrayView content) const {
    const QByteArray temporary = path_ + ".new";
    if (!makeDirectories(directory()))
        return false;
    if (writeNewFile(temporary, content) && ::rename(temporary.constData(), path_.constData()) == 0)
        return syncDirectory(directory());
    ::unlink(temporary.constData()); // a full disk needs the space
    return false;
}

bool StoredFile::replaceUnsynced(QByteArrayView content) const {
    QByteArray temporary = path_ + ".XXXXXX";
    FileDescriptor file(makeDirectories(directory()) ? ::mkostemp(temporary.data(), O_CLOEXEC)
                                                     : -1);
    if (!file.isOpen())
        return false;
    if (writeAll(file.number(), content) && ::close(file.release()) == 0 &&
        ::rename(temporary.constData(), path_.constData()) == 0)
        return true;
    ::unlink(temporary.constData()); // a full disk needs the space
    return false;
}

bool StoredFile::keepAside() const {
    const QByteArray base =
        path_ + ".damaged-" +
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")).toLatin1();
    constexpr int attempts = 1000;
    for (int attempt = 1; attempt <= attempts; ++attempt) {
        const QByteArray name = attempt == 1 ? base : base + '-' + QByteArray::number(attempt);
        // Both calls fail if the name is taken. The link comes first: with it the file's own name
        // always exists.
        if (::link(path_.constData(), name.constData()) == 0)
            return true;
        if (errno == EEXIST)
            continue;
        if (::renameat2(AT_FDCWD, path_.constData(), AT_FDCWD, name.constData(),
                        RENAME_NOREPLACE) == 0)
            return true;
        if (errno != EEXIST)
            return !mayExist();
    }
    return false;
}

bool StoredFile::keepPrevious() const {
    const QByteArray previous = path_ + previousSuffix;
    const QByteArray temporary = previous + ".new";
    ::unlink(temporary.constData());
    if (::link(path_.constData(), temporary.constData()) != 0) {
        const auto content = read();
        return content && replacePrevious(*content);
    }
    const bool isKept = ::rename(temporary.constData(), previous.constData()) == 0;
    ::unlink(temporary.constData()); // rename leaves it if both names were links to one file
    return isKept;
}

bool StoredFile::replacePrevious(QByteArrayView content) const {
    return StoredFile(path_ + previousSuffix).replace(content);
}

bool makeDirectories(const QByteArray& path) {
    if (path.isEmpty() || ::mkdir(path.constData(), S_IRWXU) == 0 || errno == EEXIST)
        return true;
    return errno == ENOENT && makeDirectories(path.first(path.lastIndexOf('/'))) &&
           ::mkdir(path.constData(), S_IRWXU) == 0;
}

} // namespace tamsy
