#pragma once

#include "Playback/FFmpeg/FileInput.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tamsy {

/// The parts of an Ogg file (RFC 3533, 4) that was chained from several, one after the other: each
/// has streams of its own and counts from its own start, as recordings of radio stations do. One
/// part where there is no chain, and none where the file isn't Ogg.
///
/// A look at both ends tells whether there is a chain; only then the pages are walked through.
[[nodiscard]] std::vector<FileRange> findOggLinks(const FileInput& input);

/// The position at the start of a stream whose packets all come to `packetLength`: 0, unless it was
/// cut out of a longer one.
[[nodiscard]] std::int64_t firstOggPosition(const FileInput& input, std::int64_t packetLength);

/// The position at the end of the last page that tells one, in the units of its codec; nothing if
/// none is found.
[[nodiscard]] std::optional<std::int64_t> lastOggPosition(const FileInput& input);

} // namespace tamsy
