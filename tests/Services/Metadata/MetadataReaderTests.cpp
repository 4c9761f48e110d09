#include "Services/Metadata/MetadataReader.h"

#include "Platform/Threads/InterfaceThread.h"
#include "Tags/MediaAsset.h"
#include "Tags/MemoryFile.h"

#include <QCoreApplication>
#include <QTest>
#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <string>
#include <thread>
#include <tuple>

using namespace tamsy;
using namespace std::string_literals;

namespace {

FileURL fixture(const char* name) {
    return FileURL::fromPath(QByteArray(TAG_FIXTURES "/").append(name));
}

/// The result of `load` on another thread while the interface thread runs its event loop.
AudioMetadata loadBlocking(const FileURL& url) {
    AudioMetadata metadata;
    std::atomic<bool> isDone = false;
    std::thread thread([&] {
        metadata = MetadataReader().load(url);
        isDone = true;
    });
    EXPECT_TRUE(QTest::qWaitFor([&] { return isDone.load(); }));
    thread.join();
    return metadata;
}

std::string titleFrame(const std::string& text) {
    return "TIT2\0\0\0"s + static_cast<char>(text.size() + 1) + "\0\0\0"s + text;
}

std::string tag(const std::string& frames) {
    return "ID3\3\0\0\0\0\0"s + static_cast<char>(frames.size()) + frames;
}

TEST(MetadataReader, GivesTheSameTextsOnBothPathsAndTheCoverOnOne) {
    const QByteArray withCover =
        "mp3-v24.mp3 mp3-v23.mp3 mp3-v22.mp3 mp3-v23-unsynchronised.mp3 mp3-ape.mp3 ogg-opus.ogg "
        "mp3-v23-three-letters.mp3 m4a-movie-last.m4a flac-plain.flac ogg-vorbis.ogg";
    const QByteArray without = " m4a-user-data.m4a wav-info.wav aif-id3.aif caf-pcm.caf aac-v2.aac";
    for (const QByteArray& file : QByteArray(withCover + without).split(' ')) {
        const char* const name = file.constData();
        const bool hasCover = withCover.contains(file);
        SCOPED_TRACE(name);
        const AudioMetadata scanned = MetadataReader().loadWithoutArtwork(fixture(name));
        const AudioMetadata loaded = loadBlocking(fixture(name));
        EXPECT_EQ(scanned.title, u"夜曲 Nocturne"_qs);
        EXPECT_EQ(loaded.title, scanned.title);
        EXPECT_EQ(loaded.artist, scanned.artist);
        EXPECT_EQ(loaded.album, scanned.album);
        EXPECT_EQ(loaded.duration, scanned.duration);
        EXPECT_TRUE(scanned.artwork.isNull());
        EXPECT_EQ(loaded.artwork.size(), hasCover ? QSize(64, 64) : QSize(0, 0));
    }
}

TEST(MetadataReader, ChoosesAmongSeveralAndBlankTitles) {
    const std::string old = "TAG" + "Of the old tag"s + std::string(111, '\0');
    // What is in the file, and its title for the list and for the player.
    const std::tuple<const char*, std::string, QString, QString> rows[] = {
        {"blanks alone", tag(titleFrame("   ")), {}, u"   "_qs},
        {"blanks, and another tag", tag(titleFrame("   ")) + old, u"Of the old tag"_qs, u"   "_qs},
        {"first without text", tag(titleFrame("") + titleFrame("b")), u"b"_qs, u"b"_qs},
        {"first of two", tag(titleFrame(" a ") + titleFrame("b")), u"a"_qs, u" a "_qs},
        {"no tags", "nothing to read here", {}, {}},
    };
    for (const auto& [name, bytes, scanned, loaded] : rows) {
        MemoryFile file;
        file.append(bytes);
        EXPECT_EQ(MetadataReader().loadWithoutArtwork(file.url()).title, scanned) << name;
        EXPECT_EQ(loadBlocking(file.url()).title, loaded) << name;
    }
}

TEST(MetadataReader, TurnsALengthThatIsNotFiniteIntoNone) {
    MemoryFile file; // with a sample rate near 0
    file.append(
        "caff\0\1\0\0desc\0\0\0\0\0\0\0\x20\0\0\0\0\0\0\0\1lpcm\0\0\0\0\0\0\0\2\0\0\0\1\0\0\0\1\0\0\0\x10"s);
    file.append("data\0\0\0\0\0\0\1\0"s + std::string(256, '\0'));
    EXPECT_FALSE(std::isfinite(MediaAsset(file.url(), MediaAsset::Depth::Full).duration()));
    EXPECT_EQ(MetadataReader().loadWithoutArtwork(file.url()).duration, 0);
    EXPECT_EQ(loadBlocking(file.url()).duration, 0);
}

TEST(MetadataReader, LetsItsWaitersGoWhenTheProgramQuits) {
    AudioMetadata metadata;
    std::thread waiter([&] { metadata = MetadataReader().load(fixture("mp3-v24.mp3")); });
    InterfaceThread::releaseWaiters(); // the interface thread does no more work
    waiter.join();
    EXPECT_TRUE(metadata.title.isEmpty());
}

} // namespace
