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
    const QStringList files{u"Blue Train~John Coltrane~Blue Train"_qs, u"Élan~Été~"_qs,
                            u"潮汐来信~林屿~南岸以南"_qs, u"Straße~~CITY POP"_qs,
                            u"か\u3099~CAFE\u0301~İSTANBUL Ａ"_qs};
    fixture.add(u"m"_qs, files);
    const std::vector<QString> all{u"Blue Train"_qs, u"Élan"_qs, u"潮汐来信"_qs, u"Straße"_qs,
                                   u"か\u3099"_qs};
    const std::pair<QStringList, std::vector<QString>> rows[] = {
        {{QString(), u" \n\u3000\t"_qs}, all},
        {{u"  blue TRAIN "_qs, u"coltrane"_qs}, {all[0]}},
        {{u"ÉLAN"_qs, u"E\u0301LAN"_qs}, {all[1]}}, // typed in two pieces
        {{u"林屿"_qs}, {all[2]}},
        {{u"city pop"_qs}, {all[3]}},
        {{u"café"_qs, u"が"_qs, u"i̇stanbul"_qs, u"ａ"_qs}, {all[4]}},
        // Diacritics count, also those in pieces of their own; lower-casing is not folding.
        {{u"blue  train"_qs, u"cafe"_qs, u"か"_qs, u"strasse"_qs, u"mp3"_qs}, {}},
    };
    for (const auto& [queries, found] : rows) {
        for (const QString& query : queries) {
            fixture.library->setSearchText(query);
            EXPECT_THAT(titles(fixture.library->filteredTracks()), UnorderedElementsAreArray(found))
                << query.toStdString();
        }
    }
}

TEST(LibraryViewModel, KeepsTheSelectionOfFolders) {
    LibraryFixture fixture;
    LibraryViewModel& library = *fixture.library;
    EXPECT_EQ(library.selectedFolder(), nullptr);
    EXPECT_TRUE(library.filteredTracks().isEmpty());
    library.addFolderViaPanel(); // cancelled
    EXPECT_TRUE(library.folders().isEmpty());

    fixture.add(u"a"_qs, {u"1"_qs, u"2"_qs});
    fixture.add(u"b"_qs, {u"3"_qs});
    const QUuid a = library.folders().at(0).id;
    const QUuid b = library.folders().at(1).id;
    EXPECT_EQ(library.selectedFolderId(), a); // the first one stays
    EXPECT_EQ(library.allTracks().size(), 3);
    library.removeFolder(b);
    EXPECT_EQ(library.selectedFolderId(), a);
    fixture.add(u"c"_qs, {u"4"_qs});
    library.removeFolder(a);
    EXPECT_TRUE(library.selectedFolderId().isNull());
    EXPECT_EQ(library.selectedFolder(), nullptr); // none in its place
    fixture.add(u"d"_qs, {});
    EXPECT_EQ(library.selectedFolderId(),
              library.folders().constFirst().id); // the first, not the new one
    EXPECT_EQ(library.selectedFolder()->displayName, u"c"_qs);
}

} // namespace
