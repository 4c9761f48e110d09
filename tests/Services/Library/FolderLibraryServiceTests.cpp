#include "Platform/Storage/TemporaryFolder.h"
#include "Platform/Storage/UserDefaults.h"
#include "Platform/Threads/OperationQueue.h"
#include "Services/Library/FolderLibraryService.h"
#include "Services/Metadata/AudioMetadata.h"

#include <QElapsedTimer>
#include <QTest>

#include <functional>
#include <memory>
#include <semaphore>

using namespace tamsy;

namespace {

class FolderLibraryServiceTest : public testing::Test {
  protected:
    FolderLibraryServiceTest() { start(); }

    /// Ends the service and makes it anew, as a restart of the program does.
    void start() {
        service.reset();
        defaults.reset();
        defaults = std::make_unique<UserDefaults>(configuration.path());
        service = std::make_unique<FolderLibraryService>(*defaults, [this](const FileURL& url) {
            if (beforeEachFile)
                beforeEachFile();
            AudioMetadata tags;
            tags.title = QString::fromUtf8(url.lastPathComponent() == "tagged.oga" ? "Title" : "");
            tags.artist = QString::fromUtf8("somebody");
            tags.duration = 2;
            return tags;
        });
    }

    /// Adds the folder and waits for its first scan.
    QUuid add(const FileURL& url, qsizetype tracks) {
        EXPECT_TRUE(service->addFolder(url));
        EXPECT_TRUE(service->folders().constLast().tracks.isEmpty()) << "shown at once, empty";
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return service->folders().constLast().tracks.size() == tracks; }));
        return service->folders().constLast().id;
    }
    /// Folder names and their numbers of tracks.
    QStringList shown() {
        QStringList lines;
        for (const AudioFolder& entry : service->folders())
            lines << QString(entry.displayName + u' ' + QString::number(entry.tracks.size()));
        return lines;
    }

    TemporaryFolder configuration;
    TemporaryFolder music;
    std::function<void()> beforeEachFile;
    std::unique_ptr<UserDefaults> defaults;
    std::unique_ptr<FolderLibraryService> service;
};

TEST_F(FolderLibraryServiceTest, MakesATrackOfEachAudioFile) {
    for (const char* name : {"j/2.MP3", "j/10.flac", "j/tagged.oga", "j/\xB8\xE8.wav",
                             "j/a/b/in.caf", "j/x.opus", "j/mp3", "j/.wav", "j/cover.jpg"})
        music.write(name);
    add(urlOf(music, "j"), 5);
    QStringList lines;
    const TrackList tracks = service->folders()[0].tracks;
    for (const Track& track : tracks)
        lines << QString(track.title % u'|' % track.fileExtension);
    EXPECT_EQ(lines, QStringList({u"2|mp3"_qs, u"10|flac"_qs, u"in|caf"_qs, u"Title|oga"_qs,
                                  u"\uFFFD\uFFFD|wav"_qs}));
    EXPECT_EQ(tracks[4].url, urlOf(music, "j/\xB8\xE8.wav"));
    EXPECT_EQ(tracks[1].duration, 2.0);
    EXPECT_TRUE(tracks[1].artist.isSharedWith(tracks[0].artist));
    start();
    EXPECT_EQ(service->folders()[0].tracks, tracks);
    EXPECT_EQ(service->folders()[0].tracks[4].url, tracks[4].url);
}

TEST_F(FolderLibraryServiceTest, KeepsFoldersOverRestartsAndWhileTheyAreGone) {
    music.write("a/1.mp3");
    music.write("b/1.mp3");
    const QUuid a = add(urlOf(music, "a"), 1);
    add(urlOf(music, "b"), 1);
    add(urlOf(music, "a"), 1); // twice is twice
    EXPECT_FALSE(service->addFolder(urlOf(music, "gone")));
    EXPECT_FALSE(service->addFolder(urlOf(music, "a/1.mp3")));
    const QStringList all{u"a 1"_qs, u"b 1"_qs, u"a 1"_qs};
    EXPECT_EQ(shown(), all);
    ASSERT_EQ(::mkdir(music.path("mount").constData(), 0700), 0);
    ASSERT_EQ(::rename(music.path("b").constData(), music.path("mount/b").constData()), 0);
    testing::internal::CaptureStdout();
    start();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "[Library] restored folders=2\n[Library] folder=a tracks=1\n"
              "[Library] folder=a tracks=1\n[Library] init -> folders=2, tracks(sum)=2\n");
    EXPECT_EQ(shown(), QStringList({all[0], all[2]}));
    service->removeFolder(a);
    ASSERT_EQ(::rename(music.path("mount/b").constData(), music.path("b").constData()), 0);
    start();
    EXPECT_EQ(shown(), QStringList({all[1], all[2]}));
}

