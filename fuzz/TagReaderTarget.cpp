#include "FuzzTarget.h"
#include "Services/Lyrics/LyricsItems.h"
#include "Tags/MediaAsset.h"
#include "Tags/MemoryFile.h"

using namespace tamsy;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFile file;
    file.append(fuzz::asText(data, size));
    const MediaAsset quick(file.url(), MediaAsset::Depth::CommonTexts);
    const MediaAsset whole(file.url(), MediaAsset::Depth::Full);
    for (const MediaItem& item : whole.commonMetadata())
        (void)item.data();
    (void)readEmbeddedLyricsAVAsync(whole);
    (void)lyricsInInfoDictionary(whole);
    return 0;
}
