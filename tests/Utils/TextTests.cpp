#include "Utils/ByteCursor.h"
#include "Utils/LyricsFontSettings.h"
#include "Utils/TextTrimming.h"
#include "Utils/TimeText.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

using namespace tamsy;

namespace {

TEST(TextTrimming, KnowsItsTwoSets) {
    const QString spaces = QStringLiteral(u"\t \u00A0\u3000\u2003");
    const QString newlines = QStringLiteral(u"\n\v\f\r\u0085\u2028\u2029");
    const QString word = QStringLiteral("a b");
    EXPECT_EQ(trimmedOfWhitespace(QString(spaces + word + spaces)), word);
    EXPECT_EQ(trimmedOfWhitespace(QString(newlines + word)), QString(newlines + word));
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(QString(newlines + spaces + word + newlines)), word);
    EXPECT_TRUE(trimmedOfWhitespaceAndNewlines(spaces).isEmpty());
    // Zero-width space and the byte order mark are no white space.
    EXPECT_EQ(trimmedOfWhitespaceAndNewlines(QStringLiteral(u"\u200B")).size(), 1);
}

TEST(TimeText, RoundsHalvesAwayFromZeroAndNeverWrapsMinutes) {
    const std::pair<double, const char*> rows[] = {
        {0, "0:00"},
        {0.4, "0:00"},
        {0.5, "0:01"},
        {59.4, "0:59"},
        {59.6, "1:00"},
        {3725, "62:05"},
        {-0.1, "0:00"},
        {-5, "0:00"},
        {std::numeric_limits<double>::infinity(), "0:00"},
        {std::numeric_limits<double>::quiet_NaN(), "0:00"},
    };
    for (const auto& [seconds, text] : rows)
        EXPECT_EQ(timeString(seconds), QLatin1String(text)) << seconds;
    EXPECT_EQ(roundedSeconds(1e300), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(roundedSeconds(-1e300), std::numeric_limits<std::int64_t>::min());
}

TEST(LyricsFontSettings, HoldsTheSizeBetweenItsLimits) {
    EXPECT_EQ(LyricsFontSettings::clamp(98), 96);
    EXPECT_EQ(LyricsFontSettings::clamp(22), 24);
    EXPECT_EQ(LyricsFontSettings::clamp(50), 50);
}

TEST(ByteCursor, NeverLeavesItsBytes) {
    const std::array<std::byte, 5> bytes{std::byte{1}, std::byte{2}, std::byte{3}, std::byte{4},
                                         std::byte{5}};
    ByteCursor cursor(bytes);
    EXPECT_EQ(cursor.readU16(), 0x0102);
    EXPECT_EQ(cursor.readU32(), std::nullopt);
    EXPECT_EQ(cursor.position(), 2U);
    EXPECT_FALSE(cursor.readBytes(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(cursor.readU24(), 0x030405U);
    EXPECT_TRUE(cursor.atEnd());
    EXPECT_EQ(cursor.readBytes(0)->size(), 0U);
    EXPECT_FALSE(cursor.seek(6));
    ASSERT_TRUE(cursor.seek(1));
    EXPECT_EQ(cursor.readU32le(), 0x05040302U);
}

} // namespace
