#include "Services/Lyrics/LyricsItems.h"

#include "Services/Lyrics/LyricsContainers.h"
#include "Services/Lyrics/LyricsDecoding.h"
#include "Services/Lyrics/LyricsParsing.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace tamsy {
namespace {

constexpr QStringView plainKeys[] = {
    u"LYRICS",         u"UNSYNCEDLYRICS", u"lyrics", u"Lyrics", u"unsynced lyrics",
    u"UnsyncedLyrics", u"unsyncedlyrics", u"©lyr",   u"lyr"};
constexpr QStringView syncedKeys[] = {u"SYNCEDLYRICS", u"syncedlyrics", u"SyncedLyrics",
                                      u"synced lyrics"};

bool containsAny(QStringView text, std::initializer_list<QStringView> words) {
    return std::ranges::any_of(words, [text](QStringView word) { return text.contains(word); });
}

/// Whether `text` contains "lyrics" in any case, or the Chinese word. Only ASCII letters match:
/// Unicode case folding would take the long s for an s.
bool mentionsLyrics(QStringView text) {
    constexpr std::u16string_view word = u"lyrics";
    constexpr unsigned caseBit = 0x20;
    const auto matches = [](char16_t a, char16_t b) { return (a | caseBit) == b; };
    const std::u16string_view units(text.utf16(), static_cast<std::size_t>(text.size()));
    return std::search(units.begin(), units.end(), word.begin(), word.end(), matches) !=
               units.end() ||
           text.contains(u"歌词");
}

std::optional<Lyrics> lyricsOf(const MediaItem& item, MetadataFormat format) {
    const QString identifier = item.identifier.toLower();
    const bool isFrame =
        format == MetadataFormat::ID3 && containsAny(identifier, {u"uslt", u"unsynch"});
    const bool hasText = item.text && !item.text->isEmpty();
    const QByteArray data = isFrame || !hasText ? item.data() : QByteArray();
    if (isFrame) {
        if (auto lyrics = parseID3USLT(data))
            return lyrics;
    }
    const auto text = hasText ? item.text : decodeBestEffort(data);
    if (!text)
        return std::nullopt;
    const bool hasTimeStamps = hasStamps(*text);
    const bool looksLikeLyrics = hasTimeStamps || mentionsLyrics(*text);
    if (!looksLikeLyrics && !containsAny(identifier, {u"uslt", u"unsync", u"lyr", u"sylt"}))
        return std::nullopt;
    return hasTimeStamps ? parseLRCFormat(*text) : std::optional(parsePlainLyrics(*text));
}

/// The first non-empty text under one of `keys`.
std::optional<QString> firstText(const QHash<QString, QString>& info,
                                 std::span<const QStringView> keys) {
    for (const QStringView key : keys) {
        const QString text = info.value(key.toString());
        if (!text.isEmpty())
            return text;
    }
    return std::nullopt;
}

} // namespace

std::optional<Lyrics> readEmbeddedLyricsAVAsync(const MediaAsset& asset) {
    for (const MetadataFormat format :
         {MetadataFormat::ID3, MetadataFormat::ITunes, MetadataFormat::QuickTime}) {
        for (const MediaItem& item : asset.metadata(format)) {
            if (auto lyrics = lyricsOf(item, format))
                return lyrics;
        }
    }
    return std::nullopt;
}

std::optional<Lyrics> lyricsInInfoDictionary(const MediaAsset& asset) {
    const QHash<QString, QString>& info = asset.infoDictionary();
    if (const auto plain = firstText(info, plainKeys))
        return parseSyncedElsePlain(*plain);
    const auto synced = firstText(info, syncedKeys);
    return synced ? parseLRCFormat(*synced) : std::nullopt;
}

} // namespace tamsy
