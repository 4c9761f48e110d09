#include "LyricsPromises.h"
#include "Services/Lyrics/LyricsParsing.h"

using namespace tamsy;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(fuzz::asBytes(data, size));
    const auto synced = parseLRCFormat(text);
    fuzz::requireSound(synced);
    fuzz::requireSound(parsePlainLyrics(text));
    fuzz::require(!synced || hasStamps(text));
    return 0;
}
