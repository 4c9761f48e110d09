#include "LyricsPromises.h"
#include "Services/Lyrics/LyricsContainers.h"

using namespace tamsy;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::requireSound(readFlacVorbisLyrics(media::MemorySource(fuzz::asBytes(data, size))));
    return 0;
}
