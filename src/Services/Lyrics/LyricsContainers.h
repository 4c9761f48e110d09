#pragma once

#include "Formats/ByteSource.h"
#include "Models/Lyrics.h"

#include <QByteArrayView>

#include <optional>

// Lyrics from the bytes of a tag. Every length is checked against the available bytes; a value that
// doesn't fit gives nothing. Files are read in pieces, so memory stays bounded (64 MiB for one
// value) whatever their size. Any thread.
namespace tamsy {

class FileURL;

/// Lyrics from the payload of an ID3v2 USLT frame (id3.org, ID3v2.4 frames, 4.8), without header
/// and unsynchronisation: text encoding, language, descriptor, lyrics. An encoding other than the
/// standard's four is read as UTF-8.
[[nodiscard]] std::optional<Lyrics> parseID3USLT(QByteArrayView payload);

/// Lyrics from the body of a Vorbis comment block (xiph.org, Vorbis I, 5.2.1; as FLAC embeds it):
/// the first comment whose key contains "lyrics" in any case, even if its value is empty.
[[nodiscard]] std::optional<Lyrics> parseVorbisCommentBlockForLyrics(QByteArrayView block);

/// Lyrics from the first Vorbis comment block of a native FLAC stream (RFC 9639, 8.1) that has any.
/// The stream must start at the file's first byte.
[[nodiscard]] std::optional<Lyrics> readFlacVorbisLyrics(const media::ByteSource& source);
[[nodiscard]] std::optional<Lyrics> readFlacVorbisLyrics(const FileURL& url);

/// Lyrics from the "data" atom of an MPEG-4 file's "©lyr" item, which is searched for by its name.
/// The value is read as UTF-8.
[[nodiscard]] std::optional<Lyrics> readM4ALyrics(const media::ByteSource& source);
[[nodiscard]] std::optional<Lyrics> readM4ALyrics(const FileURL& url);

} // namespace tamsy
