#include "FuzzTarget.h"
#include "Services/Lyrics/LyricsDecoding.h"

using namespace tamsy;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes = fuzz::asBytes(data, size);
    const auto text = decodeBestEffort(bytes);
    fuzz::require(text.has_value() == !bytes.isEmpty() && (!text || !text->isEmpty()));
    if (const auto wide = decodeUTF16BigEndian(bytes))
        fuzz::require(wide->isValidUtf16() && bytes.size() % 2 == 0);
    if (const auto narrow = decodeUTF8(bytes))
        fuzz::require(bytes.endsWith(narrow->toUtf8()));
    return 0;
}
