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
                            QStringLiteral("Straße~~CITY POP"),
                            QStringLiteral(u"か\u3099~CAFE\u0301~İSTANBUL Ａ")};
    fixture.add(QStringLiteral("m"), files);
    struct Row {
        QString query;
        std::vector<QString> found;
    };
    const std::vector<QString> all{QStringLiteral("Blue Train"), QStringLiteral("Élan"),
                                   QStringLiteral("潮汐来信"), QStringLiteral("Straße"),
                                   QStringLiteral(u"か\u3099")};
    const Row rows[] = {
        {{}, all},
        {QStringLiteral(u" \n\u3000\t"), all},
        {QStringLiteral("  blue TRAIN "), {all[0]}},
        {QStringLiteral("coltrane"), {all[0]}},
        {QStringLiteral("blue  train"), {}},
        {QStringLiteral("ÉLAN"), {all[1]}},
        {QStringLiteral(u"E\u0301LAN"), {all[1]}}, // typed in two pieces
        {QStringLiteral("cafe"), {}},              // diacritics count
        {QStringLiteral("café"), {all[4]}},
        {QStringLiteral(u"か"), {}}, // が in two pieces
        {QStringLiteral("が"), {all[4]}},
        {QStringLiteral("i̇stanbul"), {all[4]}},
        {QStringLiteral("ａ"), {all[4]}},
        {QStringLiteral("strasse"), {}}, // lower-casing is not folding
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

TEST(LibraryViewModel, KeepsTheSelectionOfFolders) {
    LibraryFixture fixture;
    LibraryViewModel& library = *fixture.library;
    EXPECT_EQ(library.selectedFolder(), nullptr);
    EXPECT_TRUE(library.filteredTracks().isEmpty());
    library.addFolderViaPanel(); // cancelled
    EXPECT_TRUE(library.folders().isEmpty());

    fixture.add(QStringLiteral("a"), {QStringLiteral("1"), QStringLiteral("2")});
    fixture.add(QStringLiteral("b"), {QStringLiteral("3")});
    const QUuid a = library.folders().at(0).id;
    const QUuid b = library.folders().at(1).id;
    EXPECT_EQ(library.selectedFolderId(), a); // the first one stays
    EXPECT_EQ(library.allTracks().size(), 3);
    library.removeFolder(b);
    EXPECT_EQ(library.selectedFolderId(), a);
    fixture.add(QStringLiteral("c"), {QStringLiteral("4")});
    library.removeFolder(a);
    EXPECT_TRUE(library.selectedFolderId().isNull());
    EXPECT_EQ(library.selectedFolder(), nullptr); // none in its place
    fixture.add(QStringLiteral("d"), {});
    EXPECT_EQ(library.selectedFolderId(),
              library.folders().constFirst().id); // the first, not the new one
    EXPECT_EQ(library.selectedFolder()->displayName, QStringLiteral("c"));
}

} // namespace
