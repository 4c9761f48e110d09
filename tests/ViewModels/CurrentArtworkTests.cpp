#include "Playback/FakeEngine.h"
#include "ViewModels/PlayerViewModel.h"

#include <QCoreApplication>
#include <QFile>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>

using namespace tamsy;

namespace {

FileURL track(int number) {
    const QByteArray path = "/music/" + QByteArray::number(number) + ".mp3";
    return FileURL::fromPath(path);
}

/// The colour that tells one track's cover from another's.
QRgb colorOf(int number) {
    return qRgb(number, 255 - number, 128);
}

/// A player whose covers come from a loader of its own, and from no file.
class CurrentArtworkTest : public testing::Test {
  protected:
    void TearDown() override {
        gate.release(1000);
        loader.end();
        QCoreApplication::processEvents();
    }

    AudioMetadata read(const FileURL& url) {
        ++reads;
        gate.acquire();
        gate.release();
        AudioMetadata metadata;
        if (!hasCovers)
            return metadata;
        metadata.artwork = QImage(8, 8, QImage::Format_RGB32);
        metadata.artwork.fill(colorOf(url.nameWithoutExtensionText().toInt()));
        return metadata;
    }

    [[nodiscard]] int shown() const {
        return player.currentArtwork().isNull() ? -1 : qRed(player.currentArtwork().pixel(4, 4));
    }

    /// Waits until everything that was asked for has been answered.
    void settle() {
        ASSERT_TRUE(QTest::qWaitFor([this] { return !player.currentTitle().isEmpty(); }));
        QTest::qWait(50);
    }

    QTemporaryDir directory;
    QSemaphore gate{1000};
    std::atomic<int> reads = 0;
    std::atomic<bool> hasCovers = true;
    ArtworkLoader loader{{.readMetadata = [this](const FileURL& url) { return read(url); },
                          .fallbackCover = [] { return QImage(); },
                          .applicationSupportDirectory = QFile::encodeName(directory.path())}};
    PlayerViewModel player{std::make_unique<FakeEngine>(),
                           {.artworkLoader = &loader, .makeNowPlayingWindow = {}}};
};

TEST_F(CurrentArtworkTest, SkippingThroughManyTracksEndsWithTheLastOnesTitleAndCover) {
    for (int number = 1; number <= 200; ++number) {
        player.play(track(number));
        if (number % 7 == 0)
            QCoreApplication::processEvents();
    }
    settle();
    ASSERT_TRUE(QTest::qWaitFor([this] { return shown() == 200; }));
    const int readsSoFar = reads;
    QTest::qWait(100); // nothing is left that could still come
    EXPECT_EQ(reads, readsSoFar);
    EXPECT_EQ(shown(), 200);
    EXPECT_EQ(player.currentTitle(), u"200"_qs);
}

TEST_F(CurrentArtworkTest, TheFormerCoverStaysUntilTheNewOneComes) {
    player.play(track(1));
    ASSERT_TRUE(QTest::qWaitFor([this] { return shown() == 1; }));
    gate.acquire(1000); // readings begin and don't end
    player.play(track(2));
    settle();
    EXPECT_EQ(shown(), 1);
    player.play(track(3));
    gate.release(1000);
    ASSERT_TRUE(QTest::qWaitFor([this] { return shown() == 3; }));
    hasCovers = false;
    player.play(track(4)); // a track without one
    settle();
    EXPECT_EQ(shown(), 3);
}

TEST_F(CurrentArtworkTest, EnsuringAsksOnlyForATrackWithoutAPicture) {
    player.ensureCurrentArtwork();
    QTest::qWait(20);
    EXPECT_EQ(reads, 0); // nothing is playing
    hasCovers = false;
    player.play(track(1));
    settle();
    EXPECT_EQ(shown(), -1);
    hasCovers = true;
    player.ensureCurrentArtwork();
    ASSERT_TRUE(QTest::qWaitFor([this] { return shown() == 1; }));
    const int readsSoFar = reads;
    player.ensureCurrentArtwork();
    QTest::qWait(20);
    EXPECT_EQ(reads, readsSoFar);
}

} // namespace
