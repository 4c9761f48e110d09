#include "Playback/FakeEngine.h"
#include "ViewModels/LibraryFixture.h"
#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/AccessibleWalk.h"
#include "Views/Controls/CoverProvider.h"
#include "Views/Controls/Thumbnail.h"
#include "Views/Finger.h"
#include "Views/Library/FolderPanelController.h"

#include <QElapsedTimer>
#include <QMimeData>
#include <QQmlApplicationEngine>
#include <QQuickWindow>
#include <QtQml/QQmlExtensionPlugin>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

Q_IMPORT_QML_PLUGIN(Tamsy_NowPlayingPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_LibraryPlugin)
Q_IMPORT_QML_PLUGIN(TamsyPlugin)

using namespace tamsy;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

/// The real main window over a folder of forty tracks and an engine without sound.
class MainWindowTest : public testing::Test, protected LibraryFixture {
  protected:
    void SetUp() override {
        QStringList names;
        for (int i = 0; i < 40; ++i)
            names.append(u"歌 %1"_qs.arg(i, 2, 10, QLatin1Char('0')));
        add(u"音乐"_qs, names);
        fake->loadedDuration = 100;
        engine.addImageProvider(u"covers"_qs, new CoverProvider);
        engine.addImportPath(u"qrc:/qt/qml"_qs);
        engine.setInitialProperties({{u"library"_qs, QVariant::fromValue(library.get())},
                                     {u"player"_qs, QVariant::fromValue(&player)},
                                     {u"lyricsFontSize"_qs, QVariant::fromValue(&lyricsFontSize)},
                                     {u"folderPanel"_qs, QVariant::fromValue(&folderPanel)}});
        engine.load(QUrl(u"qrc:/qt/qml/Tamsy/MainWindow.qml"_qs));
        window = qobject_cast<QQuickWindow*>(engine.rootObjects().value(0));
        ASSERT_NE(window, nullptr);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        settle();
    }

    void settle() {
        QTest::qWait(30); // layout and the next frame
        fake->calls.clear();
    }

    /// A point in a visible row, by default in the first column.
    static QPoint row(int index, int x = 400) { return {x, 28 + 56 + 32 + 4 + 36 * index + 18}; }

    void click(QPoint point) {
        QTest::mouseClick(window, Qt::LeftButton, {}, point);
        QTest::qWait(10);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(window, key, modifiers);
        QTest::qWait(10);
    }
    /// Chooses an entry of the menu that has just opened, by its number.
    void choose(int entry) {
        QTest::qWait(200);
        for (int step = 0; step < entry; ++step)
            press(Qt::Key_Down);
        press(Qt::Key_Return);
    }
    void focus(const QString& name) const {
        QQuickItem* target = itemNamed(accessible(window), name);
        ASSERT_NE(target, nullptr) << name.toStdString();
        target->forceActiveFocus(Qt::TabFocusReason);
    }
    [[nodiscard]] qsizetype playing() const {
        const TrackList tracks = library->folders().constFirst().tracks;
        const auto found = std::ranges::find(tracks, player.currentURL(), &Track::url);
        return found == tracks.end() ? -1 : found - tracks.begin();
    }

    /// The table's rows on screen.
    [[nodiscard]] QList<QQuickItem*> shownRows() const {
        QList<QQuickItem*> rows;
        collect(window->contentItem(), rows,
                [](const QQuickItem* item) { return item->property("trackId").isValid(); });
        return rows;
    }
    [[nodiscard]] qsizetype coversMissing() const {
        const auto rows = shownRows();
        return std::ranges::count_if(rows, [](QQuickItem* row) {
            const auto* cover = row->findChild<Thumbnail*>();
            return cover == nullptr || !cover->hasImage();
        });
    }
    template <typename Predicate>
    static void collect(const QQuickItem* item, QList<QQuickItem*>& found, Predicate isWanted) {
        const auto children = item->childItems();
        for (QQuickItem* child : children) {
            if (child->isVisible() && isWanted(child))
                found.append(child);
            collect(child, found, isWanted);
        }
    }

