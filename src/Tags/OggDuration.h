#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

enum class OggCodec { Vorbis, Opus, Flac, Speex };

/// An audio stream in an Ogg file.
struct OggStream {
    OggCodec codec = OggCodec::Vorbis;
    std::uint64_t offset = 0; ///< of its first page
    std::uint32_t serial = 0;
    std::uint32_t sampleRate = 0;
    std::uint64_t preSkip = 0;       ///< samples at the start that Opus drops
    std::uint64_t packetSamples = 0; ///< of Speex
};

/// The duration in seconds of a stream that starts with the first sample in its link, which may be
/// late, and ends with the last complete page before the offset `end`.
[[nodiscard]] double oggDuration(MediaParse& parse, const OggStream& stream, std::uint64_t end);

} // namespace tamsy::media
