#include "Utils/LowercaseMatcher.h"
#include "ViewModels/LibraryFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tamsy;
using testing::UnorderedElementsAreArray;

namespace {

std::vector<QString> titles(const TrackList& tracks) {
    std::vector<QString> found;
    for (const Track& track : tracks)
        found.push_back(track.title);
    return found;
}

TEST(LibraryViewModel, FindsAQueryInTitleArtistOrAlbum) {
    LibraryFixture fixture;
    const QStringList files{QStringLiteral("Blue Train~John Coltrane~Blue Train"),
                            QStringLiteral("Élan~Été~"), QStringLiteral("潮汐来信~林屿~南岸以南"),
                            QStringLiteral("Straße~~CITY POP")};
    fixture.add(fixture.makeFolder(QStringLiteral("m"), files), 4);
    struct Row {
        QString query;
        std::vector<QString> found;
    };
    const std::vector<QString> all{QStringLiteral("Blue Train"), QStringLiteral("Élan"),
                                   QStringLiteral("潮汐来信"), QStringLiteral("Straße")};
    const Row rows[] = {
        {{}, all},
        {QStringLiteral(u" \n\u3000\t"), all},
        {QStringLiteral("  blue TRAIN "), {all[0]}},
        {QStringLiteral("coltrane"), {all[0]}},
        {QStringLiteral("blue  train"), {}},
        {QStringLiteral("ÉLAN"), {all[1]}},
        {QStringLiteral(u"E\u0301LAN"), {all[1]}}, // typed in two pieces
        {QStringLiteral("elan"), {}},              // diacritics count
        {QStringLiteral("strasse"), {}},           // lower-casing is not folding
        {QStringLiteral("city pop"), {all[3]}},
        {QStringLiteral("林屿"), {all[2]}},
        {QStringLiteral("mp3"), {}},
    };
    for (const Row& row : rows) {
        fixture.library->setSearchText(row.query);
        EXPECT_THAT(titles(fixture.library->filteredTracks()), UnorderedElementsAreArray(row.found))
            << row.query.toStdString();
    }
}

TEST(LowercaseMatcher, ComparesInOneNormalForm) {
    struct Row {
        QString query;
        QString text;
        bool found;
    };
    const Row rows[] = {
        {QStringLiteral("e"), QStringLiteral(u"Cafe\u0301"), false},
        {QStringLiteral("café"), QStringLiteral(u"CAFE\u0301"), true},
        {QStringLiteral(u"か"), QStringLiteral(u"か\u3099"), false}, // が in two pieces
        {QStringLiteral("が"), QStringLiteral(u"か\u3099"), true},
        {QStringLiteral("i̇stanbul"), QStringLiteral("İSTANBUL"), true},
        {QStringLiteral("ａ"), QStringLiteral("Ａ"), true},
        {QStringLiteral("x"), QString(), false},
    };
    for (const Row& row : rows)
        EXPECT_EQ(LowercaseMatcher(row.query).isContainedIn(row.text), row.found)
            << row.text.toStdString();
}

TEST(LibraryViewModel, KeepsTheSelectionOfFolders) {
    LibraryFixture fixture;
    LibraryViewModel& library = *fixture.library;
    EXPECT_EQ(library.selectedFolder(), nullptr);
    EXPECT_TRUE(library.filteredTracks().isEmpty());
    library.addFolderViaPanel(); // cancelled
    EXPECT_EQ(fixture.panel->prompt, QStringLiteral("添加"));
    EXPECT_EQ(fixture.panel->message, QStringLiteral("选择一个音乐文件夹"));
    fixture.panel->answer = FileURL::fromPath("/nowhere/at/all");
    library.addFolderViaPanel(); // can't be opened
    QCoreApplication::processEvents();
    EXPECT_TRUE(library.folders().isEmpty());

    fixture.add(fixture.makeFolder(QStringLiteral("a"), {QStringLiteral("1"), QStringLiteral("2")}),
                2);
    fixture.add(fixture.makeFolder(QStringLiteral("b"), {QStringLiteral("3")}), 1);
    const QUuid a = library.folders().at(0).id;
    const QUuid b = library.folders().at(1).id;
    EXPECT_EQ(library.selectedFolderId(), a); // the first one stays
    EXPECT_EQ(library.allTracks().size(), 3);
    library.removeFolder(b);
    EXPECT_EQ(library.selectedFolderId(), a);
    fixture.add(fixture.makeFolder(QStringLiteral("c"), {QStringLiteral("4")}), 1);
    library.removeFolder(a);
    EXPECT_TRUE(library.selectedFolderId().isNull());
    EXPECT_EQ(library.selectedFolder(), nullptr); // none in its place
    fixture.add(fixture.makeFolder(QStringLiteral("d"), {}), 0);
    EXPECT_EQ(library.selectedFolderId(),
              library.folders().constFirst().id); // the first, not the new one
    EXPECT_EQ(library.selectedFolder()->displayName, QStringLiteral("c"));
}

} // namespace
