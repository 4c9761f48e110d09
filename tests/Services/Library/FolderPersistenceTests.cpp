#include "Platform/Storage/TemporaryFolder.h"
#include "Platform/Storage/UserDefaults.h"
#include "Services/Library/FolderPersistence.h"
#include "Services/Library/LibraryDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

using namespace tamsy;

namespace {

constexpr auto folderId = "0A1B2C3D-0000-4000-8000-00000000000F";

/// A document of one folder with one track, in which the text `from` is replaced by `to`.
QByteArray documentWith(const char* from = "", const char* to = "") {
    QByteArray json =
        R"([{"id":"0A1B2C3D-0000-4000-8000-00000000000F","bookmarkBase64":"Ym9vaw==",)"
        R"("dateAdded":700000000.25,"tracks":[{"id":"99999999-0000-4000-8000-000000000001",)"
        R"("urlString":"file:///m/a.mp3","title":"t","artist":"r","album":"l",)"
        R"("duration":2.5,"fileExtension":"MP3"}]}])";
    if (*from != '\0') {
        EXPECT_TRUE(json.contains(from)) << from;
        json.replace(from, to);
    }
    return json;
}

Track track(const QByteArray& path, const QString& title, double duration = 1) {
    const QString artist = u"艺术家"_qs;
    return {
        QUuid::createUuid(), FileURL::fromPath(path), title, artist, artist, duration, u"mp3"_qs};
}

class FolderPersistenceTest : public testing::Test {
  protected:
    void store(const QByteArray& json) { folder.write(name, json); }
    QByteArray stored() {
        EXPECT_TRUE(defaults.drain());
        return folder.read(name);
    }
    QJsonObject storedFolder(int index) {
        return QJsonDocument::fromJson(stored()).array().at(index).toObject();
    }

