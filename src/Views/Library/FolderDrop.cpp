#include "Views/Library/FolderDrop.h"

#include "Views/Library/LocalAddress.h"

#include <algorithm>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace tamsy {
namespace {

/// Opens the folder by its bytes: Qt's file classes would decode the name.
bool isFolder(const QByteArray& path) {
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           ::access(path.constData(), R_OK | X_OK) == 0;
}

QList<FileURL> foldersAmong(const QList<QUrl>& urls) {
    QList<FileURL> folders;
    for (const QUrl& url : urls) {
        const auto address = localAddress(url);
        if (address && isFolder(address->path()) && !folders.contains(*address))
            folders.append(*address);
    }
    return folders;
}

} // namespace

void FolderDrop::setLibrary(LibraryViewModel* library) {
    library_ = library;
    Q_EMIT libraryChanged();
}

bool FolderDrop::holdsFolder(const QList<QUrl>& urls) {
    return std::ranges::any_of(urls, [](const QUrl& url) {
        const auto address = localAddress(url);
        return address && isFolder(address->path());
    });
}

void FolderDrop::add(const QList<QUrl>& urls) const {
    if (!library_)
        return;
    for (const FileURL& url : foldersAmong(urls)) {
        const auto isIt = [&url](const AudioFolder& folder) { return folder.url == url; };
        if (std::ranges::none_of(std::as_const(*library_).folders(), isIt))
            library_->addFolder(url);
    }
}

} // namespace tamsy
