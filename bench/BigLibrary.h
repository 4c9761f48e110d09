#pragma once

#include "Models/Track.h"
#include "Platform/Storage/UserDefaults.h"

#include <QByteArray>

namespace tamsy {

/// `count` tracks in `folder`, as from a scan: albums of ten, Chinese and Latin texts of common
/// lengths, all ten formats. Deterministic.
[[nodiscard]] TrackList makeBigFolder(const FileURL& folder, int count);

/// Stores a library of `tracks` in `folders` folders, and creates these as empty directories in
/// `music` (a path in bytes), so that a start restores them.
void storeBigLibrary(UserDefaults& defaults, const QByteArray& music, int tracks, int folders);

} // namespace tamsy
