#include "Services/Lyrics/LyricsDecoding.h"
#include "Services/Lyrics/LyricsParsing.h"
#include "Services/Lyrics/LyricsText.h"

#include <gtest/gtest.h>

#include <array>

using namespace tamsy;

namespace {

// Rows of "text → what the synced parser gives for it", several a line.
const QStringView rowsOfRows[] = {
    // Fractions have two digits or three.
    u"[00:01]a → 1 a ¶ [00:01.50]a → 1.5 a ¶ [00:01.500]a → 1.5 a ¶ [00:01.05]a → 1.05 a",
    u"[00:01.5]a → - ¶ [00:01.5000]a → - ¶ [00:01.]a → - ¶ [00:01,50]a → - ¶ [1:02.5]a → -",
    // Minutes have one or two, seconds two, which may go beyond 59.
    u"[12:34] words → 754 words ¶ [1:02]a → 62 a ¶ [1:2]a → - ¶ [100:00]a → - ¶ [-1:00]a → -",
    u"[99:99.999]a → 6039.999 a ¶ [00:75.00]a → 75 a ¶ [00:01 ]a → - ¶ [ 00:01]a → -",
    u"00:01]a → - ¶ [00:01a → - ¶ <00:01>a → - ¶ ［00:01］a → - ¶ [[00:01]a → 1 a",
    // The first stamp counts wherever it stands; all behind it is words.
    u"intro [00:05.10] words → 5.1 words ¶ [x] [00:01]a → 1 a ¶ [00:01.5][00:02]a → 2 a",
    u"[00:01.00][00:02.00]Hello → 1 [00:02.00]Hello ¶ [00:01]<00:02>a → 1 <00:02>a",
    u"[00:01] → - ¶ [00:01] \t → - ¶ [00:01]... → - ¶ [00:01] ...  → - ¶ [00:01].... → 1 ....",
    u"\u3000[00:01]\u00A0a b\u2003\t → 1 a b ¶ [00:01]\u200Ba → 1 \u200Ba ¶ [00:01]… → 1 …",
    u"[00:01]\U0001F3B5 → 1 \U0001F3B5 ¶ [00:01]a\u001Fb → 1 a\u001Fb",
    // Digits beyond ASCII make a stamp, but no time; in the fraction they count as none.
    u"[٠٠:٠١]a → - ¶ [00:٠١]a → - ¶ [0\U0001D7CF:00]a → - ¶ [००:०१][00:02]a → -",
    u"[00:01.٥٠]a → 1 a ¶ [00:01.\U0001D7D3\U0001D7CE]a → 1 a ¶ [00:①②]a → - ¶ [00:0\xD835]a → -",
    // Header tags hide what stands in their line, unless their key begins with a number.
    u"[ar:Someone]\n[ti:Something] → - ¶ [ar:x] [00:01.00] words → - ¶ \t [ar:x][00:01]a → -",
    u"[a:x][00:01]a → - ¶ [:xy][00:01]a → - ¶ [by:x [00:01]a → - ¶ [by:x → - ¶ [歌:x][00:01]a → -",
    u"[一:x][00:01]a → 1 a ¶ [½:x][00:01]a → 1 a ¶ [Ⅳ:x][00:01]a → 1 a",
    u"[\U00020001:x][00:01]a → 1 a ¶ [\U0001F3B5é:x][00:01]a → - ¶ \uFEFF[ar:x][00:01]a → 1 a",
    u"[a:][00:01]a → 1 a ¶ [offset:+500] → - ¶ [offset:+5][00:01]a → 1 a ¶ [ab] c:d [00:01]a → 1 a",
    // Seven characters end a line, and the unit separator doesn't.
    u" → - ¶ \n\r\n \t\n → - ¶ none\n[00:01]a → 1 a ¶ [00:01\n]a → - ¶ [00:01]\na → -",
    u"[00:01]a\r\n[00:02]b\r\n → 1 a | 2 b ¶ [00:01]a\n[00:02]b → 1 a | 2 b",
    u"[00:01]a\r[00:02]b → 1 a | 2 b ¶ [00:01]a\v[00:02]b\f[00:03]c → 1 a | 2 b | 3 c",
    u"[00:01]a\u0085[00:02]b\u2028[00:03]c\u2029[00:04]d → 1 a | 2 b | 3 c | 4 d",
    // Lines are sorted; those of one time keep their order.
    u"[00:02]b\n[00:01]a\n[00:02]c\n[00:01.00]d → 1 a | 1 d | 2 b | 2 c",
};

TEST(LyricsParsing, ReadsStampsTagsAndLineEnds) {
    int count = 0;
    for (const QStringView rows : rowsOfRows) {
        for (const QString& row : rows.toString().split(u" ¶ "_qs)) {
            const QStringList parts = row.split(u" → "_qs);
            const std::string lines = parts[1].toStdString();
            EXPECT_EQ(shown(parseLRCFormat(parts[0])),
                      lines == "-" ? "nothing" : "synced: " + lines)
                << row.toStdString();
            ++count;
        }
    }
    EXPECT_GE(count, 60);
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
