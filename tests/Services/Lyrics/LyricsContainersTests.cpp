#include "Services/Lyrics/LyricsContainers.h"
#include "Services/Lyrics/LyricsText.h"

#include <QtEndian>
#include <gtest/gtest.h>

using namespace tamsy;

namespace {

QByteArray little(quint32 value) {
    value = qToLittleEndian(value);
    return {reinterpret_cast<const char*>(&value), 4};
}

QByteArray big(quint32 value) {
    value = qToBigEndian(value);
    return {reinterpret_cast<const char*>(&value), 4};
}

QByteArray operator""_b(const char* text, std::size_t length) {
    return {text, static_cast<qsizetype>(length)};
}

QByteArray comment(const QByteArray& text) {
    return little(static_cast<quint32>(text.size())) + text;
}

QByteArray comments(quint32 count, const QByteArray& body) {
    return comment("vendor") + little(count) + body;
}

QByteArray block(quint32 typeAndFlag, const QByteArray& body) {
    return big(typeAndFlag << 24U | static_cast<quint32>(body.size())) + body;
}

QByteArray item(const QByteArray& inside) {
    return big(static_cast<quint32>(inside.size()) + 8) + "\xA9lyr" + inside;
}

TEST(LyricsContainers, ReadTheUnsynchronisedLyricsFrame) {
    const QByteArray empty[] = {// Cut off, or with nothing but blanks or stamps.
                                "", "\3eng"_b, "\3engwords"_b, "\3eng\0"_b,
                                "\1eng\xFF\xFE\0\0\xFF\xFE"_b, "\3eng\0 \r\n"_b,
                                "\1eng\xFF\xFE\0"_b, "\3eng\0[00:01]\nwords"_b,
                                // Not in its encoding.
                                "\3eng\0\xE9"_b, "\2eng\0\0\0a\n"_b, "\1eng\0\0\xFF\xFE\x3C\xD8"_b};
    for (const QByteArray& payload : empty)
        EXPECT_EQ(shown(parseID3USLT(payload)), "nothing") << payload.toHex().data();
    const std::pair<QByteArray, const char*> rows[] = {
        {"\3eng\0words"_b, "plain: words"},
        {"\0eng\0d\xE9"_b, "plain: dé"},
        {"\7eng\0\xC3\xA9"_b, "plain: é"},
        {"\1eng\xFF\xFE\0\0\xFF\xFE\x61\0"_b, "plain: a"},
        {"\1eng\xFF\xFE\x62\0\0\0\xFE\xFF\0a"_b, "plain: a"},
        {"\1eng\0b\0\0\xFE\xFF\0a"_b, "plain: a"},
        {"\2eng\0\0\0a\0\n\0b"_b, "plain: a | b"},
        {"\2eng\x61\0\0\x62\0\0\0c"_b, "plain: c"}, // the zeros in the middle aren't aligned
        {"\3eng\0[00:01]a"_b, "synced: 1 a"},
    };
    for (const auto& [payload, lyrics] : rows)
        EXPECT_EQ(shown(parseID3USLT(payload)), lyrics) << payload.toHex().data();
}

TEST(LyricsContainers, ReadVorbisComments) {
    const std::pair<QByteArray, const char*> rows[] = {
        {"", "nothing"},
        {little(7) + "vendor", "nothing"},
        {comment("vendor") + "\1\0\0"_b, "nothing"},
        {comments(0, comment("LYRICS=a")), "nothing"},
        {comments(1, comment("LYRICS=a")), "plain: a"},
        {comments(2, comment("TITLE=lyrics") + comment("lYrIcS= a=b ")), "plain: a=b"},
        {comments(1, comment("lyrics-eng=[00:01]")), "plain: [00:01]"},
        {comments(2, comment("LYRICS=") + comment("SYNCEDLYRICS=[00:01]x")), "plain: "},
        {comments(3, comment("LYRICS") + comment("LYRICS=\xE9") + comment("LYRICS=b")), "plain: b"},
        {comments(1, comment("LYRIC\xC5\xBF=a")), "nothing"}, // a long s
        {comments(3, comment("A=a") + comment("B=b")), "nothing"},
        {comments(2, little(0xFFFFFFFF) + "LYRICS=a"), "nothing"},
        {comments(0xFFFFFFFF, comment("") + comment("LYRICS=a")), "plain: a"},
        {little(0xFFFFFFFF) + comment("LYRICS=a"), "nothing"},
    };
    for (const auto& [body, lyrics] : rows) {
        EXPECT_EQ(shown(parseVorbisCommentBlockForLyrics(body)), lyrics) << body.data();
        const media::MemorySource flac("fLaC" + block(0, QByteArray(34, '\0')) + block(0x84, body));
        EXPECT_EQ(shown(readFlacVorbisLyrics(flac)), lyrics) << body.data();
    }
}

TEST(LyricsContainers, WalkTheBlocksOfAFlacFile) {
    const QByteArray lyrics = comments(1, comment("LYRICS=a"));
    const QByteArray others = comments(1, comment("TITLE=a"));
    const std::pair<QByteArray, const char*> rows[] = {
        {"fLaC" + block(0x84, ""), "nothing"},
        {"fLaC" + block(4, others) + block(0x84, lyrics), "plain: a"},
        {"fLaC" + block(0x84, others) + block(4, lyrics), "nothing"},
        {"fLaC" + block(4, others) + block(0x84, lyrics).chopped(1), "nothing"},
        {"fLaC" + block(1, QByteArray(20'000, 'x')) + block(0x84, lyrics), "plain: a"},
        {"fLac" + block(0x84, lyrics), "nothing"},
        {"fLaC" + block(4, others) + QByteArray("\4\0", 2), "nothing"},
    };
    for (const auto& [file, expected] : rows)
        EXPECT_EQ(shown(readFlacVorbisLyrics(media::MemorySource(file))), expected);
}

TEST(LyricsContainers, FindTheItemOfAnMpeg4File) {
    const QByteArray value = big(24) + "data" + big(1) + big(0);
    const std::pair<QByteArray, const char*> rows[] = {
        {"ftyp" + item(value + "[00:01]a") + "trailing", "synced: 1 a"},
        {item(value + " a\nb "), "plain: a | b"},
        {item("date" + value + "a"), "plain: a"},
    };
    for (const auto& [file, expected] : rows)
        EXPECT_EQ(shown(readM4ALyrics(media::MemorySource(file))), expected) << file.data();
    const QByteArray empty[] = {// No text in the item.
                                "", item(value + "[00:01]\nb"), item(value + " \n"),
                                item(value + "\xE9"), item(value), item("no value here at all"),
                                // The first name counts, and has no size, or a wrong one.
                                "\xA9lyr" + item(value + "a"),
                                big(0xFFFFFFFF) + "\xA9lyr" + value + "a",
                                big(8) + "\xA9lyr" + value + "a", big(0) + "\xA9lyr" + value + "a",
                                big(9) + "\xA9lyr" + value};
    for (const QByteArray& file : empty)
        EXPECT_EQ(shown(readM4ALyrics(media::MemorySource(file))), "nothing") << file.data();
    // Names that lie across the places where one piece ends and the next begins.
    for (qsizetype ahead = 262'144 - 14; ahead <= 262'144; ++ahead) {
        const QByteArray name = QByteArray(ahead, 'x') + item(value + "a");
        EXPECT_EQ(shown(readM4ALyrics(media::MemorySource(name))), "plain: a") << ahead;
        const QByteArray inside = item(QByteArray(ahead, 'x') + value + "a");
        EXPECT_EQ(shown(readM4ALyrics(media::MemorySource(inside))), "plain: a") << ahead;
    }
}

} // namespace
