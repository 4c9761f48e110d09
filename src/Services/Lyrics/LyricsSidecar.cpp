#include "Services/Lyrics/LyricsSidecar.h"

#include "Formats/ByteSource.h"
#include "Platform/Storage/DirectoryStream.h"
#include "Platform/Threads/FileWatch.h"
#include "Services/Lyrics/LyricsDecoding.h"
#include "Services/Lyrics/LyricsParsing.h"
#include "Utils/FileURL.h"

#include <sys/stat.h>

namespace tamsy {
namespace {

constexpr QByteArrayView extension = ".lrc";

/// The name of `audio` with its extension replaced by the sidecar's.
QByteArray sidecarName(const FileURL& audio) {
    const QByteArray audioExtension = audio.pathExtension();
    const qsizetype cut = audioExtension.isEmpty() ? 0 : audioExtension.size() + 1;
    QByteArray name = audio.lastPathComponent().chopped(cut);
    return name.append(extension);
}

bool isVisibleSidecarName(QByteArrayView name) {
    return name.size() > extension.size() && !name.startsWith('.') &&
           name.last(extension.size()).compare(extension, Qt::CaseInsensitive) == 0;
}

bool isFileNotFolder(int folder, const char* name) {
    struct stat status = {};
    return ::fstatat(folder, name, &status, 0) == 0 && !S_ISDIR(status.st_mode);
}

/// The only visible sidecar file in `folder`; nothing if there is none or more than one.
std::optional<FileURL> onlySidecar(const FileURL& folder) {
    const FileWatch::Call call;
    DirectoryStream entries(openDirectory(folder.path()));
    std::optional<FileURL> found;
    while (const dirent* entry = entries.next()) {
        const QByteArrayView name = entry->d_name;
        if (!isVisibleSidecarName(name) || !isFileNotFolder(entries.descriptor(), name.data()))
            continue;
        if (found)
            return std::nullopt;
        found = folder.appending(name);
    }
    return found;
}

} // namespace

std::optional<Lyrics> readLRCFile(const FileURL& audio) {
    const FileURL folder = audio.parent();
    if (auto lyrics = parseLRCFile(folder.appending(sidecarName(audio))))
        return lyrics;
    const auto only = onlySidecar(folder);
    return only ? parseLRCFile(*only) : std::nullopt;
}

std::optional<Lyrics> parseLRCFile(const FileURL& url) {
    const media::SharedSource file = media::openFileSource(url);
    if (!file || file->size() > maxSidecarSize)
        return std::nullopt;
    const auto text = decodeUTF8(file->copy(0, file->size()));
    return text ? parseLRCFormat(*text) : std::nullopt;
}

} // namespace tamsy
