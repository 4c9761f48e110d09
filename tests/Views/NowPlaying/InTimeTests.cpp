#include "Playback/CompositePlaybackEngine.h"
#include "Playback/TestAudio.h"
#include "Views/NowPlaying/NowPlayingModel.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <vector>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr double between = 0.61; // seconds from line to line, no multiple of the pace of reports
constexpr double updateInterval = 0.25;
constexpr double slack = 0.03;

struct Song {
    const char* file;
    double start;   // seconds into the file
    double seconds; // to listen for
};

/// The mark of the real lyrics over a real file, played by the real engines to a silent device.
class InTimeTest : public testing::TestWithParam<Song> {
  protected:
    /// The file under another name, with lyrics beside it: the line `n` belongs to `n` times
    /// `between`.
    FileURL songWithLyrics(const char* file, double seconds) {
        const FileURL audio = testAudio(file);
        const QString extension = QString::fromUtf8(audio.pathExtension());
        const QString link = directory.filePath(QStringLiteral("song.") + extension);
        QFile::link(QFile::decodeName(audio.path()), link);
        QFile sidecar(directory.filePath(QStringLiteral("song.lrc")));
        EXPECT_TRUE(sidecar.open(QIODevice::WriteOnly));
        for (int line = 0; line * between < seconds; ++line) {
            const double time = line * between;
            const int minutes = static_cast<int>(time / 60);
            sidecar.write(QString::asprintf("[%02d:%06.3f]%d\n", minutes, time - minutes * 60, line)
                              .toUtf8());
        }
        return FileURL::fromPath(QFile::encodeName(link));
    }

    QTemporaryDir directory;
    PlayerViewModel player{std::make_unique<CompositePlaybackEngine>()};
    NowPlayingModel model;
};

TEST_P(InTimeTest, EachLineIsMarkedWithinOneReportOfItsStamp) {
    const auto [file, start, length] = GetParam();
    const double seconds = length;
    model.setPlayer(&player);
    player.play(songWithLyrics(file, start + length + 10));
    ASSERT_TRUE(waitUntil(
        [this] { return model.lyrics()->count() > 0 && player.currentTime() > 0; }, 10'000));
    if (start > 0) {
        player.seek(start);
        ASSERT_TRUE(waitUntil([this] { return !player.pendingSeekTarget(); }, 5'000));
    }

    // The test's own clock, set once by a report of the position.
    QElapsedTimer clock;
    double zero = 0; // the clock's time of the file's beginning, in seconds
    const auto now = [&] { return static_cast<double>(clock.nsecsElapsed()) / 1e9; };
    std::vector<double> delays;
    QObject::connect(&player, &PlayerViewModel::currentTimeChanged, &model, [&] {
        if (clock.isValid())
            return;
        clock.start();
        zero = -player.currentTime();
    });
    int former = -1;
    QObject::connect(model.lyrics(), &LyricsPanelModel::currentLyricIndexChanged, &model, [&] {
        const int index = model.lyrics()->currentLyricIndex();
        if (clock.isValid() && former >= 0) {
            EXPECT_EQ(index, former + 1); // none is passed over
            delays.push_back(now() - zero - index * between);
        }
        former = index;
    });
    ASSERT_TRUE(waitUntil([&] { return clock.isValid() && now() > seconds; },
                          static_cast<int>(seconds * 1000) + 5000));
    std::ranges::sort(delays);
    ASSERT_GT(delays.size(), 8U);
    const auto at95 =
        delays[static_cast<std::size_t>(0.95 * static_cast<double>(delays.size() - 1))];
    EXPECT_LE(at95, updateInterval + slack);
    EXPECT_GE(delays.front(), -0.1); // the report that set the clock may itself have come late
}

INSTANTIATE_TEST_SUITE_P(Engines, InTimeTest,
                         testing::Values(Song{"minutes-4.wav", 0, 10}, Song{"minutes-4.m4a", 0, 10},
                                         Song{"hour-no-header.mp3", 3570, 10}));

/// Only on demand: half an hour shows a drift that ten seconds hide.
INSTANTIATE_TEST_SUITE_P(DISABLED_Long, InTimeTest,
                         testing::Values(Song{"hour-header.mp3", 0, 1800}));

} // namespace
