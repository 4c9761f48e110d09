#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <cstdint>
#include <optional>

namespace tamsy {

/// How many bytes the header packets at the start of an Ogg Vorbis file take (RFC 3533, Vorbis I),
/// or nothing if the file doesn't begin as one, or if the decoder must not see them.
///
/// The decoder believes what they say: a comment's length or count that lies makes it write outside
/// its memory, and a packet that breaks off makes it free what it has never set. The pages are
/// followed as the decoder does, whichever stream they belong to. Bounded in time and memory, by
/// what the largest covers in comments take.
[[nodiscard]] std::optional<std::uint64_t> vorbisHeaderBytes(const AudioFile& file);

} // namespace tamsy
