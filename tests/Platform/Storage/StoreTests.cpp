#include "Child.h"
#include "FileSizeLimit.h"
#include "Platform/Storage/UserDefaults.h"
#include "TemporaryFolder.h"

#include <QRandomGenerator>

using namespace tamsy;

namespace {

TEST(UserDefaults, GivesTheLatestValueAtOnceAndToTheNextRun) {
    const TemporaryFolder folder;
    const QByteArray bytes("\0\xFF{}\n", 5);
    {
        UserDefaults defaults(folder.path("a/Tamsy Music"));
        QByteArrayList changes;
        QObject::connect(&defaults, &UserDefaults::valueChanged,
                         [&](const QByteArray& key) { changes.append(key); });
        EXPECT_FALSE(defaults.dataForKey("k"));
        for (int i = 0; i < 50; ++i)
            defaults.setObject("older", "k");
        defaults.setObject(bytes, "k");
        defaults.setDouble(46.1, "size");
        EXPECT_EQ(defaults.dataForKey("k"), bytes);
        EXPECT_EQ(changes.size(), 52);
        EXPECT_EQ(changes.constLast(), "size");
    }
    EXPECT_EQ(folder.mode("a/Tamsy Music"), 0700U);
    EXPECT_EQ(folder.mode("a/Tamsy Music/k"), 0600U);
    UserDefaults again(folder.path("a/Tamsy Music"));
    EXPECT_EQ(again.dataForKey("k"), bytes);
    EXPECT_EQ(again.doubleForKey("size"), 46.1);
}

TEST(UserDefaults, KeepsWhatItCantWriteAndTriesAgainWithTheNextWrite) {
    const TemporaryFolder folder;
    folder.write("k", "old");
    UserDefaults defaults(folder.path());
    const QByteArray value(100'000, 'x');
    {
        const FileSizeLimit limit(50'000);
        defaults.setObject(value, "k");
        EXPECT_FALSE(defaults.drain());
        EXPECT_EQ(folder.read("k"), "old");
        EXPECT_EQ(folder.names(), QStringList(u"k"_qs)) << "half a file takes room";
        EXPECT_EQ(defaults.dataForKey("k"), value);
    }
    defaults.setObject("other", "l");
    EXPECT_TRUE(defaults.drain());
    EXPECT_EQ(folder.read("k"), value);

    folder.write("place", "a file where the directory belongs");
    UserDefaults nowhere(folder.path("place"));
    nowhere.setObject("value", "k");
    EXPECT_FALSE(nowhere.drain());
    EXPECT_EQ(nowhere.dataForKey("k"), "value");
}

TEST(UserDefaults, MovesDamagedBytesAsideBeforeItWritesOverThem) {
    const TemporaryFolder folder;
    for (int round = 1; round <= 3; ++round) { // several within one second
        folder.write("k", "damaged");
        UserDefaults defaults(folder.path());
        defaults.moveAside("k");
        EXPECT_EQ(folder.names("k.damaged-").size(), round - 1) << "before the write";
        defaults.setObject("new", "k");
        defaults.setObject("newer", "k");
        EXPECT_TRUE(defaults.drain());
        EXPECT_EQ(folder.read("k"), "newer");
        EXPECT_EQ(folder.names("k.damaged-").size(), round);
    }
    for (const QString& name : folder.names("k.damaged-"))
        EXPECT_EQ(folder.read(name.toUtf8()), "damaged");
}

TEST(UserDefaults, TreatsWhatItCantReadAsDamaged) {
    const TemporaryFolder folder;
    folder.write("k/inside", "a directory where the file belongs");
    folder.write("size", "46 points");
    ASSERT_EQ(::mkfifo(folder.path("fifo").constData(), 0600), 0);
    UserDefaults defaults(folder.path());
    EXPECT_FALSE(defaults.dataForKey("k"));
    EXPECT_FALSE(defaults.dataForKey("fifo")); // doesn't wait for a writer
    EXPECT_FALSE(defaults.doubleForKey("size"));
    for (const char* key : {"k", "fifo", "size"})
        defaults.setObject("new", key);
    EXPECT_TRUE(defaults.drain());
    EXPECT_EQ(folder.read(folder.names("k.damaged-").value(0).toUtf8() + "/inside"),
              "a directory where the file belongs");
    EXPECT_EQ(folder.read(folder.names("size.damaged-").value(0).toUtf8()), "46 points");
    EXPECT_EQ(folder.names("fifo.damaged-").size(), 1);
    EXPECT_EQ(folder.read("k"), "new");
}

TEST(UserDefaults, HoldsAWholeValueWheneverItsProcessIsKilled) {
    const TemporaryFolder folder;
    for (int round = 0; round < 20; ++round) {
        Child child(u"save"_qs, folder.path());
        ASSERT_TRUE(child.process().waitForReadyRead(10'000));
        ::usleep(QRandomGenerator::global()->bounded(30'000U));
        child.kill();
        const int lastSaved = child.said().trimmed().split('\n').last().toInt();
        const QByteArray value = folder.read("value");
        const QByteArray line = value.left(value.indexOf('\n') + 1);
        EXPECT_EQ(value, line.repeated(300'000)) << "half a value, of " << value.size();
        EXPECT_GE(line.trimmed().toInt(), lastSaved);
    }
}

} // namespace
