#include "Services/Lyrics/LyricsDecoding.h"
#include "Services/Lyrics/LyricsParsing.h"
#include "Services/Lyrics/LyricsText.h"

#include <gtest/gtest.h>

#include <array>

using namespace tamsy;

namespace {

const QStringView withoutLines[] = {
    // A fraction has two or three digits.
    u"[00:01.5]a", u"[00:01.5000]a", u"[00:01.]a", u"[00:01,50]a",
    // Minutes have one or two digits; seconds have two.
    u"[1:2]a", u"[100:00]a", u"[-1:00]a", u"[ 00:01]a", u"[00:01a",
    // A line without words.
    u"[00:01]", u"[00:01] \t", u"[00:01]...", u"", u"\n\r\n \t\n",
    // Digits outside ASCII make a stamp without a time.
    u"[٠٠:٠١]a", u"[00:٠١]a", u"[0\U0001D7CF:00]a", u"[००:०१][00:02]a", u"[00:0\xD835]a",
    // A line with a header tag is skipped.
    u"[ar:Someone]\n[ti:Something]", u"[ar:x] [00:01.00] words", u"\t [ar:x][00:01]a",
    u"[:xy][00:01]a", u"[by:x [00:01]a", u"[歌:x][00:01]a", u"[\U0001F3B5é:x][00:01]a"};

const QStringView withOneLine[] = {u"[00:01]a", u"[[00:01]a", u"none\n[00:01]a",
                                   // Digits outside ASCII count as 0 in a fraction.
                                   u"[00:01.٥٠]a", u"[00:01.\U0001D7D3\U0001D7CE]a",
                                   // A tag that starts with a number, or isn't one.
                                   u"[一:x][00:01]a", u"[Ⅳ:x][00:01]a", u"[\U00020001:x][00:01]a",
                                   u"\uFEFF[ar:x][00:01]a", u"[a:][00:01]a", u"[offset:+5][00:01]a",
                                   u"[ab] c:d [00:01]a"};

const std::pair<QStringView, const char*> withLines[] = {
    {u"[00:01.50]a", "1.5 a"},
    {u"[00:01.500]a", "1.5 a"},
    {u"[12:34] words", "754 words"},
    {u"[1:02]a", "62 a"},
    {u"[99:99.999]a", "6039.999 a"},
    {u"[00:75.00]a", "75 a"},
    // The first stamp in a line counts; all that follows is words.
    {u"intro [00:05.10] words", "5.1 words"},
    {u"[00:01.5][00:02]a", "2 a"},
    {u"[00:01]<00:02>a", "1 <00:02>a"},
    {u"[00:01]....", "1 ...."},
    {u"\u3000[00:01]\u00A0a b\u2003\t", "1 a b"},
    {u"[00:01]\u200Ba", "1 \u200Ba"},
    {u"[00:01]…", "1 …"},
    // Seven characters end a line.
    {u"[00:01]a\r\n[00:02]b\r\n", "1 a | 2 b"},
    {u"[00:01]a\r[00:02]b", "1 a | 2 b"},
    {u"[00:01]a\v[00:02]b\f[00:03]c", "1 a | 2 b | 3 c"},
    {u"[00:01]a\u0085[00:02]b\u2028[00:03]c\u2029[00:04]d", "1 a | 2 b | 3 c | 4 d"},
    // Lines are sorted by time; equal times keep their order.
    {u"[00:02]b\n[00:01]a\n[00:02]c\n[00:01.00]d", "1 a | 1 d | 2 b | 2 c"},
};

TEST(LyricsParsing, ReadsStampsTagsAndLineEnds) {
    const auto expectLines = [](QStringView text, const std::string& lines) {
        EXPECT_EQ(shown(parseLRCFormat(text)), lines) << text.toUtf8().data();
    };
    for (const QStringView text : withoutLines)
        expectLines(text, "nothing");
    for (const QStringView text : withOneLine)
        expectLines(text, "synced: 1 a");
    for (const auto& [text, lines] : withLines)
        expectLines(text, std::string("synced: ") + lines);
}

TEST(LyricsParsing, ChoosesBetweenSyncedAndPlainByTheSourcesRule) {
    const std::array<const char*, 3> rows[] = {
        {"", "plain: ", "nothing"},
        {" \n\t\r\n ", "plain: ", "nothing"},
        {" a \r\n\r\n\tb\u3000\u2028c", "plain: a | b | c", "plain: a | b | c"},
        {"[ar:x]\na", "plain: [ar:x] | a", "plain: [ar:x] | a"},
        {"plain\n[00:01]a", "synced: 1 a", "synced: 1 a"},
        {"[00:01]\nb", "plain: [00:01] | b", "nothing"},
        {"[٠٠:٠١]a", "plain: [٠٠:٠١]a", "nothing"},
        {"[00:\n01]a", "plain: [00: | 01]a", "plain: [00: | 01]a"},
    };
    for (const auto& [text, elsePlain, stampsDecide] : rows) {
        EXPECT_EQ(shown(parseSyncedElsePlain(QString::fromUtf8(text))), elsePlain);
        EXPECT_EQ(shown(parseAsStampsDecide(QString::fromUtf8(text))), stampsDecide);
    }
}

TEST(LyricsParsing, StaysQuickOnHostileTexts) {
    const QString longLine = u"[00:01]"_qs + QString(500'000, u'a');
    EXPECT_EQ(parseLRCFormat(longLine)->lines.front().text.size(), 500'000);
    EXPECT_FALSE(parseLRCFormat(QString(500'000, u'[')));
    EXPECT_FALSE(parseLRCFormat(u"[00:01."_qs.repeated(100'000)));
    const auto many = parseLRCFormat(u"[00:02]b\n[00:01]a\n"_qs.repeated(50'000));
    EXPECT_EQ(many->lines.size(), 100'000);
    EXPECT_EQ(many->lines[49'999].text + many->lines[50'000].text, u"ab"_qs);
}

TEST(LyricsDecoding, TakesTheFirstEncodingThatFits) {
    const std::pair<const char*, QStringView> rows[] = {
        {"e6ad8c", u"歌"},
        {"efbbbf 61", u"a"},
        {"6100 6200", QStringView(u"a\0b\0", 4)},
        {"fffe 6100", u"a"},
        {"feff 0061", u"a"},
        {"fffe 3cd8 b5df", u"\U0001F3B5"},
        {"4c6b e965", u"\u6B4C\u65E9"},           // no mark: little-endian
        {"00d8 006b", u"Øk"},                     // unless that leaves a lone half
        {"d800 00d8", QStringView(u"Ø\0\0Ø", 4)}, // lone either way
        {"b8e8b4", u"¸è´"},                       // an odd byte: no UTF-16
        {"eda080", u"í\u00A0\u0080"},             // half a pair in UTF-8
        {"c0afc0", u"À¯À"},                       // overlong
    };
    for (const auto& [bytes, text] : rows)
        EXPECT_EQ(decodeBestEffort(QByteArray::fromHex(bytes)), text.toString()) << bytes;
    EXPECT_FALSE(decodeBestEffort({}));
    for (const char* broken : {"610062", "610000d8", "00dc6100"})
        EXPECT_FALSE(decodeUTF16LittleEndian(QByteArray::fromHex(broken))) << broken;
    EXPECT_FALSE(decodeUTF8("\xB8\xE8\xB4\xCA")); // GBK
}

} // namespace
