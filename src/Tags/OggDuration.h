#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

enum class OggCodec { Vorbis, Opus, Flac, Speex };

/// A stream of sound in an Ogg file.
struct OggStream {
    OggCodec codec = OggCodec::Vorbis;
    std::uint64_t offset = 0; ///< of its first page
    std::uint32_t serial = 0;
    std::uint32_t sampleRate = 0;
    std::uint64_t preSkip = 0;       ///< samples that Opus decodes and drops
    std::uint64_t packetSamples = 0; ///< in each packet of Speex
};

/// Seconds from the first sample in the file to the end of the last whole page. What was cut out of
/// a longer stream begins late in it.
[[nodiscard]] double oggDuration(MediaParse& parse, const OggStream& stream);

} // namespace tamsy::media
