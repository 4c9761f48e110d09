#include "Platform/Storage/DirectoryWalk.h"
#include "Platform/Storage/TemporaryFolder.h"
#include "Platform/Storage/UserDefaults.h"
#include "Services/Artwork/ThumbnailFiles.h"
#include "Services/Library/FolderPersistence.h"
#include "Services/Metadata/MetadataReader.h"
#include "SystemCallFaults.h"

#include <QImage>

#include <cerrno>
#include <cstring>
#include <functional>

using namespace tamsy;

namespace {

using Arm = std::function<void()>;

/// Calls `attempt` with a fault at each of its file-system calls in turn, and at last with none.
/// `attempt` arms the fault and gives the number of calls it made.
void atEachCall(const std::function<int(const Arm&)>& attempt) {
    for (const int error : {EIO, EMFILE, ESTALE}) {
        int calls = 1;
        for (int number = 1; number <= calls + 1 && !testing::Test::HasFailure(); ++number) {
            SCOPED_TRACE(testing::Message() << "call " << number << ": " << std::strerror(error));
            calls = attempt([&] { SystemCallFaults::arm(number, error); });
        }
    }
}

TrackList tracks(qsizetype count) {
    return TrackList(count, Track{QUuid::createUuid(), FileURL::fromPath("/m/a.mp3"), u"t"_qs,
                                  QString(), QString(), 1, u"mp3"_qs});
}

/// The number of tracks in each stored folder.
QList<qsizetype> content(UserDefaults& defaults) {
    QList<qsizetype> counts;
    for (const FolderRecord& record : FolderPersistence(defaults).loadRecords())
        counts.append(record.tracks.value_or(TrackList()).size());
    return counts;
}

const QList<qsizetype> before{5, 3};

struct Change {
    std::function<void(FolderPersistence&, const FolderRecord&)> make;
    QList<qsizetype> after;
    bool keepsPrevious;
};

class LibraryFaultTest : public testing::TestWithParam<Change> {
  protected:
    void SetUp() override {
        UserDefaults defaults(folder.path());
        FolderPersistence persistence(defaults);
        for (const qsizetype count : before)
            persistence.saveTracks(persistence.saveBookmark(urlOf(folder)).value().id,
                                   tracks(count));
        ASSERT_TRUE(defaults.drain());
        document = folder.read(FolderPersistence::defaultsKey);
    }
    TemporaryFolder folder;
    QByteArray document;
};

TEST_P(LibraryFaultTest, LeavesTheOldLibraryOrTheNewOneAndThenTakesTheChange) {
    const auto& [make, after, keepsPrevious] = GetParam();
    const QByteArray previous = FolderPersistence::defaultsKey + QByteArray(".previous");
    atEachCall([&](const Arm& arm) {
        ::unlink(folder.path(previous).constData());
        folder.write(FolderPersistence::defaultsKey, document);
        UserDefaults defaults(folder.path());
        FolderPersistence persistence(defaults);
        const FolderRecord first = persistence.loadRecords().at(0);
        arm();
        make(persistence, first);
        static_cast<void>(defaults.drain());
        const int calls = SystemCallFaults::disarm();
        UserDefaults afterKill(folder.path());
        const QList<qsizetype> found = content(afterKill);
        EXPECT_TRUE(found == before || found == after) << found.value(0, -1);
        if (content(defaults) == before)
            make(persistence, first);
        EXPECT_TRUE(defaults.drain());
        EXPECT_EQ(content(defaults), after);
        EXPECT_EQ(folder.names("FolderLibraryService.Bookmarks.damaged"), QStringList());
        const QByteArray kept = folder.read(previous);
        EXPECT_TRUE(kept == "(none)" || (keepsPrevious && kept == document));
        return calls;
    });
    EXPECT_EQ(folder.read(previous) == document, keepsPrevious) << "without a fault";
}

const Change changes[] = {
    {[](auto& persistence, const auto& first) { persistence.saveTracks(first.id, tracks(2)); },
     {2, 3},
     true},
    {[](auto& persistence, const auto& first) { persistence.saveTracks(first.id, tracks(3)); },
     {3, 3},
     false},
    {[](auto& persistence, const auto& first) { persistence.removeRecord(first.id); }, {3}, true},
    {[](auto& persistence, const auto&) {
         static_cast<void>(persistence.saveBookmark(FileURL::fromPath("/tmp")));
     },
     {5, 3, 0},
     false},
};
INSTANTIATE_TEST_SUITE_P(Changes, LibraryFaultTest, testing::ValuesIn(changes));

TEST(UserDefaults, MakesNoNewLibraryWhereItsDirectoryHasVanished) {
    const TemporaryFolder folder;
    folder.write("home/k", "old");
    UserDefaults defaults(folder.path("home"));
    EXPECT_EQ(defaults.dataForKey("k"), "old");
    ASSERT_EQ(::rename(folder.path("home").constData(), folder.path("gone").constData()), 0);
    EXPECT_FALSE(defaults.dataForKey("k"));
    EXPECT_FALSE(defaults.setObject("new", "k"));
    EXPECT_TRUE(defaults.setObject("other", "l"));
    EXPECT_FALSE(defaults.drain());
    ASSERT_EQ(::rename(folder.path("gone").constData(), folder.path("home").constData()), 0);
    EXPECT_TRUE(defaults.drain());
    EXPECT_EQ(defaults.dataForKey("k"), "old");
    EXPECT_EQ(folder.read("home/l"), "other");
}

TEST(UserDefaults, KeepsAsPreviousWhatWasHandedOverAndNotYetWritten) {
    const TemporaryFolder folder;
    UserDefaults defaults(folder.path());
    const QByteArray key(241, 'k'); // with ".damaged-<time>" it is too long for a name
    folder.write(key, "damaged");
    defaults.moveAside(key);
    defaults.setObject("first", key);
    defaults.keepPrevious(key);
    defaults.setObject("second", key);
    EXPECT_FALSE(defaults.drain());
    ::unlink(folder.path(key).constData());
    EXPECT_TRUE(defaults.drain());
    EXPECT_EQ(folder.read(key), "second");
    EXPECT_EQ(folder.read(key + ".previous"), "first");
}

TEST(ThumbnailFiles, HoldAWholePictureOrNone) {
    const TemporaryFolder folder;
    const ThumbnailFiles files(folder.path());
    const FileURL url = FileURL::fromPath("/m/a.mp3");
    QImage image(64, 64, QImage::Format_RGB32);
    image.fill(Qt::red);
    atEachCall([&](const Arm& arm) {
        ::unlink(files.storedPath(url, "64").constData());
        arm();
        files.write(image, url, "64");
        const int calls = SystemCallFaults::disarm();
        const QByteArray stored = files.storedPath(url, "64");
        EXPECT_EQ(stored.isEmpty(), files.read(url, "64").isNull());
        arm();
        static_cast<void>(files.read(url, "64"));
        return std::max(calls, SystemCallFaults::disarm());
    });
    EXPECT_EQ(files.read(url, "64").size(), image.size());
    EXPECT_EQ(folder.names("Tamsy Music/Thumbnails/64/*.jpg.*"), QStringList());
}

TEST(Scan, GoesOnAfterAFault) {
    const TemporaryFolder folder;
    for (const char* name : {"a/1.wav", "a/2.flac", "b/3.mp3"})
        folder.write(name, QByteArray(4096, 'x'));
    const auto scan = [&] {
        int found = 0;
        DirectoryWalk::visitFiles(
            urlOf(folder), {}, [](QByteArrayView) { return true; },
            [&](const FileURL& url) {
                static_cast<void>(MetadataReader().loadWithoutArtwork(url));
                ++found;
            });
        return found;
    };
    atEachCall([&](const Arm& arm) {
        arm();
        EXPECT_LE(scan(), 3);
        const int calls = SystemCallFaults::disarm();
        EXPECT_EQ(scan(), 3);
        return calls;
    });
}

} // namespace
