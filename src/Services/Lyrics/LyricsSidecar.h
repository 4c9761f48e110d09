#pragma once

#include "Models/Lyrics.h"

#include <optional>

// LRC files beside the audio file. Blocking; any thread but the interface thread.
namespace tamsy {

class FileURL;

/// The size of the largest sidecar file that is read, in bytes. Larger files aren't lyrics.
inline constexpr std::uint64_t maxSidecarSize = 524'288;

/// The lyrics beside an audio file: those in the file of the same name with the extension "lrc",
/// else those in the folder's only ".lrc" file (in any case, ignoring hidden files), whatever its
/// name. Nothing if there are several and none has the audio file's name.
[[nodiscard]] std::optional<Lyrics> readLRCFile(const FileURL& audio);

/// Reads one LRC file, which must be UTF-8 and no larger than `maxSidecarSize`. Nothing if it has
/// no synced line: a sidecar is never read as plain lyrics.
[[nodiscard]] std::optional<Lyrics> parseLRCFile(const FileURL& url);

} // namespace tamsy
