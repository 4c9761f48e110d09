#include "Platform/Storage/Bookmark.h"
#include "Platform/Storage/DirectoryWalk.h"
#include "Platform/Storage/FileDescriptor.h"
#include "TemporaryFolder.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <vector>

using namespace tamsy;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

bool isSong(QByteArrayView name) {
    return name.endsWith(".mp3");
}

/// The paths that a walk finds, without `folder` at their start.
std::vector<std::string> songsIn(const FileURL& folder) {
    std::vector<std::string> found;
    const QByteArray start = folder.path() + '/';
    DirectoryWalk::visitFiles(folder, {}, isSong, [&](const FileURL& file) {
        EXPECT_TRUE(file.path().startsWith(start));
        found.push_back(file.path().sliced(start.size()).toStdString());
    });
    return found;
}

TEST(DirectoryWalk, GivesEveryWantedFileInNaturalOrder) {
    const TemporaryFolder folder;
    const std::vector<std::string> inOrder{
        "a/x.mp3",        "B.mp3",         "b.mp3",
        "Disc 2/001.mp3", // equal numbers: the bytes decide
        "Disc 2/1.mp3",   "Disc 10/z.mp3", "pack.app/in/side.mp3",
        "Track 2.mp3",    "track 02.mp3",  "Track 10.mp3",
        "x.mp3/y.mp3",    "\xB8\xE8.mp3",  "\xE6\xAD\x8C.mp3"};
    const std::vector<std::string> backwards(inOrder.rbegin(), inOrder.rend());
    for (const std::string& name : backwards)
        folder.write(QByteArray::fromStdString(name));
    for (const char* other : {".hidden.mp3", ".hidden/a.mp3", "cover.jpg", "mp3", "song.MP3"})
        folder.write(other);
    EXPECT_EQ(songsIn(urlOf(folder)), inOrder);
}

TEST(DirectoryWalk, PassesOverLinksSpecialFilesAndWhatItCantOpen) {
    const TemporaryFolder outside;
    outside.write("o.mp3");
    const TemporaryFolder folder;
    folder.write("in/1.mp3");
    folder.write("locked/2.mp3");
    folder.write("z.mp3");
    const auto link = [&](const QByteArray& target, const char* name) {
        ASSERT_EQ(::symlink(target.constData(), folder.path(name).constData()), 0);
    };
    link(folder.path(), "in/loop");
    link("self.mp3", "self.mp3");
    link(outside.path(), "elsewhere");
    link(outside.path("o.mp3"), "o.mp3");
    link(folder.path("in"), "chosen");
    ASSERT_EQ(::mkfifo(folder.path("fifo.mp3").constData(), 0600), 0);
    ASSERT_EQ(::mknod(folder.path("socket.mp3").constData(), S_IFSOCK | 0600U, 0), 0);
    ASSERT_EQ(::chmod(folder.path("locked").constData(), 0), 0);
    for (const QByteArray& open : {folder.path(), folder.path("in")})
        ASSERT_EQ(::chmod(open.constData(), 0755), 0);
    const bool isRoot = ::geteuid() == 0; // who may read everything
    if (isRoot)
        ::setfsuid(65534);
    EXPECT_THAT(songsIn(urlOf(folder)), ElementsAre("in/1.mp3", "z.mp3"));
    EXPECT_THAT(songsIn(urlOf(folder, "locked")), IsEmpty());
    if (isRoot)
        ::setfsuid(0);
    EXPECT_THAT(songsIn(urlOf(folder, "chosen")), ElementsAre("1.mp3"));
    EXPECT_THAT(songsIn(urlOf(folder, "gone")), IsEmpty());
    EXPECT_THAT(songsIn(urlOf(folder, "z.mp3")), IsEmpty());
}

