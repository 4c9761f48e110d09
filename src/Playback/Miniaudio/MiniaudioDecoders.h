#pragma once

#include "Playback/Miniaudio/MpegAudioScan.h"

#include <miniaudio.h>

#include <cstdint>
#include <optional>

namespace tamsy {

/// Gives an open MPEG audio decoder the scan's seek table. Without one a seek decodes all that lies
/// before its target, seconds of work in a long file; the table that the decoder makes by itself
/// reads the file twice more and lands up to a fifth of a second late. `decoder` must have been
/// opened as MPEG audio, from where its frames start. Without memory for it the decoder goes on as
/// it was.
void bindMpegSeekTable(ma_decoder& decoder, const MpegAudioScan& scan);

/// Lets what a whole scan has found overrule the length that the file's header tells, where that is
/// of more frames than there are (a transfer was cut off) or fewer (songs were put together).
void correctMpegLength(ma_decoder& decoder, const MpegAudioScan& scan);

/// The duration of a number of frames in seconds, for a file whose header has none; the decoder
/// would read the whole file for it. `decoder` must have been opened as MPEG audio.
[[nodiscard]] std::optional<double> untoldMpegLength(const ma_decoder& decoder,
                                                     std::uint64_t pcmFrames);

/// Tells an open MPEG audio decoder that it stands at `pcmFrame` after a seek, the encoder's delay
/// not counted. It counts that itself only on the way from the start, and would go on past the end.
void noteMpegPosition(ma_decoder& decoder, std::uint64_t pcmFrame);

/// The encoder's delay in frames, which an MPEG audio decoder counts in its position.
[[nodiscard]] std::uint64_t mpegDelay(const ma_decoder& decoder);

/// What the header of a FLAC file says.
struct FlacHeader {
    std::uint64_t samples = 0; // a channel; 0 if it isn't known
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::uint32_t blockSize = 0;     // samples a frame, at most
    std::uint32_t maxFrameBytes = 0; // as if nothing could be compressed
};

/// `decoder` must have been opened as FLAC, here and below.
[[nodiscard]] FlacHeader flacHeader(const ma_decoder& decoder);

/// Replaces the header's count, by which the decoder bounds its seeks.
void correctFlacSamples(ma_decoder& decoder, std::uint64_t samples);

/// Whether miniaudio opens such a file and doesn't find its way in it: FLAC in Ogg, and ADPCM,
/// which it decodes from the start at each seek. `decoder` must have been opened as `encoding`.
[[nodiscard]] bool seeksBadly(const ma_decoder& decoder, ma_encoding_format encoding);

/// Makes an open FLAC decoder forget the frame it was in, after a seek has failed: of that frame,
/// and of the Ogg page around it, it may hold less than it believes. It must be sought anew before
/// it is read.
void dropFlacFrame(ma_decoder& decoder);

} // namespace tamsy
