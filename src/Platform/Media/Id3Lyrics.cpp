#include "Platform/Media/Id3Lyrics.h"

#include "Platform/Media/TagText.h"
#include "Utils/ByteCursor.h"

#include <algorithm>
#include <vector>

namespace tamsy::media {

namespace {

constexpr std::uint8_t timesInMilliseconds = 2;

struct Entry {
    QString text;
    std::uint32_t milliseconds = 0;
};

/// Reads up to the terminator; nothing if there is none.
std::optional<QString> readText(ByteCursor& cursor, std::uint8_t encoding) {
    const bool isWide = encoding == 1 || encoding == 2;
    QByteArray bytes;
    while (const auto unit = cursor.readBytes(isWide ? 2 : 1)) {
        if (std::ranges::all_of(*unit, [](std::byte byte) { return byte == std::byte{0}; })) {
            if (isWide)
                return encoding == 1 ? decodeUtf16(bytes) : decodeUtf16BigEndian(bytes);
            const TagText text = encoding == 0 ? legacyText(bytes) : utf8Text(bytes);
            return text.undecided.isEmpty() ? text.decoded : QString::fromUtf8(bytes);
        }
        bytes.append(reinterpret_cast<const char*>(unit->data()),
                     static_cast<qsizetype>(unit->size()));
    }
    return std::nullopt;
}

std::vector<Entry> readEntries(ByteCursor& cursor, std::uint8_t encoding) {
    std::vector<Entry> entries;
    while (auto text = readText(cursor, encoding)) {
        const auto time = cursor.readU32();
        if (!time)
            break;
        entries.push_back({.text = std::move(*text), .milliseconds = *time});
    }
    return entries;
}

QString stamp(std::uint32_t milliseconds) {
    const std::uint32_t minutes = std::min(milliseconds / 60'000U, 99U);
    return QStringLiteral("[%1:%2.%3]")
        .arg(minutes, 2, 10, QChar(u'0'))
        .arg(milliseconds / 1000U % 60U, 2, 10, QChar(u'0'))
        .arg(milliseconds % 1000U, 3, 10, QChar(u'0'));
}

} // namespace

std::optional<QString> synchronisedLyricsText(QByteArrayView payload) {
    ByteCursor cursor(
        std::as_bytes(std::span(payload.data(), static_cast<std::size_t>(payload.size()))));
    const std::uint8_t encoding = cursor.readU8().value_or(0);
    if (!cursor.skip(3) || cursor.readU8() != timesInMilliseconds || !cursor.skip(1) ||
        !readText(cursor, encoding))
        return std::nullopt;
    const std::vector<Entry> entries = readEntries(cursor, encoding);
    const bool marksLines = std::ranges::any_of(
        entries, [](const Entry& entry) { return entry.text.contains(QChar(u'\n')); });
    QString text;
    for (const Entry& entry : entries) {
        const bool startsLine =
            text.isEmpty() || !marksLines || entry.text.startsWith(QChar(u'\n'));
        QString words = entry.text;
        words.remove(QChar(u'\n')).remove(QChar(u'\r'));
        if (startsLine)
            text += (text.isEmpty() ? QString() : QStringLiteral("\n")) + stamp(entry.milliseconds);
        text += words;
    }
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace tamsy::media
