#include "Platform/Media/HostileFiles.h"
#include "Services/LyricsItems.h"

#include <gtest/gtest.h>

#include <ctime>

using namespace tamsy;

namespace {

TEST(LyricsItems, AreFoundOrNotInAnyFileWithinASecond) {
    constexpr double seconds = 1; // of processor time, in an instrumented build
    for (const HostileFile& hostile : hostileFiles()) {
        MemoryFile file;
        hostile.writeTo(file);
        const std::clock_t start = std::clock();
        const MediaAsset asset(file.url(), MediaAsset::Depth::Items);
        (void)lyricsAmongItems(asset);
        (void)lyricsInInfoDictionary(asset);
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, seconds)
            << hostile.name;
    }
}

} // namespace
