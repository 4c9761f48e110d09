#include "Models/AudioFolder.h"

#include <utility>

namespace tamsy {

AudioFolder::AudioFolder(QUuid folderId, FileURL folderUrl, std::optional<QString> name,
                         TrackList folderTracks, QDateTime added)
    : id(folderId),
      url(std::move(folderUrl)),
      displayName(name ? *std::move(name) : url.lastPathComponentText()),
      tracks(std::move(folderTracks)),
      dateAdded(std::move(added)) {}

const QList<QByteArray>& AudioFolder::supportedExtensions() {
    static const QList<QByteArray> extensions{"mp3", "m4a", "aac",  "wav", "aiff",
                                              "aif", "caf", "flac", "ogg", "oga"};
    return extensions;
}

bool AudioFolder::isSupportedExtension(QByteArrayView lowercaseExtension) {
    return supportedExtensions().contains(lowercaseExtension);
}

size_t qHash(const AudioFolder& folder, size_t seed) {
    return qHashMulti(seed, folder.id, folder.url, folder.displayName, folder.tracks.size(),
                      qHashRange(folder.tracks.begin(), folder.tracks.end(), seed),
                      folder.dateAdded);
}

} // namespace tamsy