TEST_F(FolderLibraryServiceTest, ReplacesAFoldersTracksWithEachScan) {
    music.write("a/1.mp3");
    music.write("b/1.mp3");
    const QUuid a = add(urlOf(music, "a"), 1);
    add(urlOf(music, "b"), 1);
    const TrackList before = service->folders()[0].tracks;
    std::vector<qsizetype> counts;
    const Subscription subscription = service->foldersPublisher().subscribe(
        [&](const QList<AudioFolder>& list) { counts.push_back(list[0].tracks.size()); });
    music.write("a/2.mp3");
    service->rescanFolder(QUuid::createUuid());
    service->rescanFolder(a);
    ASSERT_TRUE(QTest::qWaitFor([&] { return service->folders()[0].tracks.size() == 2; }));
    EXPECT_FALSE(before.contains(service->folders()[0].tracks[0]))
        << "each scan gives new identities";
    EXPECT_EQ(counts, (std::vector<qsizetype>{1, 2})) << "in one step";
    ASSERT_EQ(::rename(music.path("a").constData(), music.path("away").constData()), 0);
    service->rescanFolder(a);
    ASSERT_TRUE(QTest::qWaitFor([&] { return service->folders()[0].tracks.isEmpty(); }));
    ASSERT_EQ(::rename(music.path("away").constData(), music.path("a").constData()), 0);
    start();
    EXPECT_EQ(shown(), QStringList({u"a 0"_qs, u"b 1"_qs}));
}

TEST_F(FolderLibraryServiceTest, PutsAResultWhereItsFolderIsNow) {
    for (const char* name : {"a/1.mp3", "b/1.mp3", "b/2.mp3", "c/1.mp3"})
        music.write(name);
    const QUuid a = add(urlOf(music, "a"), 1);
    std::counting_semaphore<> mayRead(0);
    beforeEachFile = [&] { mayRead.acquire(); };
    ASSERT_TRUE(service->addFolder(urlOf(music, "b")));
    ASSERT_TRUE(service->addFolder(urlOf(music, "c")));
    service->removeFolder(a); // moves b's place while its scan runs
    service->removeFolder(service->folders()[1].id);
    mayRead.release(3);
    ASSERT_TRUE(QTest::qWaitFor([&] { return shown() == QStringList(u"b 2"_qs); }));
    const TrackList found = service->folders()[0].tracks;
    mayRead.release(2);
    service->rescanFolder(service->folders()[0].id); // behind the scan of the removed folder
    ASSERT_TRUE(QTest::qWaitFor([&] { return service->folders()[0].tracks != found; }));
    EXPECT_EQ(shown(), QStringList(u"b 2"_qs)) << "a removed folder stays removed";
    start();
    EXPECT_EQ(shown(), QStringList(u"b 2"_qs));
}

TEST_F(FolderLibraryServiceTest, EndsSoonWhileScansAreUnderWay) {
    for (int i = 0; i < 100; ++i)
        music.write("a/" + QByteArray::number(i) + ".mp3");
    beforeEachFile = [] { ::usleep(100'000); }; // ten seconds in all
    ASSERT_TRUE(service->addFolder(urlOf(music, "a")));
    service->rescanFolder(service->folders()[0].id);
    QElapsedTimer timer;
    timer.start();
    service.reset();
    EXPECT_LT(timer.elapsed(), 1000);
    start();
    EXPECT_EQ(shown(), QStringList(u"a 0"_qs)) << "half a scan is no result";
}

TEST_F(FolderLibraryServiceTest, EndsSoonWhileAFileHoldsItsReader) {
    music.write("a/1.mp3");
    music.write("a/2.mp3");
    std::binary_semaphore isRead(0);
    std::binary_semaphore mayGoOn(0);
    beforeEachFile = [&] {
        isRead.release();
        mayGoOn.acquire();
    };
    ASSERT_TRUE(service->addFolder(urlOf(music, "a")));
    isRead.acquire();
    QElapsedTimer timer;
    timer.start();
    service.reset();
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_FALSE(OperationQueue::waitForAll({}));
    mayGoOn.release();
    EXPECT_TRUE(OperationQueue::waitForAll(std::chrono::seconds(10)));
    EXPECT_FALSE(isRead.try_acquire()) << "it goes no further than its file";
    start();
    EXPECT_EQ(shown(), QStringList(u"a 0"_qs));
}

} // namespace
