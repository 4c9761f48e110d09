#include "Tags/Id3Lyrics.h"

#include "Formats/ByteCursor.h"
#include "Formats/LegacyText.h"
#include "Tags/TagText.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tamsy::media {

namespace {

constexpr std::uint8_t timesInMilliseconds = 2;
constexpr std::size_t mostEntriesOfSong = 200'000;

struct Entry {
    QByteArrayView bytes;
    std::uint32_t milliseconds = 0;
};

constexpr bool isWide(std::uint8_t encoding) {
    return encoding == 1 || encoding == 2;
}

/// Reads up to the terminator; nothing if there is none.
std::optional<QByteArrayView> readText(ByteCursor& cursor, QByteArrayView payload,
                                       std::uint8_t encoding) {
    const auto start = static_cast<qsizetype>(cursor.position());
    const std::uint64_t width = isWide(encoding) ? 2 : 1;
    while (const auto unit = cursor.readBytes(width)) {
        if (std::ranges::all_of(*unit, [](std::byte byte) { return byte == std::byte{0}; }))
            return payload.sliced(start, static_cast<qsizetype>(cursor.position() - width) - start);
    }
    return std::nullopt;
}

std::vector<Entry> readEntries(ByteCursor& cursor, QByteArrayView payload, std::uint8_t encoding) {
    std::vector<Entry> entries;
    while (entries.size() < mostEntriesOfSong) {
        const auto bytes = readText(cursor, payload, encoding);
        const auto time = cursor.readU32();
        if (!bytes || !time)
            break;
        entries.push_back({.bytes = *bytes, .milliseconds = *time});
    }
    return entries;
}

/// Texts of single bytes are judged together, whatever they are called.
LegacyEncoding judged(const std::vector<Entry>& entries) {
    std::vector<QByteArray> texts;
    texts.reserve(entries.size());
    for (const Entry& entry : entries)
        texts.push_back(QByteArray::fromRawData(entry.bytes.data(), entry.bytes.size()));
    return judgeLegacyEncoding(texts);
}

std::vector<QString> decoded(const std::vector<Entry>& entries, std::uint8_t encoding) {
    const LegacyEncoding legacy = isWide(encoding) ? LegacyEncoding::Utf8 : judged(entries);
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

/// Puts the words behind one another, on a new line with a stamp wherever one begins.
QString joinedLines(const std::vector<Entry>& entries, const std::vector<QString>& texts) {
    const bool marksLines =
        std::ranges::any_of(texts, [](const QString& text) { return text.contains(u'\n'); });
    QString lines;
    bool startsLine = true;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        // Writers put the newline before a line's first words, or behind its last.
        bool isBehindNewline = !marksLines;
        for (const QStringView words : QStringView(texts[i]).tokenize(u'\n')) {
            startsLine = startsLine || isBehindNewline;
            isBehindNewline = true;
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
    const std::uint8_t encoding = cursor.readU8().value_or(0);
    if (!cursor.skip(3) || cursor.readU8() != timesInMilliseconds || !cursor.skip(1) ||
        !readText(cursor, payload, encoding))
        return std::nullopt;
    const std::vector<Entry> entries = readEntries(cursor, payload, encoding);
    const QString text = joinedLines(entries, decoded(entries, encoding));
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace tamsy::media
