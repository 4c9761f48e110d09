#include "Formats/ByteCursor.h"
#include "Models/Track.h"
#include "Utils/TimeText.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

using namespace tamsy;

namespace {

TEST(TimeText, ShowsZeroForInvalidPositionsAndNeverOverflows) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    for (const double none : {-0.1, -5.0, infinity, std::numeric_limits<double>::quiet_NaN()})
        EXPECT_EQ(timeString(none), u"0:00"_qs) << none;
    EXPECT_EQ(roundedSeconds(1e300), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(roundedSeconds(-1e300), std::numeric_limits<std::int64_t>::min());
}

TEST(Track, FormatsItsDuration) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, const char*> rows[] = {
        {0, "--:--"},    {-1, "--:--"},
        {nan, "--:--"},  {infinity, "--:--"},
        {0.4, "0:00"},   {59.5, "1:00"},
        {59.4, "0:59"},  {3599.5, "60:00"},
        {3725, "62:05"}, {1e300, "153722867280912930:07"},
    };
    for (const auto& [duration, text] : rows) {
        Track track;
        track.duration = duration;
        EXPECT_EQ(track.durationFormatted(), QLatin1String(text)) << duration;
    }
}

TEST(ByteCursor, NeverReadsPastItsBytes) {
    const std::array<std::byte, 5> bytes{};
    ByteCursor cursor(bytes);
    ASSERT_TRUE(cursor.readU16());
    EXPECT_FALSE(cursor.readU32());
    EXPECT_FALSE(cursor.readBytes(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_FALSE(cursor.seek(6));
    EXPECT_EQ(cursor.position(), 2U);
}

} // namespace
