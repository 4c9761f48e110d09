#include "Playback/CompositePlaybackEngine.h"
#include "Playback/TestAudio.h"
#include "ViewModels/LibraryFixture.h"
#include "ViewModels/PlayerViewModel.h"

#include <QFile>
#include <gmock/gmock.h>

using namespace tamsy;
using namespace tamsy::test;
using testing::ElementsAreArray;

namespace {

/// The player with its real engines over a folder of real files, at each pace of reports.
class WholePlayerTest : public testing::TestWithParam<double>, protected LibraryFixture {
  protected:
    void fill(const std::vector<QByteArray>& names) {
        QDir(directory.path()).mkdir(u"music"_qs);
        const QByteArray folder = QFile::encodeName(directory.filePath(u"music"_qs));
        for (const QByteArray& name : names)
            QFile::copy(QFile::decodeName(testAudio(name).path()),
                        QFile::decodeName(folder + '/' + name));
        add(FileURL::fromPath(folder), static_cast<qsizetype>(names.size()));
        player.attachLibrary(library.get());
        engine->setUpdateInterval(GetParam());
        connection = QObject::connect(&player, &PlayerViewModel::currentURLChanged,
                                      [this] { started.push_back(name(player.currentURL())); });
    }

    [[nodiscard]] static std::string name(const FileURL& url) {
        return url.lastPathComponentText().toStdString();
    }

    /// The names in the order of the list, and the first once more.
    [[nodiscard]] std::vector<std::string> once() const {
        std::vector<std::string> all;
        for (const Track& track : library->filteredTracks())
            all.push_back(name(track.url));
        all.push_back(all.front());
        return all;
    }

    CompositePlaybackEngine* engine = new CompositePlaybackEngine; // the player owns it
    PlayerViewModel player{std::unique_ptr<AudioPlaybackEngine>(engine)};
    std::vector<std::string> started;
    QMetaObject::Connection connection;
};

TEST_P(WholePlayerTest, GoesThroughShortTracksOfEachFormat) {
    std::vector<QByteArray> names{"short-flac.oga", "short-no-length.flac"};
    for (const char* extension : extensions) {
        for (const char* length : {"short-0.1.", "short-0.3.", "short-0.5."})
            names.push_back(QByteArray(length) + extension);
    }
    fill(names);
    player.play(library->filteredTracks().constFirst().url);
    const std::vector<std::string> expected = once();
    EXPECT_TRUE(waitUntil([&] { return started.size() >= expected.size(); }, 120'000));
    EXPECT_THAT(started, ElementsAreArray(expected));
}

/// Every kind of file, those without a length in a header among them.
TEST_P(WholePlayerTest, EndsAfterASeekNearTheEndOrToIt) {
    std::vector<QByteArray> names{"steps-cbr-no-header.mp3", "steps-vbr-no-header.mp3",
                                  "steps-vbr.mp3",           "steps-vbr.aac",
                                  "steps-mono.aac",          "steps-alac.m4a",
                                  "steps-alac.caf",          "steps-flac.oga",
                                  "steps-24bit.wav",         "steps-aac.caf"};
    for (const char* extension : extensions)
        names.push_back(QByteArray("steps.") + extension);
    fill(names);
    const std::vector<std::string> expected = once();
    for (const double beforeTheEnd : {0.4, 0.0}) {
        started.clear();
        player.play(library->filteredTracks().constFirst().url);
        started.resize(1, expected.front());
        for (std::size_t index = 1; index < expected.size(); ++index) {
            ASSERT_TRUE(waitUntil([&] { return player.isPlaying() && player.duration() > 19; }))
                << expected[index - 1];
            player.setIsSeeking(true);
            player.seek(player.duration() - beforeTheEnd);
            ASSERT_TRUE(waitUntil([&] { return started.size() > index; })) << expected[index - 1];
        }
        EXPECT_THAT(started, ElementsAreArray(expected));
        EXPECT_TRUE(waitUntil([&] { return !player.isSeeking() && !player.pendingSeekTarget(); }));
    }
}

INSTANTIATE_TEST_SUITE_P(AtEachPace, WholePlayerTest, testing::Values(0.25, 1.2));

} // namespace
