#include "Views/Library/FolderDrop.h"

#include "Platform/Storage/Bookmark.h"
#include "Platform/Threads/Answers.h"
#include "Views/Library/LocalAddress.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace tamsy {
namespace {

/// How many addresses are taken for folders if their file system doesn't answer.
constexpr qsizetype maxUnchecked = 8;

/// Opens the folder by its bytes: Qt's file classes would decode the name.
bool isFolder(const QByteArray& path) {
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           ::access(path.constData(), R_OK | X_OK) == 0;
}

/// The folders among `addresses`; nothing if their file systems don't answer in time.
std::optional<QList<FileURL>> foldersAmong(const QList<FileURL>& addresses,
                                           std::chrono::milliseconds limit) {
    const std::function<QList<FileURL>()> ask = [addresses] {
        QList<FileURL> folders;
        for (const FileURL& address : addresses)
            if (isFolder(address.path()) && !folders.contains(address))
                folders.append(address);
        return folders;
    };
    return answersWithin<QList<FileURL>>(limit, {ask}).front();
}

QList<FileURL> localAddresses(const QList<QUrl>& urls) {
    QList<FileURL> addresses;
    for (const QUrl& url : urls)
        if (const auto address = localAddress(url))
            addresses.append(*address);
    return addresses;
}

} // namespace

void FolderDrop::setLibrary(LibraryViewModel* library) {
    library_ = library;
    Q_EMIT libraryChanged();
}

bool FolderDrop::holdsFolder(const QList<QUrl>& urls) {
    const QList<FileURL> addresses = localAddresses(urls);
    const auto folders = foldersAmong(addresses, Bookmark::patience);
    // A sleeping disk may hold some.
    return folders ? !folders->isEmpty() : !addresses.isEmpty();
}

void FolderDrop::add(const QList<QUrl>& urls) const {
    if (!library_)
        return;
    const QList<FileURL> addresses = localAddresses(urls);
    const auto folders = foldersAmong(addresses, Bookmark::patience);
    for (const FileURL& url :
         folders.value_or(addresses.first(std::min(addresses.size(), maxUnchecked)))) {
        const auto isIt = [&url](const AudioFolder& folder) { return folder.url == url; };
        if (std::ranges::none_of(std::as_const(*library_).folders(), isIt))
            library_->addFolder(url);
    }
}

} // namespace tamsy
