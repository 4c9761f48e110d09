#pragma once

#include "Models/Lyrics.h"

#include <optional>

// LRC files beside the audio. Blocking; any thread but the interface thread.
namespace tamsy {

class FileURL;

/// The largest sidecar file that is read, in bytes; larger ones are no lyrics.
inline constexpr std::uint64_t largestSidecar = 524'288;

/// The lyrics beside an audio file: those of the file with the same name and the extension "lrc",
/// else those of the only ".lrc" file of the folder (in any case, hidden ones aside), whatever its
/// name. With several such files, none of them named like the audio, there is nothing.
[[nodiscard]] std::optional<Lyrics> readLRCFile(const FileURL& audio);

/// Reads one LRC file, which must be UTF-8 and no larger than `largestSidecar`. Nothing if it gives
/// no synced line: there is no plain reading of a sidecar.
[[nodiscard]] std::optional<Lyrics> parseLRCFile(const FileURL& url);

} // namespace tamsy
