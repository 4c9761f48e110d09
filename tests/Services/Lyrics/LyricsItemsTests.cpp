#include "ProcessorTime.h"
#include "Services/Lyrics/LyricsItems.h"
#include "Tags/HostileFiles.h"

#include <QtEndian>
#include <gtest/gtest.h>

using namespace tamsy;
using namespace std::string_literals;

namespace {

TEST(LyricsItems, AreSoughtInHostileFilesWithAnEnd) {
    constexpr double seconds = 3; // of processor time; an instrumented build is slow
    for (const HostileFile& hostile : hostileFiles()) {
        MemoryFile file;
        hostile.writeTo(file);
        const double start = processorSeconds();
        const MediaAsset asset(file.url(), MediaAsset::Depth::Items);
        (void)readEmbeddedLyricsAVAsync(asset);
        (void)lyricsInInfoDictionary(asset);
        EXPECT_LT(processorSeconds() - start, seconds) << hostile.name;
    }
}

TEST(LyricsItems, ReadLyricsOfAHundredThousandLines) {
    std::string lyrics = "LYRICS=";
    for (int i = 0; i < 100'000; ++i)
        lyrics += "[01:23.45]夜的第七章的歌词\n";
    const auto bytesOf = [](std::size_t value) {
        const std::uint32_t size = qToBigEndian(static_cast<std::uint32_t>(value));
        return std::string(reinterpret_cast<const char*>(&size), 4);
    };
    const std::string length = bytesOf(lyrics.size());
    const std::string flac = "fLaC" + bytesOf(0x84000000 + 12 + lyrics.size()) +
                             "\0\0\0\0\1\0\0\0"s + std::string(length.rbegin(), length.rend()) +
                             lyrics;
    lyrics[6] = '\0';
    const std::string caf =
        "caff\0\1\0\0info\0\0\0\0"s + bytesOf(5 + lyrics.size()) + "\0\0\0\1"s + lyrics + '\0';
    for (const std::string& bytes : {flac, caf}) {
        MemoryFile file;
        file.append(bytes);
        const auto found = lyricsInInfoDictionary(MediaAsset(file.url(), MediaAsset::Depth::Items));
        EXPECT_EQ(found.value_or(Lyrics()).lines.size(), 100'000) << bytes.substr(0, 4);
    }
}

} // namespace
