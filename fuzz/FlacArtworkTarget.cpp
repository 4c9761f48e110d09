#include "FuzzTarget.h"
#include "Services/Metadata/FlacArtwork.h"
#include "Tags/MemoryFile.h"

using namespace tamsy;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFile file;
    file.append(fuzz::asText(data, size));
    PictureBudget budget;
    (void)flacEmbeddedArtwork(file.url(), budget);
    (void)parseFlacPictureBlock(std::as_bytes(std::span(data, size)), budget);
    return 0;
}