TEST(DirectoryWalk, EndsInTreesDeeperThanPathsAndDescriptorsReach) {
    const TemporaryFolder folder;
    constexpr int levels = 300, reached = 50; // the system takes paths of 4096 bytes
    const QByteArray name(60, 'd');
    FileDescriptor at(::open(folder.path().constData(), O_PATH | O_DIRECTORY));
    for (int level = 1; level <= levels; ++level) {
        ASSERT_EQ(::mkdirat(at.number(), name.constData(), 0700), 0);
        at = FileDescriptor(::openat(at.number(), name.constData(), O_PATH | O_DIRECTORY));
        if (level == reached || level == levels)
            FileDescriptor(::openat(at.number(), "s.mp3", O_CREAT | O_WRONLY, 0600));
    }
    folder.write("z.mp3");
    rlimit former{};
    ::getrlimit(RLIMIT_NOFILE, &former);
    const rlimit few{24, former.rlim_max};
    ::setrlimit(RLIMIT_NOFILE, &few);
    const auto found = songsIn(urlOf(folder));
    ::setrlimit(RLIMIT_NOFILE, &former);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].size(), reached * 61 + 5U);
    EXPECT_EQ(found[1], "z.mp3");
}

TEST(DirectoryWalk, TakesManyEntriesAndStopsWhenAsked) {
    const TemporaryFolder folder;
    constexpr int count = 10'000;
    const FileDescriptor directory(::open(folder.path().constData(), O_PATH | O_DIRECTORY));
    for (int i = 0; i < count; ++i) {
        const QByteArray name = "Track " + QByteArray::number(i) + ".mp3";
        FileDescriptor(::openat(directory.number(), name.constData(), O_CREAT | O_WRONLY, 0600));
    }
    int next = 0;
    std::stop_source stop;
    DirectoryWalk::visitFiles(urlOf(folder), {}, isSong, [&](const FileURL& file) {
        EXPECT_EQ(file.lastPathComponent(), "Track " + QByteArray::number(next++) + ".mp3");
    });
    EXPECT_EQ(next, count);
    DirectoryWalk::visitFiles(urlOf(folder), stop.get_token(), isSong, [&](const FileURL&) {
        --next;
        stop.request_stop();
    });
    EXPECT_EQ(next, count - 1);
}

TEST(Bookmark, FindsTheFolderAgain) {
    const TemporaryFolder folder;
    folder.write("\xB8\xE8 1/a");
    folder.write("file");
    const FileURL place = urlOf(folder, "\xB8\xE8 1");
    static constexpr std::chrono::seconds enough(10);
    const auto create = [](const FileURL& url) { return Bookmark::create(url, enough); };
    const auto resolve = [](const QByteArray& bytes) {
        return Bookmark::resolve({bytes}, enough).front();
    };
    EXPECT_FALSE(create(urlOf(folder, "file")));
    EXPECT_FALSE(create(urlOf(folder, "gone")));
    const auto bytes = create(place);
    ASSERT_TRUE(bytes);
    EXPECT_EQ(resolve(*bytes), place);

    const auto move = [&](const char* from, const char* to) {
        ASSERT_EQ(::rename(folder.path(from).constData(), folder.path(to).constData()), 0);
    };
    move("\xB8\xE8 1", "renamed");
    if (!bytes->endsWith("\n\n")) { // the file system keeps birth times
        EXPECT_EQ(resolve(*bytes), urlOf(folder, "renamed"));
    }
    folder.write("\xB8\xE8 1/b"); // another folder has come to the address
    EXPECT_EQ(resolve(*bytes), place);
    move("\xB8\xE8 1", "other");
    move("renamed", "other/renamed"); // out of sight: only neighbours are looked at
    EXPECT_FALSE(resolve(*bytes));
    move("file", "\xB8\xE8 1");
    EXPECT_FALSE(resolve(*bytes));
    for (const char* damaged :
         {"", "/tmp", "tamsy-folder 1", "tamsy-folder 1\nfile:///tmp\n",
          "tamsy-folder 2\nfile:///tmp\n\n", "tamsy-folder 1\n/tmp\n\n",
          "tamsy-folder 1\nfile:///tmp%0\n\n", "tamsy-folder 1\nfile:///tmp\n\nmore",
          "tamsy-folder 1\nfile:///gone\nx y z\n"})
        EXPECT_FALSE(resolve(damaged)) << damaged;
}

} // namespace
