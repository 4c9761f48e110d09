#pragma once

#include "Formats/ByteSource.h"
#include "Models/Lyrics.h"

#include <QByteArrayView>

#include <optional>

// Lyrics straight from the bytes of a tag. Each length that is read is held against the bytes at
// hand before it is used; whatever doesn't fit gives nothing. Files are read piece by piece, so
// memory stays bounded (64 MiB for one value) however large the file. Pure but for the reading; any
// thread.
namespace tamsy {

class FileURL;

/// The payload of an ID3v2 USLT frame (id3.org, ID3v2.4 frames, 4.8), its header and transport
/// encodings taken off: text encoding, language, descriptor, lyrics. An encoding beyond the
/// standard's four is read as UTF-8.
[[nodiscard]] std::optional<Lyrics> parseID3USLT(QByteArrayView payload);

/// The body of one Vorbis comment block (xiph.org, Vorbis I, 5.2.1; as FLAC embeds it). The first
/// comment whose key contains "lyrics" in any case counts, also when its value is empty.
[[nodiscard]] std::optional<Lyrics> parseVorbisCommentBlockForLyrics(QByteArrayView block);

/// Walks the metadata blocks of a native FLAC stream (RFC 9639, 8.1) to the first Vorbis comment
/// block with lyrics. The stream starts with the file's first byte.
[[nodiscard]] std::optional<Lyrics> readFlacVorbisLyrics(const media::ByteSource& source);
[[nodiscard]] std::optional<Lyrics> readFlacVorbisLyrics(const FileURL& url);

/// The lyrics item "©lyr" of an MPEG-4 file, found by its name wherever it stands, and its "data"
/// atom; the value is read as UTF-8.
[[nodiscard]] std::optional<Lyrics> readM4ALyrics(const media::ByteSource& source);
[[nodiscard]] std::optional<Lyrics> readM4ALyrics(const FileURL& url);

} // namespace tamsy
