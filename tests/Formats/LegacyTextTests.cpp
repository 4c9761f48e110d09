#include "Formats/LegacyText.h"
#include "Formats/TextConverter.h"

#include <QFile>
#include <gtest/gtest.h>

#include <map>

using namespace tamsy;

namespace {

TEST(LegacyText, IsJudgedByAllTextsOfATagTogether) {
    using enum LegacyEncoding;
    const std::pair<std::vector<QByteArray>, LegacyEncoding> rows[] = {
        {{}, Utf8},
        {{"\xE5\xA4\x9C\xE6\x9B\xB2"}, Utf8},
        {{"\xD2\xB9\xC7\xFA", "\xD6\xDC\xBD\xDC\xC2\xD7"}, Gb18030},
        // Its first text is valid UTF-8.
        {{"\xD0\xA1\xC9\xA1", "\xD6\xDC\xBD\xDC\xC2\xD7"}, Gb18030},
        {{"\x8F\x9C\x81\xB1"}, Gb18030}, // rare characters, but not letters in Latin-1
        {{"Caf\xE9 del Mar"}, Windows1252},
        {{"Don\x92t", "\x93Heroes\x94"}, Windows1252},
        {{"\xD2\xB9\xC7\xFA", "caf\xE9 "}, Windows1252}, // one unpaired byte decides
        {{"\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9"
          "\xC7\xFA\xD2\xB9\xC7\xFA\xD2"},
         Gb18030},
    };
    for (const auto& [texts, encoding] : rows)
        EXPECT_EQ(detectLegacyEncoding(texts), encoding) << (texts.empty() ? "" : texts[0].data());
}

TEST(LegacyText, DecodesRealTitlesOfEachEncoding) {
    struct Count {
        int right = 0;
        int all = 0;
    };
    std::map<QByteArray, Count> counts;
    QFile table(QStringLiteral(LEGACY_TITLES));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    for (const QByteArray& line : table.readAll().trimmed().split('\n')) {
        const QByteArrayList cells = line.split('\t'); // encoding, title, artist
        ASSERT_EQ(cells.size(), 3) << line.data();
        std::vector<QByteArray> texts;
        for (const QByteArray& cell : cells.sliced(1))
            texts.push_back(convertText(cell, "UTF-8", cells[0].constData()));
        const LegacyEncoding encoding = detectLegacyEncoding(texts);
        const bool isRight = decodeLegacyText(texts[0], encoding).toUtf8() == cells[1] &&
                             decodeLegacyText(texts[1], encoding).toUtf8() == cells[2];
        Count& count = counts[cells[0]];
        ++count.all;
        count.right += isRight ? 1 : 0;
        if (!isRight)
            std::cout << "wrong: " << line.data() << '\n';
    }
    const std::pair<const char*, double> shares[] = {{"gb18030", 0.98}, {"shift_jis", 0.98},
                                                     {"cp1251", 0.98},  {"cp1252", 0.98},
                                                     {"big5", 0.85},    {"euc-kr", 0.85}};
    for (const auto& [encoding, share] : shares) {
        const Count& count = counts[encoding];
        EXPECT_GE(count.right, share * count.all) << encoding << " of " << count.all;
        EXPECT_GT(count.all, 30) << encoding;
    }
}

} // namespace
