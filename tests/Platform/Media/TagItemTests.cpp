#include "Platform/Media/MediaAsset.h"

#include <QFile>
#include <gtest/gtest.h>

#include <algorithm>

using namespace tamsy;

namespace {

const QString lyrics = QStringLiteral("[00:00.50]为你弹奏\n[00:01.50]萧邦的夜曲");

MediaAsset open(const char* file) {
    return {FileURL::fromPath(QByteArray(TAG_FIXTURES "/").append(file)), MediaAsset::Depth::Full};
}

QByteArray coverFile() {
    QFile file(QStringLiteral(TAG_FIXTURES "/cover.png"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A frame's payload as the tag's writer meant it.
QByteArray lyricsFrame() {
    const QString text = QChar(0xFEFF) + lyrics;
    return QByteArray("\x01zho\xFF\xFE\0\0", 8) +
           QByteArray(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
}

struct ItemRow {
    const char* file;
    MetadataFormat format;
    const char* identifier;
    QString text;
    QByteArray data;
};

TEST(TagItems, CarryIdentifierTextAndBytesInTheirFormatsList) {
    using enum MetadataFormat;
    const QByteArray packed = lyricsFrame();
    const ItemRow rows[] = {
        {"mp3-v23.mp3", ID3, "id3/USLT", lyrics, packed},
        {"mp3-v22.mp3", ID3, "id3/USLT", lyrics, packed},
        {"mp3-v23-unsynchronised.mp3", ID3, "id3/USLT", lyrics, packed},
        {"mp3-v24-packed-frames.mp3", ID3, "id3/USLT", lyrics, packed},
        {"mp3-v24.mp3", ID3, "id3/TXXX", lyrics,
         "\x03LYRICS" + QByteArray(1, '\0') + lyrics.toUtf8()},
        {"m4a-movie-last.m4a", ITunes, "itsk/©lyr", lyrics, lyrics.toUtf8()},
        {"m4a-movie-last.m4a", ITunes, "itlk/com.apple.iTunes.LYRICS", lyrics, lyrics.toUtf8()},
        {"m4a-alac-named-keys.m4a", QuickTime, "mdta/title", u"夜曲 Nocturne"_qs, "夜曲 Nocturne"},
        {"m4a-user-data.m4a", QuickTime, "udta/©nam", u"夜曲 Nocturne"_qs, "夜曲 Nocturne"},
    };
    for (const ItemRow& row : rows) {
        const auto items = open(row.file).metadata(row.format);
        const auto item =
            std::ranges::find(items, QString::fromUtf8(row.identifier), &MediaItem::identifier);
        ASSERT_NE(item, items.end()) << row.file << row.identifier;
        EXPECT_EQ(item->text, row.text) << row.file;
        EXPECT_EQ(item->data(), row.data) << row.file;
    }
}

TEST(TagItems, GiveEveryContainersPictureAsItsOwnBytes) {
    for (const char* file :
         {"mp3-v24.mp3", "mp3-v23.mp3", "mp3-v22.mp3", "mp3-v23-unsynchronised.mp3",
          "m4a-movie-last.m4a", "ogg-vorbis.ogg"}) {
        const auto items = open(file).commonMetadata();
        const auto picture = std::ranges::find(items, CommonKey::Artwork, &MediaItem::commonKey);
        ASSERT_NE(picture, items.end()) << file;
        EXPECT_TRUE(picture->data().startsWith(coverFile())) << file;
        EXPECT_FALSE(picture->text) << file;
    }
    const auto opus = open("ogg-opus.ogg").commonMetadata();
    const auto legacy = std::ranges::find(opus, CommonKey::Artwork, &MediaItem::commonKey);
    ASSERT_NE(legacy, opus.end());
    EXPECT_EQ(QByteArray::fromBase64(legacy->text->toLatin1()), coverFile());
}

TEST(TagItems, KeepTheFilesOrder) {
    QStringList identifiers;
    for (const MediaItem& item : open("mp3-v24.mp3").metadata(MetadataFormat::ID3))
        identifiers += item.identifier;
    EXPECT_EQ(identifiers.join(u' '), u"id3/TIT2 id3/TPE1 id3/TALB id3/APIC id3/SYLT id3/TXXX");
}

TEST(TagItems, TurnSynchronisedSyllablesIntoStampedLines) {
    const auto items = open("mp3-v24.mp3").metadata(MetadataFormat::ID3);
    const auto item = std::ranges::find(items, u"id3/SYLT"_qs, &MediaItem::identifier);
    ASSERT_NE(item, items.end());
    EXPECT_EQ(item->text, u"[00:00.500]为你\n[01:01.500]弹奏"_qs);
}

TEST(TagItems, NameTheirTextsInTheInfoDictionary) {
    const std::tuple<const char*, const char*, QString> rows[] = {
        {"mp3-v24.mp3", "LYRICS", lyrics},
        {"m4a-movie-last.m4a", "©lyr", lyrics},
        {"m4a-movie-last.m4a", "lyr", lyrics},
        {"ogg-vorbis.ogg", "LYRICS", lyrics},
        {"wav-info-and-id3.wav", "ICMT", u"of the list"_qs},
        {"aiff-names.aiff", "ANNO", u"a note"_qs},
    };
    for (const auto& [file, key, text] : rows)
        EXPECT_EQ(open(file).infoDictionary().value(QString::fromUtf8(key)), text) << file << key;
}

} // namespace
