#include "LyricsPromises.h"
#include "Services/Lyrics/LyricsContainers.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tamsy::fuzz::requireSound(tamsy::parseID3USLT(tamsy::fuzz::asBytes(data, size)));
    return 0;
}
