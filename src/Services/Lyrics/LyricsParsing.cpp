#include "Services/Lyrics/LyricsParsing.h"

#include "Services/Lyrics/LyricsStamp.h"
#include "Utils/NumericCharacter.h"
#include "Utils/TextTrimming.h"

#include <algorithm>

namespace tamsy {
namespace {

template <typename Visit>
void forEachLine(QStringView text, Visit visit) {
    qsizetype start = 0;
    for (qsizetype at = 0; at < text.size(); ++at) {
        if (isNewline(text[at].unicode())) {
            visit(text.sliced(start, at - start));
            start = at + 1;
        }
    }
    visit(text.sliced(start));
}

/// The first `count` characters of `text`; nothing if it is shorter.
std::optional<QStringView> firstCharacters(QStringView text, int count) {
    qsizetype length = 0;
    for (int i = 0; i < count; ++i) {
        if (length >= text.size())
            return std::nullopt;
        const bool isPair = text[length].isHighSurrogate() && length + 1 < text.size() &&
                            text[length + 1].isLowSurrogate();
        length += isPair ? 2 : 1;
    }
    return text.first(length);
}

/// Whether `line` starts with a tag such as "[ar:…]", whose key has at most two characters. If it
/// starts with a number, it is a time stamp or resembles one.
bool isHeaderTag(QStringView line) {
    if (!line.startsWith(u'[') || !line.contains(u':'))
        return false;
    const qsizetype end = line.indexOf(u']');
    const QStringView inner = end < 0 ? line.sliced(1) : line.sliced(1, end - 1);
    const auto key = firstCharacters(inner, 3);
    return key && key->contains(u':') && !startsWithNumber(inner);
}

std::optional<LyricsLine> parseLine(QStringView untrimmed) {
    const QStringView line = trimmedOfWhitespace(untrimmed);
    if (line.isEmpty() || isHeaderTag(line))
        return std::nullopt;
    const auto stamp = findStamp(line);
    if (!stamp)
        return std::nullopt;
    const QStringView text = trimmedOfWhitespace(stamp->rest);
    if (text.isEmpty() || text == u"...")
        return std::nullopt;
    const auto time = secondsOf(*stamp);
    return time ? std::optional(LyricsLine{*time, text.toString()}) : std::nullopt;
}

} // namespace

bool hasStamps(QStringView text) {
    return findStamp(text).has_value();
}

std::optional<Lyrics> parseLRCFormat(QStringView text) {
    Lyrics lyrics{.lines = {}, .isSynced = true};
    forEachLine(text, [&lyrics](QStringView line) {
        if (auto parsed = parseLine(line))
            lyrics.lines.append(*std::move(parsed));
    });
    if (lyrics.lines.isEmpty())
        return std::nullopt;
    std::ranges::stable_sort(lyrics.lines, {}, &LyricsLine::time);
    return lyrics;
}

Lyrics parsePlainLyrics(QStringView text) {
    Lyrics lyrics;
    forEachLine(text, [&lyrics](QStringView line) {
        if (const QStringView words = trimmedOfWhitespaceAndNewlines(line); !words.isEmpty())
            lyrics.lines.append({.time = 0, .text = words.toString()});
    });
    return lyrics;
}

Lyrics parseSyncedElsePlain(QStringView text) {
    if (hasStamps(text)) {
        if (auto synced = parseLRCFormat(text))
            return *std::move(synced);
    }
    return parsePlainLyrics(text);
}

std::optional<Lyrics> parseAsStampsDecide(QStringView text) {
    if (trimmedOfWhitespaceAndNewlines(text).isEmpty())
        return std::nullopt;
    return hasStamps(text) ? parseLRCFormat(text) : parsePlainLyrics(text);
}

} // namespace tamsy