    const QByteArray name = FolderPersistence::defaultsKey;
    TemporaryFolder folder;
    UserDefaults defaults{folder.path()};
    FolderPersistence persistence{defaults};
};

TEST_F(FolderPersistenceTest, ReadsWhatIsADocumentAndMovesAsideWhatIsNone) {
    const QByteArray documents[] = {
        // Fields that nobody knows, other spellings and the last of two equal names.
        documentWith(),
        documentWith(R"("album":"l",)", R"("album":"l","new":[{}],)"),
        documentWith("0A1B2C3D", "0a1b2c3d"),
        documentWith("700000000.25", "7E8"),
        documentWith("700000000.25", "-18446744073709551616"),
        documentWith("2.5", "123456789012345678901234567890"),
        documentWith("\"t\"",
                     R"("\" 123456789012345678901 \\","duration":12345678901234567890123)"),
        documentWith("\"t\"", R"("first","title":"last")")};
    const QByteArray others[] = {
        // A value of another kind, or none.
        documentWith("2.5", "1e999"), documentWith("2.5", "\"2.5\""), documentWith("2.5", "null"),
        documentWith("\"t\"", "5"), documentWith("\"t\"", "\"\xFF\""),
        documentWith("\"t\"", R"("\ud800")"), documentWith(R"("artist":"r",)", ""),
        documentWith("\"dateAdded\":700000000.25,", ""), documentWith("\"Ym9vaw==\"", "null"),
        documentWith("0A1B2C3D-", "0A1B2C3D"), documentWith("0A1B2C3D", "{A1B2C3D"),
        documentWith("\"tracks\":[", "\"tracks\":[7,"),
        documentWith(R"([{"id":"0A)", R"([[],{"id":"0A)"),
        // No list of folders.
        "{}", "null", "", documentWith().chopped(1), documentWith() + "]",
        QByteArray(100'000, '[')};
    const auto expectRead = [this](const QByteArray& json, bool isRead) {
        SCOPED_TRACE(json.left(500).toStdString());
        store(json);
        ASSERT_EQ(persistence.loadRecords().size(), isRead ? 1 : 0);
        EXPECT_EQ(folder.read(name), json) << "reading changes nothing";
        persistence.removeRecord(QUuid::createUuid());
        EXPECT_EQ(stored() == "[]", !isRead);
        const QStringList aside = folder.names("FolderLibraryService.Bookmarks.damaged-");
        ASSERT_EQ(aside.size(), isRead ? 0 : 1);
        if (!isRead) {
            EXPECT_EQ(folder.read(aside[0].toUtf8()), json);
            ASSERT_EQ(::unlink(folder.path(aside[0].toUtf8()).constData()), 0);
        }
    };
    for (const QByteArray& json : documents)
        expectRead(json, true);
    for (const QByteArray& json : others)
        expectRead(json, false);
}

TEST_F(FolderPersistenceTest, ReadsEachFieldAsItIsStored) {
    store(documentWith());
    const Track read = persistence.loadRecords().at(0).tracks.value().at(0);
    EXPECT_EQ(read.id, QUuid(u"99999999-0000-4000-8000-000000000001"_qs));
    EXPECT_EQ(read.url, FileURL::fromPath("/m/a.mp3"));
    EXPECT_EQ(QString(read.title + read.artist + read.album), u"trl"_qs);
    EXPECT_EQ(read.duration, 2.5);
    EXPECT_EQ(read.fileExtension, u"mp3"_qs);
    store(documentWith("file:///m/a.mp3", "https://m/a.mp3"));
    EXPECT_EQ(persistence.loadRecords().at(0).tracks.value().at(0).url, FileURL::fromPath("/"));
    for (const char* tracks : {R"("tracks":null,"x":[)", R"("other":[)"}) {
        store(documentWith("\"tracks\":[", tracks));
        EXPECT_FALSE(persistence.loadRecords().at(0).tracks);
    }
}

TEST_F(FolderPersistenceTest, LeavesOutEntriesWithoutABookmarkAndKeepsThemStored) {
    const QByteArray one = documentWith().chopped(1).sliced(1);
    for (const char* broken :
         {"Ym9vaw=", "Ym9vaw", "Ym9v\\naw==", "Ym9vaw==\\n", " Ym9vaw==", "Ym9v-w==", "?"}) {
        const QByteArray other =
            QByteArray(one).replace("Ym9vaw==", broken).replace("0A1B2C3D", "FFFFFFFF");
        store('[' + one + ',' + other + ',' + one + ']');
        const auto records = persistence.loadRecords();
        ASSERT_EQ(records.size(), 2) << broken;
        EXPECT_EQ(records[1].data, "book");
        EXPECT_EQ(records[1].id.toString(QUuid::WithoutBraces).toUpper(), QLatin1String(folderId));
        persistence.removeRecord(records[0].id);
        EXPECT_EQ(storedFolder(0).value(u"bookmarkBase64").toString().toUtf8(),
                  QByteArray(broken).replace("\\n", "\n"));
        EXPECT_EQ(stored().count("bookmarkBase64"), 1);
    }
}

TEST_F(FolderPersistenceTest, StoresTracksThatReadBackTheSame) {
    EXPECT_FALSE(persistence.saveBookmark(urlOf(folder, "gone")));
    EXPECT_EQ(stored(), "(none)");
    const auto first = persistence.saveBookmark(urlOf(folder));
    const auto second = persistence.saveBookmark(urlOf(folder));
    ASSERT_TRUE(first && second);
    const double now = static_cast<double>(QDateTime::currentSecsSinceEpoch()) - 978307200;
    const double dateAdded = storedFolder(1).value(u"dateAdded").toDouble();
    EXPECT_NEAR(dateAdded, now, 60);
    EXPECT_FALSE(storedFolder(1).contains(u"tracks"));

    TrackList tracks;
    const char16_t lone[] = {u'x', 0xD800, u'y', 0}; // half a character, as a broken tag may give
    for (const QString& title : {QString(), u"歌 \"一\" \\ / \u0001\t\u2028 🎵"_qs,
                                 QString(2000, u'é'), QString::fromUtf16(lone), QString(QChar(0))})
        tracks.append(track("/m/\xB8\xE8 " + QByteArray::number(tracks.size()) + ".mp3", title));
    for (const double duration : {0.0, -0.0, 0.1, 1e-320, 12345.6789, 9007199254740993.0,
                                  18446744073709551616.0, -1e21, 1.7e308})
        tracks.append(track("/m/d.mp3", u"d"_qs, duration));
    persistence.saveTracks(second->id, tracks);
    persistence.saveTracks(QUuid::createUuid(), tracks); // of a folder that was removed meanwhile
    persistence.saveTracks(first->id, {});

    const auto records = persistence.loadRecords();
    ASSERT_EQ(records.size(), 2);
    EXPECT_EQ(records[1].data, second->data);
    EXPECT_EQ(FolderPersistence::resolveBookmarks(records)[1], urlOf(folder));
    EXPECT_EQ(records[0].tracks, TrackList());
    ASSERT_EQ(records[1].tracks, tracks);
    for (qsizetype i = 0; i < tracks.size(); ++i) {
        const Track& read = records[1].tracks->at(i);
        EXPECT_EQ(read.url, tracks[i].url);
        EXPECT_EQ(read.title, i == 3 ? u"x\uFFFDy"_qs : tracks[i].title);
        EXPECT_EQ(read.artist, tracks[i].artist);
        EXPECT_EQ(read.duration, tracks[i].duration) << i;
        EXPECT_TRUE(read.artist.isSharedWith(records[1].tracks->at(0).artist));
    }
    EXPECT_EQ(storedFolder(1).value(u"dateAdded").toDouble(), dateAdded);
    const QString id = storedFolder(1).value(u"id").toString();
    EXPECT_EQ(id, second->id.toString(QUuid::WithoutBraces).toUpper());

    const QByteArray before = stored();
    persistence.saveTracks(first->id, {track("/m", {}, std::numeric_limits<double>::infinity())});
    EXPECT_EQ(stored(), before) << "a number without a JSON form stores nothing";
}

} // namespace
