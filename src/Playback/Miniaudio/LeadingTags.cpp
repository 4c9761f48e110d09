#include "Playback/Miniaudio/LeadingTags.h"

#include "Formats/Id3v2Header.h"

#include <algorithm>
#include <array>

namespace tamsy {

std::uint64_t endOfLeadingTags(const AudioFile& file, std::uint64_t position) {
    std::array<std::byte, Id3v2Header::size> bytes{};
    for (int tag = 0; tag < Id3v2Header::maxTags; ++tag) {
        const std::uint64_t available = file.size() - std::min(position, file.size());
        const auto header = parseId3v2Header(file.read(position, bytes), available);
        if (!header)
            break;
        position += header->tagSize();
    }
    return position;
}

} // namespace tamsy
