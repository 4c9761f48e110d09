#pragma once

#include "Playback/Miniaudio/MpegAudioScan.h"

#include <miniaudio.h>

#include <cstdint>
#include <optional>

namespace tamsy {

/// Gives an open MPEG audio decoder the scan's seek table. Without one a seek decodes all that lies
/// before its target, seconds of work in a long file; the table that the decoder makes by itself
/// reads the file twice more and lands up to a fifth of a second late. `decoder` must have been
/// opened as MPEG audio. Without memory for it the decoder goes on as it was.
void bindMpegSeekTable(ma_decoder& decoder, const MpegAudioScan& scan);

/// The length of so many frames in seconds, if the file's header says nothing; the decoder would
/// walk through the file for it. `decoder` must have been opened as MPEG audio.
[[nodiscard]] std::optional<double> untoldMpegLength(const ma_decoder& decoder,
                                                     std::uint64_t pcmFrames);

/// Whether miniaudio opens such a file and doesn't find its way in it: FLAC in Ogg, FLAC without a
/// length, ADPCM, which it decodes from the start at each seek. `decoder` must have been opened as
/// `encoding`.
[[nodiscard]] bool seeksBadly(const ma_decoder& decoder, ma_encoding_format encoding);

/// Makes an open FLAC decoder forget the frame it was in, after a seek has failed: of that frame,
/// and of the Ogg page around it, it may hold less than it believes. It must be sought anew before
/// it is read. `decoder` must have been opened as FLAC.
void dropFlacFrame(ma_decoder& decoder);

} // namespace tamsy
