#include "Playback/FakeEngine.h"
#include "ViewModels/LibraryFixture.h"
#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/AccessibleWalk.h"
#include "Views/Finger.h"
#include "Views/NowPlaying/NowPlayingWindowController.h"

#include <QQmlEngine>
#include <QtQml/QQmlExtensionPlugin>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

Q_IMPORT_QML_PLUGIN(Tamsy_NowPlayingPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_LibraryPlugin)

using namespace tamsy;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const QString timeBar = u"播放位置"_qs;
const QString volumeBar = u"音量"_qs;

/// The real window over a folder of three tracks and an engine without sound.
class NowPlayingWindowTest : public testing::Test, protected LibraryFixture {
  protected:
    void SetUp() override {
        fake->loadedDuration = 100;
        add(u"音乐"_qs, {u"a~artist"_qs, u"b"_qs, u"c"_qs});
        player.attachLibrary(library.get());
        qmlEngine.addImportPath(u"qrc:/qt/qml"_qs);
        player.play(library->filteredTracks().at(0).url);
        show();
    }
    void TearDown() override { player.endNowPlayingWindow(); }

    void show() {
        player.showNowPlayingWindow(&player, library.get());
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        QTest::qWait(50);
        fake->calls.clear();
    }

    [[nodiscard]] QQuickItem* item(const QString& name) const {
        return itemNamed(accessible(window), name);
    }

    /// A point in an item's middle height, at a fraction of its width, in the window.
    static QPoint at(const QQuickItem* item, double fraction) {
        return item->mapToScene({item->width() * fraction, item->height() / 2}).toPoint();
    }

    void click(const QString& name) {
        QQuickItem* target = item(name);
        ASSERT_NE(target, nullptr) << name.toStdString();
        QTest::mouseClick(window, Qt::LeftButton, {}, at(target, 0.5));
        QTest::qWait(10);
    }
    void openPicker() {
        click(u"曲目列表"_qs);
        QTest::qWait(250);
    }
    void drag(const QString& name, std::initializer_list<double> fractions) {
        const QQuickItem* bar = item(name);
        ASSERT_NE(bar, nullptr);
        QTest::mousePress(window, Qt::LeftButton, {}, at(bar, *fractions.begin()));
        for (const double fraction : fractions)
            QTest::mouseMove(window, at(bar, fraction));
        QTest::qWait(10);
    }
    void drop(const QString& name, double fraction) {
        QTest::mouseRelease(window, Qt::LeftButton, {}, at(item(name), fraction));
        QTest::qWait(10);
    }

    FakeEngine* fake = new FakeEngine; // the player owns it
    QQmlEngine qmlEngine;
    LyricsFontSize lyricsFontSize{defaults};
    QPointer<QQuickWindow> window;
    PlayerViewModel player{
        std::unique_ptr<AudioPlaybackEngine>(fake),
        {.makeNowPlayingWindow = [this](PlayerViewModel& playerVM, LibraryViewModel& libraryVM) {
            auto made = std::make_unique<NowPlayingWindowController>(qmlEngine, playerVM, libraryVM,
                                                                     lyricsFontSize);
            window = made->window();
            return made;
        }}};
};

TEST_F(NowPlayingWindowTest, TheFormFollowsTheWidthAlone) {
    for (const auto& [width, row] : {std::pair(1000, 400), {999, 380}, {1200, 400}}) {
        window->resize(width, 700);
        QTest::qWait(20);
        EXPECT_EQ(item(timeBar)->width(), row) << width;
        EXPECT_EQ(item(volumeBar)->width(), row - 32) << width;
    }
    click(u"歌词"_qs);
    QTest::qWait(350);
    EXPECT_EQ(item(timeBar)->width(), 400); // though the column is 600 wide
    EXPECT_NEAR(item(timeBar)->mapToScene({200, 0}).x(), 300, 1);
}

TEST_F(NowPlayingWindowTest, ADragSeeksOnceAtItsEnd) {
    drag(timeBar, {0.2, 0.25, 0.5});
    EXPECT_TRUE(player.isSeeking());
    EXPECT_THAT(fake->calls, IsEmpty());
    EXPECT_NE(item(u"0:50"_qs), nullptr);
    testing::internal::CaptureStdout();
    drop(timeBar, 1.5); // outside: the very end
    EXPECT_THAT(testing::internal::GetCapturedStdout(),
                HasSubstr("[NowPlaying] seek end -> 100.000 / 100.000"));
    EXPECT_THAT(fake->calls, Contains("seek 100"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return !player.isSeeking(); }, 400));
    fake->calls.clear();
    QTest::mouseClick(window, Qt::LeftButton, {}, at(item(timeBar), 0.25));
    EXPECT_THAT(fake->calls, ElementsAre("seek 25")); // a click is a drag of one step
    fake->calls.clear();
    Finger(window).drag(at(item(timeBar), 0.25), at(item(timeBar), 0.5));
    EXPECT_THAT(fake->calls, ElementsAre("seek 50"));
}

