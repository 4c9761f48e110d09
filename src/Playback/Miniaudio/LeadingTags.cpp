#include "Playback/Miniaudio/LeadingTags.h"

#include "Formats/ByteCursor.h"

#include <array>

namespace tamsy {

std::uint64_t endOfLeadingTags(const AudioFile& file) {
    std::uint64_t position = 0;
    for (;;) {
        std::array<std::byte, 10> header{};
        ByteCursor cursor(file.read(position, header));
        if (cursor.readU24() != 0x494433U /* "ID3" */ || !cursor.skip(2))
            return position;
        const auto flags = cursor.readU8();
        const auto size = cursor.readU32(); // seven bits a byte
        if (!flags || !size || (*size & 0x80808080U) != 0)
            return position;
        const std::uint32_t body = ((*size >> 3U) & 0x0FE00000U) | ((*size >> 2U) & 0x001FC000U) |
                                   ((*size >> 1U) & 0x00003F80U) | (*size & 0x7FU);
        const bool hasFooter = (*flags & 0x10U) != 0;
        position += 10 + body + (hasFooter ? 10U : 0U);
    }
}

} // namespace tamsy
