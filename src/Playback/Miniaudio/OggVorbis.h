#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// The header packets of an Ogg Vorbis file (RFC 3533, Vorbis I).
struct VorbisStart {
    std::uint64_t headerBytes = 0; // with their page headers
    std::uint32_t serialNumber = 0;
    std::uint32_t longBlock = 0; // samples; a packet decodes to at most half as many
};

/// Reads the header packets at the start of a file; nothing if it doesn't start with them or if
/// they are unsafe for the decoder.
///
/// The decoder trusts them: a wrong length or count of comments makes it write out of bounds, and a
/// truncated packet makes it free uninitialised pointers. Pages are read as the decoder reads them,
/// whichever stream they belong to. Time and memory are limited to what the largest covers in
/// comments need.
[[nodiscard]] std::optional<VorbisStart> readVorbisStart(const AudioFile& file);

/// Whether the file is one stream that starts at sample 0. The decoder stops where another stream
/// follows, and gives a stream whose start was cut off the duration of the whole.
[[nodiscard]] bool isWholeVorbisStream(const AudioFile& file, const VorbisStart& start);

} // namespace tamsy