TEST_F(NowPlayingWindowTest, TheVolumeChangesAtTheDragsEndOnly) {
    drag(volumeBar, {0.5, 0.3, 0.1});
    EXPECT_THAT(fake->calls, IsEmpty());
    drop(volumeBar, -0.5);
    EXPECT_THAT(fake->calls, ElementsAre("volume 0"));
}

TEST_F(NowPlayingWindowTest, ButtonsAndKeysActAndTheLogTellsTheStateAfterwards) {
    testing::internal::CaptureStdout();
    click(u"播放 / 暂停"_qs);
    click(u"随机播放"_qs);
    click(u"单曲循环"_qs);
    click(u"单曲循环"_qs);
    const std::string log = testing::internal::GetCapturedStdout();
    EXPECT_THAT(log, HasSubstr("[NowPlaying] tap play/pause -> paused\n"));
    EXPECT_THAT(log, HasSubstr("[NowPlaying] tap shuffle -> ON\n"));
    EXPECT_THAT(log, HasSubstr("tap repeat -> ONE\n[NowPlaying] tap repeat -> OFF\n"));
    fake->calls.clear();
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_THAT(fake->calls, ElementsAre("play"));
    QTest::keyClick(window, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(player.currentURL(), library->filteredTracks().at(1).url);
    QTest::keyClick(window, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(lyricsFontSize.points(), 50);
    QTest::keyClick(window, Qt::Key_Down);
    EXPECT_NEAR(player.volume(), 0.45, 1e-6);
    for (const auto before : {QWindow::Maximized, QWindow::Windowed}) {
        window->setVisibility(before);
        QTest::keyClick(window, Qt::Key_F11);
        EXPECT_EQ(window->visibility(), QWindow::FullScreen);
        QTest::keyClick(window, Qt::Key_Escape);
        EXPECT_EQ(window->visibility(), before);
    }
}

TEST_F(NowPlayingWindowTest, ClosedItIsKeptWithItsState) {
    QQuickWindow* const first = window;
    click(u"歌词"_qs);
    EXPECT_NE(item(u"artist"_qs), nullptr);
    QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(first->isVisible());
    testing::internal::CaptureStdout();
    show();
    EXPECT_THAT(testing::internal::GetCapturedStdout(), Not(HasSubstr("body onAppear")));
    EXPECT_EQ(window, first);
    EXPECT_NE(item(u"暂无歌词"_qs), nullptr);
}

TEST_F(NowPlayingWindowTest, ThePickerFollowsTheLibraryAndPlays) {
    openPicker();
    ASSERT_NE(item(u"选择歌曲"_qs), nullptr);
    library->setSearchText(u"nothing has this"_qs);
    EXPECT_NE(item(u"没有符合搜索条件的歌曲"_qs), nullptr);
    library->setSearchText({});
    QTest::qWait(50);
    click(u"b  0:01"_qs);
    EXPECT_EQ(player.currentURL(), library->filteredTracks().at(1).url);
    EXPECT_TRUE(QTest::qWaitFor([this] { return item(u"选择歌曲"_qs) == nullptr; }));
}

TEST_F(NowPlayingWindowTest, TheSheetLeavesShortcutsAliveAndPlaysOnceForADoubleClick) {
    openPicker();
    fake->calls.clear();
    QTest::keyClick(window, Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(player.currentURL(), library->filteredTracks().at(1).url);
    QTest::keyClick(window, Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(lyricsFontSize.points(), 50);
    fake->calls.clear();
    QTest::keyClick(window, Qt::Key_Space);
    EXPECT_THAT(fake->calls, IsEmpty()); // it is the focused control's
    const QQuickItem* target = item(u"c  0:01"_qs);
    ASSERT_NE(target, nullptr);
    const QPoint place = at(target, 0.5);
    for (int press = 0; press < 2; ++press)
        QTest::mouseClick(window, Qt::LeftButton, {}, place);
    EXPECT_EQ(fake->loads(), 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return item(u"选择歌曲"_qs) == nullptr; }));
    openPicker();
    QTest::keyClick(window, Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
}

TEST_F(NowPlayingWindowTest, AFingerScrollsThePickerAndATapPicks) {
    QStringList names;
    for (int i = 10; i < 50; ++i)
        names.append(QString::number(i));
    add(u"更多"_qs, names);
    library->setSelectedFolderId(library->folders().constLast().id);
    openPicker();
    fake->calls.clear();
    Finger finger(window);
    const QPoint row = at(item(u"16  0:01"_qs), 0.5);
    finger.drag(row, row - QPoint(0, 200));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const QQuickItem* scrolled = item(u"16  0:01"_qs);
        return !scrolled || at(scrolled, 0.5).y() < row.y() - 100;
    }));
    EXPECT_EQ(fake->loads(), 0);
    QTest::qWait(500); // a flick ends
    finger.tap(row);
    EXPECT_EQ(fake->loads(), 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return item(u"选择歌曲"_qs) == nullptr; }));
}

