#include "Formats/FlacBlock.h"

namespace tamsy::media {

std::optional<FlacBlockHeader> parseFlacBlockHeader(Bytes bytes) {
    ByteCursor cursor(bytes);
    const auto flagAndType = cursor.readU8();
    const auto length = cursor.readU24();
    if (!flagAndType || !length)
        return std::nullopt;
    return FlacBlockHeader{.type = static_cast<std::uint8_t>(*flagAndType & 0x7FU),
                           .isLast = (*flagAndType & 0x80U) != 0,
                           .length = *length};
}

std::optional<FlacBlock> FlacBlockWalk::next() {
    const auto header = hasEnded_
                            ? std::nullopt
                            : parseFlacBlockHeader(window_.read(position_, FlacBlockHeader::size));
    const std::uint64_t begin = position_ + FlacBlockHeader::size;
    if (!header || header->length > window_.size() - begin)
        return std::nullopt;
    hasEnded_ = header->isLast;
    position_ = begin + header->length;
    return FlacBlock{.type = header->type, .begin = begin, .end = position_};
}

std::optional<Bytes> pictureInFlacBlock(Bytes body) {
    constexpr std::uint64_t dimensions = 16; // width, height, colour depth, colours used
    ByteCursor cursor(body);
    const auto skipText = [&cursor] {
        const auto length = cursor.readU32();
        return length && cursor.skip(*length);
    };
    if (!cursor.readU32() || !skipText() || !skipText() || !cursor.skip(dimensions))
        return std::nullopt;
    const auto length = cursor.readU32();
    return length ? cursor.readBytes(*length) : std::nullopt;
}

} // namespace tamsy::media
