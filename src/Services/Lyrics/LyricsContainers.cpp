#include "Services/Lyrics/LyricsContainers.h"

#include "Formats/ByteCursor.h"
#include "Formats/ByteWindow.h"
#include "Formats/FlacBlock.h"
#include "Formats/Id3Terminator.h"
#include "Formats/VorbisCommentWalk.h"
#include "Services/Lyrics/LyricsDecoding.h"
#include "Services/Lyrics/LyricsParsing.h"
#include "Utils/FileURL.h"

#include <span>

namespace tamsy {
namespace {

// ID3v2 text encodings.
constexpr char latin1 = 0;
constexpr char utf16WithMark = 1;
constexpr char utf16BigEndian = 2;

constexpr qsizetype encodingAndLanguageLength = 4;

/// The lyrics, which follow the descriptor and its terminator; empty if there is no terminator.
QByteArrayView afterDescriptor(QByteArrayView payload) {
    const qsizetype unit = id3UnitSize(payload.front());
    const qsizetype end = findId3Terminator(payload, unit, encodingAndLanguageLength);
    return end < 0 ? QByteArrayView() : payload.sliced(end + unit);
}

std::optional<QString> decodeID3Text(QByteArrayView bytes, char encoding) {
    switch (encoding) {
    case latin1:
        return QString::fromLatin1(bytes);
    case utf16WithMark:
        return decodeUTF16(bytes);
    case utf16BigEndian:
        return decodeUTF16BigEndian(bytes);
    default:
        return decodeUTF8(bytes);
    }
}

/// The value of a "key=value" comment whose key contains "lyrics".
std::optional<QString> lyricsOfComment(ByteCursor::Bytes comment) {
    const auto text = decodeUTF8(media::asText(comment));
    const qsizetype equals = text ? text->indexOf(u'=') : -1;
    if (equals < 0 || !text->first(equals).toLower().contains(u"lyrics"))
        return std::nullopt;
    return text->sliced(equals + 1);
}

constexpr std::uint64_t minFlacFileSize = 9;

} // namespace

std::optional<Lyrics> parseID3USLT(QByteArrayView payload) {
    if (payload.size() < encodingAndLanguageLength)
        return std::nullopt;
    const char encoding = payload.front();
    const auto text = decodeID3Text(afterDescriptor(payload), encoding);
    return text ? parseAsStampsDecide(*text) : std::nullopt;
}

std::optional<Lyrics> parseVorbisCommentBlockForLyrics(QByteArrayView block) {
    const auto bytes = std::as_bytes(std::span(block));
    auto walk = walkVorbisComments(bytes);
    while (const auto comment = walk.next()) {
        if (const auto lyrics =
                lyricsOfComment(bytes.subspan(comment->begin, comment->end - comment->begin)))
            return parseSyncedElsePlain(*lyrics);
    }
    return std::nullopt;
}

std::optional<Lyrics> readFlacVorbisLyrics(const media::ByteSource& source) {
    media::ByteWindow window(source);
    if (window.size() < minFlacFileSize || !window.matches(0, "fLaC"))
        return std::nullopt;
    media::FlacBlockWalk walk(window, 0);
    while (const auto block = walk.next()) {
        if (block->type != media::FlacBlockHeader::VorbisComment)
            continue;
        const QByteArray body = window.copy(block->begin, block->end - block->begin);
        if (auto lyrics = parseVorbisCommentBlockForLyrics(body))
            return lyrics;
    }
    return std::nullopt;
}

std::optional<Lyrics> readFlacVorbisLyrics(const FileURL& url) {
    const media::SharedSource source = media::openFileSource(url);
    return source ? readFlacVorbisLyrics(*source) : std::nullopt;
}

} // namespace tamsy
