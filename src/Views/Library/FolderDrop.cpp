#include "Views/Library/FolderDrop.h"

#include "Platform/Storage/Bookmark.h"
#include "Platform/Storage/FileDescriptor.h"
#include "Platform/Threads/Answers.h"
#include "Views/Library/LocalAddress.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace tamsy {
namespace {

/// The max number of addresses that count as folders if their file system doesn't respond.
constexpr qsizetype maxUnchecked = 8;

/// The folders among `addresses`; nothing if their file systems don't respond in time.
std::optional<QList<FileURL>> foldersAmong(const QList<FileURL>& addresses,
                                           std::chrono::milliseconds limit) {
    const std::function<QList<FileURL>()> ask = [addresses] {
        QList<FileURL> folders;
        for (const FileURL& address : addresses)
            if (openDirectory(address.path()).isOpen() && !folders.contains(address))
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
    // They may be on a sleeping disk.
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
