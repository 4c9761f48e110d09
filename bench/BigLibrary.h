#pragma once

#include "Models/Track.h"
#include "Platform/Storage/UserDefaults.h"

#include <QByteArray>

namespace tamsy {

/// `count` tracks below `folder` as a scan would find them: albums of ten, Chinese and Latin texts
/// of common lengths, all ten formats. The same arguments give the same texts.
[[nodiscard]] TrackList makeBigFolder(const FileURL& folder, int count);

/// Stores a library of `tracks` in `folders` folders, for which it makes empty directories below
/// `music`, a path in bytes, so that a start restores them.
void storeBigLibrary(UserDefaults& defaults, const QByteArray& music, int tracks, int folders);

} // namespace tamsy
