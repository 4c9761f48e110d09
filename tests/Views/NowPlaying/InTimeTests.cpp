#include "Playback/TestAudio.h"
#include "Views/NowPlaying/MarkedLines.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr double updateInterval = 0.25;
constexpr double slack = 0.03;

struct Song {
    const char* file;
    double start; // seconds into the file
};

/// The real engines, on a silent device. bench/in_time_report runs for longer.
class InTimeTest : public testing::TestWithParam<Song> {};

TEST_P(InTimeTest, EachLineIsMarkedWithinOneReportOfItsStamp) {
    const MarkedLines marked = markedLines(testAudio(GetParam().file), GetParam().start, 10);
    ASSERT_GT(marked.delays.size(), 8U);
    EXPECT_TRUE(marked.areAllThere);
    EXPECT_LE(marked.at95(), updateInterval + slack);
    // The report that set the clock may have been late itself.
    EXPECT_GE(std::ranges::min(marked.delays), -0.1);
}

INSTANTIATE_TEST_SUITE_P(Engines, InTimeTest,
                         testing::Values(Song{"minutes-4.wav", 0}, Song{"minutes-4.m4a", 0},
                                         Song{"hour-no-header.mp3", 3570}));

} // namespace
