#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// What the start of an Ogg Vorbis file tells (RFC 3533, Vorbis I).
struct VorbisStart {
    std::uint64_t headerBytes = 0; // of the header packets, with their pages
    std::uint32_t serialNumber = 0;
    std::uint32_t longBlock = 0; // samples; each packet comes to at most half as many
};

/// The header packets at the start of an Ogg Vorbis file; nothing if it doesn't begin as one, or if
/// the decoder must not see them.
///
/// The decoder believes what they say: a comment's length or count that lies makes it write outside
/// its memory, and a packet that breaks off makes it free what it has never set. The pages are
/// followed as the decoder does, whichever stream they belong to. Bounded in time and memory, by
/// what the largest covers in comments take.
[[nodiscard]] std::optional<VorbisStart> readVorbisStart(const AudioFile& file);

/// Whether the file is one stream from its first sample on. The decoder stops where another stream
/// follows, and takes a part cut out of a long stream for as long as the whole.
[[nodiscard]] bool isWholeVorbisStream(const AudioFile& file, const VorbisStart& start);

} // namespace tamsy
