#pragma once

#include "Models/Track.h"

#include <QDateTime>
#include <QList>

#include <optional>

namespace tamsy {

/// A folder that the user added to the library, with the tracks found in it.
struct AudioFolder {
    /// Without a `displayName` the folder shows the last path component of `url`.
    AudioFolder(QUuid id, FileURL url, std::optional<QString> displayName, TrackList tracks,
                QDateTime dateAdded);

    QUuid id;            ///< identity; never changes
    FileURL url;         ///< the folder's location; never changes
    QString displayName; ///< the name in the sidebar
    TrackList tracks;    ///< in library order
    QDateTime dateAdded; ///< when the folder was added; never changes

    /// The extensions, in lower case and without the dot, of the files that a scan picks up.
    [[nodiscard]] static const QList<QByteArray>& supportedExtensions();
    [[nodiscard]] static bool isSupportedExtension(QByteArrayView lowercaseExtension);

    /// Compares all five fields; tracks by identity.
    friend bool operator==(const AudioFolder&, const AudioFolder&) = default;
};

size_t qHash(const AudioFolder& folder, size_t seed = 0);

} // namespace tamsy
