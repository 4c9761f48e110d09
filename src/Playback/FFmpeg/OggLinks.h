#pragma once

#include "Playback/FFmpeg/FileInput.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace tamsy {

/// The links of a chained Ogg file (RFC 3533, 4), such as a recording of a radio station: files one
/// after the other, each with its own streams and positions. One link if the file isn't chained,
/// none if it isn't Ogg.
///
/// The first and last pages show whether a file is chained; only then all page headers are read.
[[nodiscard]] std::vector<FileRange> findOggLinks(const FileInput& input);

/// The position of a stream's start, in samples: 0, unless it was cut out of a longer stream. Each
/// packet must decode to `packetLength` samples.
[[nodiscard]] std::int64_t firstOggPosition(const FileInput& input, std::int64_t packetLength);

/// The position at the end of the last page that has one, in the units of its codec; nothing if the
/// last 64 KB contain none.
[[nodiscard]] std::optional<std::int64_t> lastOggPosition(const FileInput& input);

} // namespace tamsy
