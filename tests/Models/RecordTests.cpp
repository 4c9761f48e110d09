#include "Models/Track.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tamsy;

namespace {

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

} // namespace