    FakeEngine* fake = new FakeEngine; // the player owns it
    PlayerViewModel player{std::unique_ptr<AudioPlaybackEngine>(fake)};
    LyricsFontSize lyricsFontSize{defaults};
    FolderPanelController folderPanel;
    QQmlApplicationEngine engine;
    QQuickWindow* window = nullptr;
};

TEST_F(MainWindowTest, AClickPlaysARowAndASecondOneOnItsTitleStartsItAgain) {
    click(row(2, 700));
    EXPECT_EQ(playing(), 2);
    EXPECT_EQ(fake->loads(), 1);
    click(row(2, 700)); // another column of the selected row
    EXPECT_EQ(fake->loads(), 1);
    click(row(2));
    EXPECT_EQ(fake->loads(), 2);
    click(row(4));
    EXPECT_EQ(playing(), 4);
    EXPECT_EQ(fake->loads(), 3); // not once for the press and once for the release
}

TEST_F(MainWindowTest, KeysMoveTheSelectionAndPlay) {
    click(row(3));
    const std::pair<Qt::Key, qsizetype> moves[] = {{Qt::Key_Down, 4}, {Qt::Key_Up, 3},
                                                   {Qt::Key_End, 39}, {Qt::Key_Down, 39},
                                                   {Qt::Key_Home, 0}, {Qt::Key_Up, 0}};
    for (const auto& [key, expected] : moves) {
        press(key);
        EXPECT_EQ(playing(), expected) << key;
    }
    press(Qt::Key_PageDown);
    const qsizetype page = playing();
    EXPECT_GT(page, 8);
    press(Qt::Key_PageUp);
    EXPECT_EQ(playing(), 0);
    settle();
    press(Qt::Key_Up);
    EXPECT_EQ(fake->loads(), 0); // at the top already
    press(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_EQ(playing(), 1);
    press(Qt::Key_Return); // the selected row, whatever plays
    EXPECT_EQ(playing(), 0);
}

TEST_F(MainWindowTest, SearchFiltersAtEachKeyAndNeverPlays) {
    click(row(0));
    settle();
    press(Qt::Key_Space);
    EXPECT_THAT(fake->calls, ElementsAre("pause"));
    click({900, 56});
    settle();
    for (const char* key : {"3", " ", "9"})
        QTest::keyClick(window, *key);
    EXPECT_EQ(library->searchText(), u"3 9"_qs);
    press(Qt::Key_Backspace);
    press(Qt::Key_Backspace);
    EXPECT_EQ(library->filteredTracks().size(), 13);
    press(Qt::Key_Escape);
    EXPECT_EQ(library->filteredTracks().size(), 40);
    EXPECT_THAT(fake->calls, IsEmpty()); // the space went into the field
}

TEST_F(MainWindowTest, CoversComeThoughTheListChangesWhileTheyLoad) {
    QStringList names;
    for (int i = 0; i < 40; ++i)
        names.append(QString::number(i));
    add(u"b"_qs, names);
    // No operation can finish before the event loop runs, so all rows but three are still waiting.
    library->setSelectedFolderId(library->folders().constLast().id);
    library->setSearchText(u"1"_qs);
    library->setSearchText({});
    EXPECT_TRUE(QTest::qWaitFor([this] { return coversMissing() == 0; })) << coversMissing();
    EXPECT_GT(shownRows().size(), 10);
}

TEST_F(MainWindowTest, AFingerScrollsAndATapPlays) {
    Finger finger(window);
    const QString name = u"歌 08   0:01"_qs;
    const double top = itemNamed(accessible(window), name)->mapToScene({}).y();
    finger.drag(row(8), row(8) - QPoint(0, 150));
    EXPECT_TRUE(QTest::qWaitFor([&] {
        const QQuickItem* dragged = itemNamed(accessible(window), name);
        return dragged == nullptr || dragged->mapToScene({}).y() < top - 100;
    }));
    EXPECT_EQ(playing(), -1);
    QTest::qWait(500); // a flick ends
    finger.press(row(3));
    EXPECT_EQ(playing(), -1); // it might still be a scroll
    finger.release(row(3));
    EXPECT_GE(playing(), 3);
    EXPECT_EQ(fake->loads(), 1);
    settle();
    finger.drag({500, 703}, {700, 703}); // the slider
    EXPECT_THAT(fake->calls, Contains(StartsWith("seek 6")));

    const QPoint folder(60, 56);
    finger.press(folder);
    QTest::qWait(1000);
    finger.moveTo(folder - QPoint(3, 3)); // beside the menu that has opened
    finger.release(folder - QPoint(3, 3));
    choose(2);
    EXPECT_TRUE(QTest::qWaitFor([this] { return library->folders().isEmpty(); }));
}

TEST_F(MainWindowTest, TheSidebarIsDraggedAndGivesWayInANarrowWindow) {
    const QQuickItem* folders = itemNamed(accessible(window), u"文件夹"_qs);
    const QQuickItem* title = itemNamed(accessible(window), u"歌曲"_qs);
    window->resize(920, 720);
    QTest::qWait(20);
    EXPECT_LT(folders->width(), 260);
    EXPECT_EQ(title->width(), 200);
    const auto dragTo = [&](int x) {
        const int edge = static_cast<int>(folders->width());
        QTest::mousePress(window, Qt::LeftButton, {}, {edge, 300});
        QTest::mouseMove(window, {(edge + x) / 2, 300});
        QTest::mouseMove(window, {x, 300});
        QTest::mouseRelease(window, Qt::LeftButton, {}, {x, 300});
        QTest::qWait(20);
    };
    dragTo(300);
    EXPECT_EQ(folders->width(), 300);
    EXPECT_EQ(window->property("sidebarWidth"), 300);
    dragTo(900);
    EXPECT_EQ(title->width(), 200);
    window->resize(window->minimumWidth(), 720);
    QTest::qWait(20);
    EXPECT_EQ(folders->width(), 220);
    EXPECT_EQ(title->width(), 200);
    window->setProperty("sidebarWidth", 250);
    window->resize(1100, 720);
    QTest::qWait(20);
    EXPECT_EQ(folders->width(), 250);
}

TEST_F(MainWindowTest, ATipOverCutTextWaitsLikeTheOthers) {
    add(u"b"_qs, {QString(200, u'w')});
    library->setSelectedFolderId(library->folders().constLast().id);
    settle();
    QTest::mouseMove(window, row(0) + QPoint(0, 60));
    QTest::mouseMove(window, row(0));
    QElapsedTimer hovering;
    hovering.start();
    const auto tipIsOpen = [this] {
        QList<QQuickItem*> popups;
        collect(window->contentItem(), popups,
                [](const QQuickItem* item) { return item->inherits("QQuickPopupItem"); });
        return !popups.isEmpty();
    };
    ASSERT_TRUE(QTest::qWaitFor(tipIsOpen));
    EXPECT_GE(hovering.elapsed(), 550);
}

TEST_F(MainWindowTest, NothingFallsThroughThePlayerBar) {
    click({600, 660}); // rows lie below
    EXPECT_EQ(playing(), -1);
    click(row(1));
    settle();
    click({32, 672}); // the button
    EXPECT_THAT(fake->calls, ElementsAre("pause"));
}

TEST_F(MainWindowTest, TheSliderSeeksOnTheUsersMovesOnly) {
    click(row(0));
    settle();
    QTest::mousePress(window, Qt::LeftButton, {}, {550, 703});
    QTest::mouseMove(window, {600, 703});
    QTest::mouseMove(window, {700, 703});
    QTest::qWait(10);
    EXPECT_THAT(fake->calls, Contains(StartsWith("seek 6")));
    const auto seeks = fake->calls.size();
    EXPECT_GE(seeks, 2U);
    fake->calls.clear();
    QTest::mouseRelease(window, Qt::LeftButton, {}, {700, 703});
    QTest::mousePress(window, Qt::LeftButton, {}, {550, 703});
    fake->currentTimeSubject_.send(53); // playback goes on under a finger that rests
    QTest::qWait(10);
    QTest::mouseRelease(window, Qt::LeftButton, {}, {550, 703});
    EXPECT_EQ(fake->calls.size(), 1U);
    QTest::mousePress(window, Qt::LeftButton, {}, {550, 703});
    player.play(library->filteredTracks().at(5).url); // the track changes under the drag
    fake->calls.clear();
    QTest::mouseMove(window, {800, 703});
    QTest::mouseRelease(window, Qt::LeftButton, {}, {800, 703});
    fake->durationSubject_.send(3); // and the range shrinks
    QTest::qWait(20);
    EXPECT_THAT(fake->calls, Not(Contains(StartsWith("seek"))));
    fake->durationSubject_.send(100);
    fake->currentTimeSubject_.send(10);
    QTest::qWait(20);
    QWheelEvent turn({550, 703}, {550, 703}, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(window, &turn);
    EXPECT_THAT(fake->calls, Contains("seek 15"));
    focus(u"播放位置"_qs);
    press(Qt::Key_Right);
    EXPECT_THAT(fake->calls, Contains("seek 20"));
}

TEST_F(MainWindowTest, TheKeyboardReachesButtonsAndMenus) {
    click(row(0));
    settle();
    focus(u"播放 / 暂停"_qs);
    press(Qt::Key_Return);
    EXPECT_THAT(fake->calls, ElementsAre("pause"));
    press(Qt::Key_F10); // the first menu, then the second one's last item
    QTest::qWait(200);
    press(Qt::Key_Right);
    lyricsFontSize.increase();
    choose(3);
    EXPECT_EQ(lyricsFontSize.points(), 46);
}

TEST_F(MainWindowTest, TheSidebarKeepsTheSelectedFolderInFrontOfTheBar) {
    QStringList names;
    for (int i = 0; i < 20; ++i) {
        names.append(QString(QChar(u'a' + i)));
        add(names.back(), {});
    }
    focus(u"文件夹"_qs);
    press(Qt::Key_End);
    QTest::qWait(50);
    const QQuickItem* last = itemNamed(accessible(window), names.back());
    ASSERT_NE(last, nullptr);
    EXPECT_LE(last->mapToScene({0, last->height()}).y(), 720 - 72);
    press(Qt::Key_F10, Qt::ShiftModifier);
    choose(2);
    EXPECT_TRUE(QTest::qWaitFor([&] { return library->folders().size() == 20; }));
    EXPECT_EQ(library->folders().constLast().displayName, names.at(18));
}

TEST_F(MainWindowTest, TheSidebarsMenuActsOnTheClickedFolder) {
    add(u"b"_qs, {u"x"_qs});
    settle();
    click({60, 88});
    EXPECT_EQ(library->selectedFolder()->displayName, u"b"_qs);
    QTest::mouseClick(window, Qt::RightButton, {}, {60, 56}); // the other one
    choose(2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return library->folders().size() == 1; }));
    EXPECT_EQ(library->selectedFolder()->displayName, u"b"_qs);
    press(Qt::Key_Plus, Qt::ControlModifier);
    EXPECT_EQ(lyricsFontSize.points(), 50);
}

TEST_F(MainWindowTest, DroppedFoldersAreAddedOnceAndNothingElse) {
    const FileURL folder = makeFolder(u"新 %41"_qs, {u"x"_qs});
    const auto address = [](const FileURL& url) { return QUrl::fromEncoded(url.absoluteString()); };
    const QList<QUrl> others = {address(folder.appending("x.mp3")), address(folder.appending("y")),
                                QUrl(u"smb://server/share"_qs),
                                address(library->folders().constFirst().url)};
    const auto drop = [this](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({500, 300}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &enter);
        QDropEvent event({500, 300}, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(window, &event);
        return event.isAccepted();
    };
    EXPECT_FALSE(drop(others.first(3)));
    EXPECT_TRUE(drop(others + QList{address(folder), address(folder)}));
    QTest::qWait(100);
    ASSERT_EQ(library->folders().size(), 2);
    EXPECT_EQ(library->folders().constLast().url, folder);
}

TEST_F(MainWindowTest, EveryControlHasARoleAndAName) {
    click(row(0));
    // Until its tags are read the track has no title, which is a button's name.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !player.currentTitle().isEmpty(); }));
    EXPECT_EQ(namelessBelow(accessible(window)).toStdString(), "");
}

} // namespace
