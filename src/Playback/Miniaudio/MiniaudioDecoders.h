#pragma once

#include "Playback/Miniaudio/MpegAudioScan.h"

#include <miniaudio.h>

#include <cstdint>
#include <optional>

namespace tamsy {

/// Gives an open MPEG audio decoder the scan's seek table. Without one a seek decodes everything
/// before its target, which takes seconds in a long file; the decoder's own table reads the file
/// twice more and is up to a fifth of a second late. `decoder` must have been opened as MPEG audio
/// from the scan's start. If there is no memory for the table the decoder is unchanged.
void bindMpegSeekTable(ma_decoder& decoder, const MpegAudioScan& scan);

/// Replaces the header's length, if there is one, by that of a complete scan if they differ: a
/// transfer was cut off, or songs were joined. `decoder` must have been opened as MPEG audio.
void correctMpegLength(ma_decoder& decoder, const MpegAudioScan& scan);

/// The duration of a number of frames in seconds, for a file whose header has none; the decoder
/// would read the whole file for it. `decoder` must have been opened as MPEG audio.
[[nodiscard]] std::optional<double> untoldMpegLength(const ma_decoder& decoder,
                                                     std::uint64_t pcmFrames);

/// Sets the position of an open MPEG audio decoder after a seek to `pcmFrame`, counted without the
/// encoder delay. The decoder's own position includes the delay only if it has played from the
/// start; otherwise it would play past the end.
void noteMpegPosition(ma_decoder& decoder, std::uint64_t pcmFrame);

/// The encoder delay in frames, which an MPEG audio decoder's position includes.
[[nodiscard]] std::uint64_t mpegDelay(const ma_decoder& decoder);

/// The header of a FLAC file.
struct FlacHeader {
    std::uint64_t samples = 0; // per channel; 0 if unknown
    std::uint32_t sampleRate = 0;
    std::uint32_t channels = 0;
    std::uint32_t blockSize = 0;     // max samples per frame and channel
    std::uint32_t maxFrameBytes = 0; // of an uncompressed frame
};

/// `decoder` must have been opened as FLAC.
[[nodiscard]] FlacHeader flacHeader(const ma_decoder& decoder);

/// Replaces the header's sample count, which limits the decoder's seeks. `decoder` must have been
/// opened as FLAC.
void correctFlacSamples(ma_decoder& decoder, std::uint64_t samples);

/// Whether miniaudio opens the file but seeks badly in it: FLAC in Ogg, and ADPCM, which it decodes
/// from the start at each seek. `decoder` must have been opened as `encoding`.
[[nodiscard]] bool seeksBadly(const ma_decoder& decoder, ma_encoding_format encoding);

/// Makes an open FLAC decoder drop its current frame after a failed seek or a short read: its state
/// for that frame, and for the Ogg page around it, may be wrong. Seek again before reading.
/// `decoder` must have been opened as FLAC.
void dropFlacFrame(ma_decoder& decoder);

} // namespace tamsy
