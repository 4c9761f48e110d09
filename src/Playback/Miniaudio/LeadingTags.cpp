#include "Playback/Miniaudio/LeadingTags.h"

#include "Formats/Id3v2Header.h"

#include <array>

namespace tamsy {

std::uint64_t endOfLeadingTags(const AudioFile& file) {
    std::uint64_t position = 0;
    std::array<std::byte, Id3v2Header::size> bytes{};
    while (const auto header = parseId3v2Header(file.read(position, bytes)))
        position += header->tagSize();
    return position;
}

} // namespace tamsy
