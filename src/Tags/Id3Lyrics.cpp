#include "Tags/Id3Lyrics.h"

#include "Formats/ByteCursor.h"
#include "Formats/Id3Terminator.h"
#include "Formats/LegacyText.h"
#include "Tags/TagText.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tamsy::media {

namespace {

constexpr std::uint8_t timesInMilliseconds = 2;
constexpr std::size_t maxEntriesOfSong = 200'000;

struct Entry {
    QByteArrayView bytes;
    std::uint32_t milliseconds = 0;
};

/// Reads a text up to its terminator; nothing if there is none.
std::optional<QByteArrayView> readText(ByteCursor& cursor, QByteArrayView payload, char encoding) {
    const auto start = static_cast<qsizetype>(cursor.position());
    const qsizetype unit = id3UnitSize(encoding);
    const qsizetype end = findId3Terminator(payload, unit, start);
    if (end < 0 || !cursor.seek(static_cast<std::uint64_t>(end + unit)))
        return std::nullopt;
    return payload.sliced(start, end - start);
}

std::vector<Entry> readEntries(ByteCursor& cursor, QByteArrayView payload, char encoding) {
    std::vector<Entry> entries;
    while (entries.size() < maxEntriesOfSong) {
        const auto bytes = readText(cursor, payload, encoding);
        const auto time = cursor.readU32();
        if (!bytes || !time)
            break;
        entries.push_back({.bytes = *bytes, .milliseconds = *time});
    }
    return entries;
}

/// The encoding of all single-byte texts is detected together, whatever the frame declares.
LegacyEncoding judged(const std::vector<Entry>& entries) {
    std::vector<QByteArray> texts;
    texts.reserve(entries.size());
    for (const Entry& entry : entries)
        texts.push_back(QByteArray::fromRawData(entry.bytes.data(), entry.bytes.size()));
    return detectLegacyEncoding(texts);
}

std::vector<QString> decoded(const std::vector<Entry>& entries, char encoding) {
    const LegacyEncoding legacy =
        id3UnitSize(encoding) == 2 ? LegacyEncoding::Utf8 : judged(entries);
    std::vector<QString> texts;
    texts.reserve(entries.size());
    for (const Entry& entry : entries) {
        texts.push_back(encoding == 1   ? decodeUtf16(entry.bytes)
                        : encoding == 2 ? decodeUtf16BigEndian(entry.bytes)
                                        : decodeLegacyText(entry.bytes, legacy));
        texts.back().remove(u'\r');
    }
    return texts;
}

void appendStamp(QString& text, std::uint32_t milliseconds) {
    const std::uint32_t minutes = std::min(milliseconds / 60'000U, 99U);
    const std::uint32_t seconds = milliseconds / 1000U % 60U;
    const auto digit = [](std::uint32_t value) { return QChar(u'0' + value % 10); };
    const QChar stamp[] = {u'[',
                           digit(minutes / 10),
                           digit(minutes),
                           u':',
                           digit(seconds / 10),
                           digit(seconds),
                           u'.',
                           digit(milliseconds / 100),
                           digit(milliseconds / 10),
                           digit(milliseconds),
                           u']'};
    text.append(stamp, std::size(stamp));
}

/// Joins the words, with a line break and a stamp at the start of each line.
QString joinedLines(const std::vector<Entry>& entries, const std::vector<QString>& texts) {
    const bool marksLines =
        std::ranges::any_of(texts, [](const QString& text) { return text.contains(u'\n'); });
    QString lines;
    bool startsLine = true;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        // The newline may precede a line's first words or follow its last.
        bool followsNewline = !marksLines;
        for (const QStringView words : QStringView(texts[i]).tokenize(u'\n')) {
            startsLine = startsLine || followsNewline;
            followsNewline = true;
            if (words.isEmpty())
                continue;
            if (startsLine) {
                lines += lines.isEmpty() ? QString() : QStringLiteral("\n");
                appendStamp(lines, entries[i].milliseconds);
            }
            startsLine = false;
            lines += words;
        }
    }
    return lines;
}

} // namespace

std::optional<QString> synchronisedLyricsText(QByteArrayView payload) {
    ByteCursor cursor(
        std::as_bytes(std::span(payload.data(), static_cast<std::size_t>(payload.size()))));
    const auto encoding = static_cast<char>(cursor.readU8().value_or(0));
    if (!cursor.skip(3) || cursor.readU8() != timesInMilliseconds || !cursor.skip(1) ||
        !readText(cursor, payload, encoding))
        return std::nullopt;
    const std::vector<Entry> entries = readEntries(cursor, payload, encoding);
    const QString text = joinedLines(entries, decoded(entries, encoding));
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace tamsy::media