TEST_F(NowPlayingWindowTest, TheCurrentLineStandsAtTheTop) {
    const Track track = library->filteredTracks().at(2);
    QFile sidecar(QString::fromUtf8(track.url.path().chopped(3) + "lrc"));
    ASSERT_TRUE(sidecar.open(QIODevice::WriteOnly));
    for (int line = 0; line < 90; ++line) {
        const char* words = line % 3 == 0 ? "so many words that they take two rows" : "short";
        sidecar.write(
            QString::asprintf("[%02d:%02d]%d %s\n", line / 60, line % 60, line, words).toUtf8());
    }
    sidecar.close();
    window->resize(1200, 800);
    click(u"歌词"_qs);
    player.play(track.url);
    const auto topOf = [this](int line) {
        const QString name = QString::number(line) + u" short"_qs;
        const QQuickItem* row = item(name);
        return row == nullptr ? -1.0 : row->mapToScene({0, 0}).y();
    };
    ASSERT_TRUE(QTest::qWaitFor([&] { return topOf(1) > 300; })); // the first line is above it
    const auto comesToTheTop = [&](int line) {
        return QTest::qWaitFor([&] { return std::abs(topOf(line) - 300) < 1; }, 1500);
    };
    for (const int line : {1, 2, 4, 50, 49, 88, 1}) {
        fake->currentTimeSubject_.send(line + 0.5);
        EXPECT_TRUE(comesToTheTop(line)) << line << " stands at " << topOf(line);
    }
    // Two steps of a paused player, the second right behind the first: no report follows them.
    for (const int line : {50, 70}) {
        fake->currentTimeSubject_.send(line + 0.5);
        QTest::qWait(5);
    }
    EXPECT_TRUE(comesToTheTop(70));
    const QPoint below(900, 600);
    Finger(window).drag(below, below - QPoint(0, 150));
    EXPECT_LT(topOf(71), 300); // until the next line comes
    fake->currentTimeSubject_.send(71.5);
    EXPECT_TRUE(comesToTheTop(71));
    fake->currentTimeSubject_.send(70.5);
    EXPECT_TRUE(comesToTheTop(70));
    click(u"歌词"_qs);
    QTest::qWait(300);
    fake->currentTimeSubject_.send(70.6); // so that the next look at the time has to wait
    click(u"歌词"_qs);
    EXPECT_TRUE(comesToTheTop(70));
    // The lyrics are read anew meanwhile, which nobody may see.
    EXPECT_FALSE(QTest::qWaitFor([&] { return std::abs(topOf(70) - 300) > 1; }, 500));

    window->close();
    testing::internal::CaptureStdout();
    QTest::qWait(600); // longer than any log line waits
    fake->currentTimeSubject_.send(10.5);
    QTest::qWait(200);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    show();
    EXPECT_TRUE(comesToTheTop(10));

    using Step = void (LyricsFontSize::*)();
    const std::pair<Step, double> ends[] = {{&LyricsFontSize::decrease, 24.0},
                                            {&LyricsFontSize::increase, 96.0}};
    for (const auto& [step, size] : ends) {
        for (int i = 0; i < 20; ++i)
            (lyricsFontSize.*step)();
        const auto fits = [&, size = size] {
            const double height = item(u"10 short"_qs)->height();
            return std::abs(topOf(11) - topOf(10) - height - size * 48 / 46) < 1;
        };
        EXPECT_TRUE(QTest::qWaitFor(fits, 1000) && comesToTheTop(10)) << size;
    }
}

TEST_F(NowPlayingWindowTest, PlainLinesStandStill) {
    const Track track = library->filteredTracks().at(1);
    QFile file(QString::fromUtf8(track.url.path()));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("ID3\3\0\0\0\0\0\x16USLT\0\0\0\x0C\0\0\0zho\0one\ntwo", 32);
    file.close();
    click(u"歌词"_qs);
    player.play(track.url);
    const auto row = [this](const char* line) { return item(QLatin1String(line)); };
    ASSERT_TRUE(QTest::qWaitFor([&] { return row("two") != nullptr; }));
    fake->currentTimeSubject_.send(50);
    QTest::qWait(200);
    EXPECT_EQ(row("one")->mapToScene({0, 0}).y(), 30);
    EXPECT_EQ(row("two")->y() - row("one")->y(), row("one")->height() + 40);
    window->resize(1200, 150);
    QTest::qWait(20);
    QTest::keyClick(window, Qt::Key_Down); // the volume's, until the lyrics have the focus
    EXPECT_EQ(row("one")->mapToScene({0, 0}).y(), 30);
    row("one")->parentItem()->parentItem()->forceActiveFocus(Qt::TabFocusReason);
    QTest::keyClick(window, Qt::Key_Down);
    EXPECT_LT(row("one")->mapToScene({0, 0}).y(), 0);
    QTest::keyClick(window, Qt::Key_Home);
    EXPECT_EQ(row("one")->mapToScene({0, 0}).y(), 30);
    Finger(window).drag({900, 120}, {900, 20});
    EXPECT_LT(row("one")->mapToScene({0, 0}).y(), 0);
}

TEST_F(NowPlayingWindowTest, EveryControlHasARoleAndAName) {
    EXPECT_EQ(namelessBelow(accessible(window)).toStdString(), "");
}

} // namespace
