#include "Platform/Media/LegacyText.h"
#include "Platform/Media/TagText.h"

#include <gtest/gtest.h>

using namespace tamsy::media;

namespace {

TEST(LegacyText, IsJudgedByAllTextsOfATagTogether) {
    using enum LegacyEncoding;
    const std::pair<std::vector<QByteArray>, LegacyEncoding> rows[] = {
        {{}, Utf8},
        {{"\xE5\xA4\x9C\xE6\x9B\xB2"}, Utf8},
        {{"\xD2\xB9\xC7\xFA", "\xD6\xDC\xBD\xDC\xC2\xD7"}, Chinese},
        {{"\xD0\xA1\xC9\xA1", "\xD6\xDC\xBD\xDC\xC2\xD7"},
         Chinese}, // its first text is valid UTF-8
        {{"Jay \xD6\xDC\xBD\xDC\xC2\xD7 live"}, Chinese},
        {{"\x8F\x9C\x81\xB1"}, Chinese}, // rare characters, but Latin-1 has no such letters
        {{"Sigur R\xF3s", "\xC1g\xE6tis byrjun"}, Western},
        {{"Bj\xF6rk", "D\xE9j\xE0 vu"}, Western},
        {{"Caf\xE9 del Mar"}, Western},
        {{"Gr\xF6\xDF"
          "e",
          "\xC4rzte"},
         Western},
        {{"Don\x92t", "\x93Heroes\x94"}, Western},
        {{"\xD2\xB9\xC7\xFA", "caf\xE9 "}, Western}, // one unpaired byte decides
        {{"\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9\xC7\xFA\xD2\xB9"
          "\xC7\xFA\xD2\xB9\xC7\xFA\xD2"},
         Chinese},
    };
    for (const auto& [texts, encoding] : rows)
        EXPECT_EQ(judgeLegacyEncoding(texts), encoding) << (texts.empty() ? "" : texts[0].data());
}

TEST(LegacyText, Utf16WithoutAMarkTakesTheLikelierOrder) {
    EXPECT_EQ(decodeUtf16(QByteArray("\x1C\x59\xF2\x66", 4)), u"夜曲");
    EXPECT_EQ(decodeUtf16(QByteArray("\x59\x1C\x66\xF2", 4)), u"夜曲");
    EXPECT_EQ(decodeUtf16(QByteArray("\0A\0b", 4)), u"Ab");
    EXPECT_EQ(decodeUtf16(QByteArray("A\0b\0!", 5)), u"Ab");
    EXPECT_EQ(decodeUtf16(QByteArray("\xFE\xFF\0A", 4)), u"A");
}

} // namespace
