#include "Utils/FileURL.h"
#include "Views/NowPlaying/LyricsPanelModel.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <limits>

using namespace tamsy;

namespace {

/// A panel with its own sidecar files.
class LyricsPanelModelTest : public testing::Test {
  protected:
    /// The address of a song, beside which a file with the extension `other` holds `bytes`.
    FileURL song(const QString& name, const QByteArray& bytes, const char* other = ".lrc") {
        QFile file(directory.filePath(name + QLatin1String(other)));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return FileURL::fromPath(directory.filePath(name + u".flac"_qs).toUtf8());
    }

    void load(const FileURL& url) {
        QSignalSpy changes(&panel, &LyricsPanelModel::lyricsChanged);
        panel.loadLyrics(url);
        ASSERT_TRUE(changes.wait());
    }

    QTemporaryDir directory;
    LyricsPanelModel panel;
};

TEST_F(LyricsPanelModelTest, TheMarkFollowsTheTime) {
    load(song(u"a"_qs, "[00:01]a\n[00:02]b\n[00:02]c\n[00:05]d\n"));
    ASSERT_EQ(panel.count(), 4);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::pair<double, int> rows[] = {
        {0.5, 0}, {1, 0},   {1.99, 0}, {2, 2},   {4.9, 2},
        {5, 3},   {1e9, 3},                                // of two equal ones the second
        {0, 3},   {nan, 3}, {1.5, 0},  {4.9, 2}, {-1, 2}}; // nothing matches: it stays
    for (const auto& [time, index] : rows) {
        panel.updateCurrentLyricIndex(time);
        EXPECT_EQ(panel.currentLyricIndex(), index) << time;
    }
}

TEST_F(LyricsPanelModelTest, PlainLyricsAndNoneHaveNoMark) {
    const QByteArray comments("\0\0\0\0\1\0\0\0\x0E\0\0\0LYRICS=one\ntwo", 26);
    load(song(u"c"_qs, QByteArray("fLaC\x84\0\0\x1A", 8) + comments, ".flac"));
    EXPECT_EQ(panel.count(), 2);
    EXPECT_FALSE(panel.isSynced());
    panel.handleTime(1000, 100);
    EXPECT_EQ(panel.currentLyricIndex(), 0);
    panel.loadLyrics(FileURL());
    EXPECT_EQ(panel.count(), 0);
    panel.updateCurrentLyricIndex(1);
    EXPECT_EQ(panel.currentLyricIndex(), 0);
}

TEST_F(LyricsPanelModelTest, ShowsNoControlCharacterAndNoEndlessLine) {
    load(song(u"f"_qs, QByteArray("[00:01]a\tb\0\1c\0\n[00:02]", 22) + QByteArray(500'000, 'x')));
    const auto shown = [this](int row) { return panel.data(panel.index(row), 0).toString(); };
    EXPECT_EQ(shown(0), u"a\tbc"_qs);
    EXPECT_EQ(shown(1).size(), 10'001);
}

TEST_F(LyricsPanelModelTest, TheOldLinesStayUntilTheNewOnesCome) {
    load(song(u"d"_qs, "[00:01]a\n[00:02]b\n"));
    panel.updateCurrentLyricIndex(2);
    panel.loadLyrics(song(u"e"_qs, "[00:01]x\n"));
    panel.resetIndex();
    EXPECT_EQ(panel.count(), 2);
    EXPECT_EQ(panel.currentLyricIndex(), 0);
    EXPECT_EQ(panel.shownLyricIndex(), 1); // a look at the time follows soon
    ASSERT_TRUE(QTest::qWaitFor([this] { return panel.count() == 1; }));
    EXPECT_EQ(panel.shownLyricIndex(), 0);
    load(song(u"d"_qs, "[00:01]a\n[00:02]b\n"));
    panel.updateCurrentLyricIndex(2);
    panel.resetIndex();
    EXPECT_TRUE(QTest::qWaitFor([this] { return panel.shownLyricIndex() == 0; }, 400));
}

} // namespace
