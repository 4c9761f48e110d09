#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <QByteArray>
#include <miniaudio.h>

#include <atomic>

namespace tamsy {

/// Whether a file, after any ID3v2 tags, starts like FLAC (with or without its header), Ogg or
/// RIFF. If miniaudio rejects such a file, the fallback decoder may support it.
[[nodiscard]] bool isKnownContainer(const AudioFile& file);

/// Whether a file, after any ID3v2 tags, is a RIFF file with MPEG audio.
[[nodiscard]] bool holdsMpegAudio(const AudioFile& file);

/// Opens a local file (a path in bytes) through the media module, which supports what miniaudio's
/// decoders don't: Opus, Speex, GSM, leading tags, exact seeks in FLAC in Ogg. It becomes the
/// backend of `decoder` and is destroyed with it. Its output is stereo at 48,000 Hz. Reading
/// allocates and locks, and fails once `isAbandoned` is true, which must outlive the decoder.
[[nodiscard]] ma_result openFallback(const QByteArray& path, const std::atomic<bool>& isAbandoned,
                                     ma_decoder& decoder);

} // namespace tamsy
