#include "Services/Lyrics/LyricsReader.h"

#include "Platform/Storage/TemporaryFolder.h"
#include "Platform/Threads/InterfaceThread.h"
#include "Services/Lyrics/LyricsText.h"
#include "Utils/FileURL.h"

#include <QCoreApplication>
#include <QFile>
#include <gtest/gtest.h>

#include <memory>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace tamsy;

namespace {

/// Loads on a thread of its own while this one, the interface thread, runs its event loop.
std::string loaded(const QByteArray& path) {
    static int argc = 0;
    static QCoreApplication application(argc, nullptr);
    std::string answer;
    std::thread loader([&] {
        answer = shown(LyricsReader().load(FileURL::fromPath(path)));
        InterfaceThread::run(&QCoreApplication::quit);
    });
    QCoreApplication::exec();
    loader.join();
    return answer;
}

TEST(LyricsReader, FindsTheRightLyricsInEveryPlaceOfEveryFormat) {
    QFile table(QStringLiteral(LYRICS_FIXTURES "/expected.tsv"));
    ASSERT_TRUE(table.open(QIODevice::ReadOnly));
    int count = 0;
    for (; !table.atEnd(); ++count) {
        const QByteArrayList row = table.readLine().chopped(1).split('\t');
        EXPECT_EQ(loaded(LYRICS_FIXTURES "/" + row[0]), row[1].toStdString()) << row[0].data();
    }
    EXPECT_GT(count, 90);
}

TEST(LyricsReader, TakesTheSidecarOfTheSameNameOrTheOnlyOne) {
    const QByteArray right = "[00:01]right";
    const QByteArray wrong = "[00:01]wrong";
    const QByteArray largest = right + QByteArray(524'288 - right.size(), '\n');
    const std::string found = "synced: 1 right";
    const std::string nothing = "plain: ";
    using Files = QList<std::pair<QByteArray, QByteArray>>; // "…/": a folder, "…@": to itself
    const std::pair<std::string, Files> rows[] = {
        {nothing, {}},
        {found, {{"a.lrc", right}, {"b.lrc", wrong}}},
        {found, {{"b.lrc", right}}},
        {found, {{"A.LRC", right}}},
        {found, {{"\xC4\xE3.Lrc", right}, {".lrc", wrong}, {".b.lrc", wrong}, {"b.lrcx", wrong}}},
        {nothing, {{"b.lrc", right}, {"c.LRC", wrong}}},
        {found, {{"a.lrc/", ""}, {"b.lrc", right}}},
        {found, {{"a.lrc@", ""}, {"b.lrc", right}}},
        {nothing, {{"a.lrc", "no stamp"}, {"b.lrc", right}}},
        {nothing, {{"a.lrc", "no stamp"}}},
        {found, {{"a.lrc", largest}}},
        {nothing, {{"a.lrc", largest + '\n'}}},
        {nothing, {{"b.lrc", largest + '\n'}}},
        {found, {{"a.lrc", "\xEF\xBB\xBF" + right}}},
        {nothing, {{"a.lrc", right + "\n[00:02]\xB8\xE8"}}}, // GBK
        {nothing, {{"a.lrc", QByteArray::fromHex("fffe5b003000")}}},
        {nothing, {{"a.lrc", ""}}},
    };
    for (const auto& [lyrics, files] : rows) {
        const TemporaryFolder folder;
        for (const auto& [name, content] : files) {
            const QByteArray path = folder.path(name.chopped(name.endsWith('@') ? 1 : 0));
            if (name.endsWith('@'))
                ASSERT_EQ(::symlink(path.constData(), path.constData()), 0);
            else if (name.endsWith('/'))
                ASSERT_EQ(::mkdir(path.constData(), 0700), 0);
            else
                folder.write(name, content);
        }
        EXPECT_EQ(loaded(folder.path("a.mp3")), lyrics) << files.value(0).first.data();
    }
}

TEST(LyricsReader, PassesOverWhatIsNoFile) {
    const TemporaryFolder folder;
    for (const char* name : {"a.m4a", "a.flac", "a.lrc"})
        ASSERT_EQ(::mkfifo(folder.path(name).constData(), 0600), 0);
    EXPECT_EQ(loaded(folder.path("a.m4a")), "plain: ");
    EXPECT_EQ(loaded(folder.path("a.flac")), "plain: ");
    EXPECT_EQ(loaded("/nowhere/a.m4a"), "plain: ");
}

TEST(LyricsReader, KeepsWhatWasFoundAndSearchesAgainForWhatWasNot) {
    const TemporaryFolder folder;
    EXPECT_EQ(loaded(folder.path("a.mp3")), "plain: ");
    folder.write("a.lrc", "[00:01]first");
    EXPECT_EQ(loaded(folder.path("a.mp3")), "synced: 1 first");
    folder.write("a.lrc", "[00:01]second");
    EXPECT_EQ(loaded(folder.path("a.mp3")), "synced: 1 first");
    EXPECT_EQ(loaded(folder.path("a.ogg")), "synced: 1 second");
}

} // namespace
